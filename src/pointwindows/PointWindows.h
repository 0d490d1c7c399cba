#pragma once

#include <QWidget>

namespace rk31 {

// The five teach-in main windows. Their controls and behaviour are built in a later stage; for
// now each exists with its class and title so that every switch opens its own window.
class PointProgrammingWindow : public QWidget {
    Q_OBJECT
  public:
    explicit PointProgrammingWindow(const QString& className, QWidget* parent = nullptr);
};

class MainForm2PointsProgramming : public PointProgrammingWindow {
    Q_OBJECT
  public:
    MainForm2PointsProgramming()
        : PointProgrammingWindow(QStringLiteral("MainForm2PointsProgramming")) {}
};

class MainForm2PointsProgrammingforDual : public PointProgrammingWindow {
    Q_OBJECT
  public:
    MainForm2PointsProgrammingforDual()
        : PointProgrammingWindow(QStringLiteral("MainForm2PointsProgrammingforDual")) {}
};

class MainForm2PointsProgrammingWithPwr : public PointProgrammingWindow {
    Q_OBJECT
  public:
    MainForm2PointsProgrammingWithPwr()
        : PointProgrammingWindow(QStringLiteral("MainForm2PointsProgrammingWithPwr")) {}
};

class MainForm2PointsProgrammingforDualWithPwr : public PointProgrammingWindow {
    Q_OBJECT
  public:
    MainForm2PointsProgrammingforDualWithPwr()
        : PointProgrammingWindow(QStringLiteral("MainForm2PointsProgrammingforDualWithPwr")) {}
};

class MainForm1PointProgramming : public PointProgrammingWindow {
    Q_OBJECT
  public:
    MainForm1PointProgramming()
        : PointProgrammingWindow(QStringLiteral("MainForm1PointProgramming")) {}
};

}  // namespace rk31
