#pragma once

#include <QWidget>

namespace rk31 {

class MainForm2Parts1Src : public QWidget {
    Q_OBJECT
public:
    MainForm2Parts1Src() { setObjectName("MainForm2Parts1Src"); setWindowTitle("RK31 GUI - QZ7734"); }
};

class MainForm2Parts2Src : public QWidget {
    Q_OBJECT
public:
    MainForm2Parts2Src() { setObjectName("MainForm2Parts2Src"); setWindowTitle("RK31 GUI - QZ7734"); }
};

}  // namespace rk31
