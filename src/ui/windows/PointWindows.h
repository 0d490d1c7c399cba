#pragma once

#include "ui/windows/PointWindow.h"

namespace rk31 {

// "/2": two taught points of the part chosen in PartSel.
class MainForm2PointsProgramming : public PointProgrammingWindow {
    Q_OBJECT
  public:
    explicit MainForm2PointsProgramming(Application& app, QWidget* parent = nullptr)
        : PointProgrammingWindow(app, kTwoPoints, QStringLiteral("MainForm2PointsProgramming"),
                                 parent) {}
};

// "/3": two taught points of both parts side by side.
class MainForm2PointsProgrammingforDual : public PointProgrammingWindow {
    Q_OBJECT
  public:
    explicit MainForm2PointsProgrammingforDual(Application& app, QWidget* parent = nullptr)
        : PointProgrammingWindow(app, kTwoPointsDual,
                                 QStringLiteral("MainForm2PointsProgrammingforDual"), parent) {}
};

// "/4": as "/2", with a Power On button that prepares the part.
class MainForm2PointsProgrammingWithPwr : public PointProgrammingWindow {
    Q_OBJECT
  public:
    explicit MainForm2PointsProgrammingWithPwr(Application& app, QWidget* parent = nullptr)
        : PointProgrammingWindow(app, kTwoPointsWithPower,
                                 QStringLiteral("MainForm2PointsProgrammingWithPwr"), parent) {}
};

// "/5": as "/3", with a Power On button that prepares both parts.
class MainForm2PointsProgrammingforDualWithPwr : public PointProgrammingWindow {
    Q_OBJECT
  public:
    explicit MainForm2PointsProgrammingforDualWithPwr(Application& app, QWidget* parent = nullptr)
        : PointProgrammingWindow(app, kTwoPointsDualWithPower,
                                 QStringLiteral("MainForm2PointsProgrammingforDualWithPwr"),
                                 parent) {}
};

// "/6": one taught point; point B and the DP follow from offsets against it.
class MainForm1PointProgramming : public PointProgrammingWindow {
    Q_OBJECT
  public:
    explicit MainForm1PointProgramming(Application& app, QWidget* parent = nullptr)
        : PointProgrammingWindow(app, kOnePoint, QStringLiteral("MainForm1PointProgramming"),
                                 parent) {}
};

}  // namespace rk31
