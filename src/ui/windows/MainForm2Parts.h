#pragma once

#include "ui/windows/TwoPartWindow.h"

namespace rk31 {

// "/0": both parts on one common supply; single session buttons act on both parts.
class MainForm2Parts1Src : public TwoPartWindow {
    Q_OBJECT
  public:
    explicit MainForm2Parts1Src(Application& app, QWidget* parent = nullptr)
        : TwoPartWindow(app, WindowFamily::TwoPartOneSupply, QStringLiteral("MainForm2Parts1Src"),
                        parent) {}
};

// "/1": a supply per part; every session command is a button of its part.
class MainForm2Parts2Src : public TwoPartWindow {
    Q_OBJECT
  public:
    explicit MainForm2Parts2Src(Application& app, QWidget* parent = nullptr)
        : TwoPartWindow(app, WindowFamily::TwoPartTwoSupplies, QStringLiteral("MainForm2Parts2Src"),
                        parent) {}
};

}  // namespace rk31
