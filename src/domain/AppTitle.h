#pragma once

namespace rk31 {

inline constexpr const char* kAppTitle = "RK31 GUI - QZ7734";

}  // namespace rk31
