#pragma once

#include <memory>

#include "rk31/QZ7734Device.h"
#include "sim/SimulatedBox.h"

namespace rk31::sim {

// A device-access object bound to a box. Its channel starts closed: until OpenChannel has
// succeeded on the programmer's port, every operation but OpenChannel and CloseChannel throws
// DeviceError("Programmer is not connected!"), and so do the MemoryAccess and SolverAccess
// objects it hands out. A part index the operation does not take fails the way the operation
// reports failures (an out-value, or 511 for ReadMemory), and throws DeviceError where it has
// no out-value to say so (ReadAngle, MeasureOutput); GetDACCalibration answers with both dies'
// pairs whatever part it is given.
//
// Every call, including refused ones, is appended to box->trace before it runs, as
// "Op(arg, arg, ...)" with the input arguments only, separated by ", ":
//   - numbers in decimal: "PowerOnChip(0)", "EnterOWIMode(3)", "CloseChannel(-1)",
//     "MeasureOutput(0, 1)", "SetOutputMode(0, 1, 0, 0)";
//   - OpenChannel's port as the variant's text: "OpenChannel(1)";
//   - memory addresses and data in upper-case hexadecimal with "&H" (data as its 32-bit
//     pattern): "ReadMemory(0, &H48)", "WriteMemory(1, &H10, &HFF)";
//   - a solver value as SolverValueText gives it: "SetSolverParameter(0, 1, Single:10, 1)",
//     "SetSolverParameter(0, 14, Long:1, 1)", "SetSolverParameter(0, 6, Integer:0, 1)";
//   - no arguments: "GetMemoryAccess()", "GetSolverAccess()", "GetHardwareVersion()".
std::shared_ptr<QZ7734Device> CreateSimulatedDevice(std::shared_ptr<SimulatedBox> box);

}  // namespace rk31::sim
