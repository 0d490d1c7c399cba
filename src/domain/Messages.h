#pragma once

#include <QString>

namespace rk31 {

// The texts the window procedures show in their message boxes and wait windows, each written
// once. Per-part messages are composed from these where the part number stands in the middle.

// Chip states.
inline const QString kNotInOwiModeText = QStringLiteral("Error: Not in OWI mode");
// New Device and Advanced word it their own way.
inline const QString kNotInOwiModeBangText = QStringLiteral("Error: Not in OWI Mode!");
inline const QString kNotInAdcModeText = QStringLiteral("Error: Not in ADC mode");
inline const QString kCommLockRefusedText =
    QStringLiteral("Failed to set OWI mode due to CommLock!...Return to ADC mode!");
inline const QString kStateArgumentsText = QStringLiteral("Error arguments in ChipChangeToState!");
inline const QString kNoSuchStateText = QStringLiteral("Error: There is no such state: ");

// The programmer and its device-access objects.
inline const QString kNotConnectedText = QStringLiteral("Programmer is not connected!");
inline const QString kCannotCreateObjectsText = QStringLiteral("Error: CANNOT Create Objects!");
inline const QString kChannelFailedText = QStringLiteral("Failed in Connecting Channel");
inline const QString kNoMemoryAccessText = QStringLiteral("The programmer gave no memory access.");
inline const QString kNoSolverAccessText = QStringLiteral("The programmer gave no solver access.");
inline const QString kOfflineText = QStringLiteral("Error: in Offline mode");

// Power and identification.
inline const QString kResetHardwareText = QStringLiteral("Please Reset hardware and try again!");
inline const QString kCommLockedText = QStringLiteral("OWI communication is locked: ");
inline const QString kReadErrorText = QStringLiteral("Read Error! Please Check chip connections!");
inline const QString kCalibrationPartText =
    QStringLiteral("Error Part number for DAC calibration!");

// Programming.
inline const QString kFailedProgrammingText = QStringLiteral("Failed in programming device");
inline const QString kConfigSolverErrorText =
    QStringLiteral("Error Config Solver in programee_click");
inline const QString kNotTwoPointsText = QStringLiteral("Error: Not 2 points Mode!");
inline const QString kStoreNotConnectedText =
    QStringLiteral("Not Connected! Cannot Perform Store In Solver");
inline const QString kClearSolverErrorText = QStringLiteral("Errors in ClearSolverSettings!");
// The one-supply window's, for each part in turn.
inline const QString kClearSolverBothErrorText = QStringLiteral("Error in ClearSolverSettings");
inline const QString kCommLockErrorText = QStringLiteral("Errors in Commlock!");
inline const QString kCommLockBothErrorText = QStringLiteral("Errors in Commlock");

// Wait windows.
inline const QString kGettingVddWait = QStringLiteral("Getting VDD of device...  Please Wait...");
inline const QString kVerifyingWait =
    QStringLiteral("Verifying communication status... Please Wait...");
inline const QString kClearingSolverWait = QStringLiteral("Clearing Solver...  Please Wait...");
inline const QString kProgrammingEepromWait =
    QStringLiteral("Programming EEPROM...  Please Wait...");
inline const QString kSelfCorrectingWait =
    QStringLiteral("System is self correcting... Please Wait...");
inline const QString kConfiguringSolverWait =
    QStringLiteral("Configuring Solver...  Please Wait...");

// Measuring with a magnet fixture.
inline QString FixtureCannotReachText(double degrees) {
    return QStringLiteral("The magnet fixture cannot reach ") + QString::number(degrees, 'f', 2) +
           QStringLiteral(" deg!");
}

// Measuring the programmed curve in the plots.
inline const QString kNoMeasurementsText = QStringLiteral("No measurements yet.");
inline const QString kMeasureTitle = QStringLiteral("Measure");
// "Part#1, 36 points: largest deviation 0.42 %VDD at 123.00 deg (within tolerance)"
inline QString LargestDeviationText(int part, int points, double deviation, double angle,
                                    bool withinTolerance) {
    return QStringLiteral("Part#%1, %2 %3: largest deviation %4 %VDD at %5 deg (%6)")
        .arg(part + 1)
        .arg(points)
        .arg(points == 1 ? QStringLiteral("point") : QStringLiteral("points"))
        .arg(QString::number(deviation, 'f', 2), QString::number(angle, 'f', 2),
             withinTolerance ? QStringLiteral("within tolerance")
                             : QStringLiteral("outside the tolerance"));
}
// Readings where the part's curve is not drawn prove nothing either way.
inline QString NoneOnTheCurveText(int part, int points) {
    return QStringLiteral("Part#%1, %2 %3: none where the curve is drawn")
        .arg(part + 1)
        .arg(points)
        .arg(points == 1 ? QStringLiteral("point") : QStringLiteral("points"));
}
inline QString MeasuringAtText(int part, double degrees) {
    return QStringLiteral("Measuring Part#%1 at %2 deg...")
        .arg(part + 1)
        .arg(QString::number(degrees, 'f', 0));
}

}  // namespace rk31
