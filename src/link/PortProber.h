#pragma once

#include "rk31/PortProber.h"
