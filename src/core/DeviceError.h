#pragma once

#include "rk31/DeviceError.h"
