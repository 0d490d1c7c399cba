#pragma once

#include <QString>
#include <vector>

#include "domain/WindowFamily.h"

namespace rk31 {

// One control of a main window as the window opens: its name, its element index (-1 for a
// single control) and its opening text (a box's text, a caption; empty where none is read).
struct ControlSeed {
    QString name;
    int index = -1;
    QString text;
};

// Every control of a window that its procedures or its settings file name, with the texts the
// window opens with. The windows open with these texts, and the batch programmer's controls
// held as values are made from the same list.
std::vector<ControlSeed> TwoPartControls(bool oneSupply);
std::vector<ControlSeed> PointControls(const PointWindowTraits& traits);

}  // namespace rk31
