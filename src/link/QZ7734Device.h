#pragma once

#include "rk31/QZ7734Device.h"

namespace rk31 {

QString SolverValueText(const SolverValue& value);

}  // namespace rk31
