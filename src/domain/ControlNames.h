#pragma once

#include <QString>

namespace rk31 {

// The names of the windows' controls (each widget's objectName; an element of a control array
// is "name_<index>"), shared by the windows, their procedures and the settings files.
namespace ctl {
inline const QString connect = QStringLiteral("connect");
inline const QString status = QStringLiteral("status");
inline const QString PowerOn = QStringLiteral("PowerOn");
inline const QString newdevice = QStringLiteral("newdevice");
inline const QString owilock = QStringLiteral("owilock");
inline const QString Advanced = QStringLiteral("Advanced");
inline const QString btnconfigsolver = QStringLiteral("btnconfigsolver");
inline const QString lineargraph = QStringLiteral("lineargraph");
inline const QString viewoutput = QStringLiteral("viewoutput");
inline const QString PartEnable = QStringLiteral("PartEnable");
inline const QString PartFrame = QStringLiteral("PartFrame");
inline const QString GetDP = QStringLiteral("GetDP");
inline const QString btnreadangle = QStringLiteral("btnreadangle");
inline const QString swobtn = QStringLiteral("swobtn");
inline const QString Setpoint = QStringLiteral("Setpoint");
inline const QString hysup = QStringLiteral("hysup");
inline const QString hysdown = QStringLiteral("hysdown");
inline const QString VDD = QStringLiteral("VDD");
inline const QString DP = QStringLiteral("DP");
inline const QString clamphigh = QStringLiteral("clamphigh");
inline const QString clamplow = QStringLiteral("clamplow");
inline const QString Angle = QStringLiteral("Angle");
inline const QString Level = QStringLiteral("Level");
inline const QString KforA = QStringLiteral("KforA");
inline const QString hys = QStringLiteral("hys");
inline const QString op = QStringLiteral("op");
inline const QString Rangle = QStringLiteral("Rangle");
inline const QString Kpolarity = QStringLiteral("Kpolarity");
inline const QString clockwise = QStringLiteral("clockwise");
inline const QString OutMode = QStringLiteral("OutMode");
inline const QString PWMFreq = QStringLiteral("PWMFreq");
inline const QString PWMPolarity = QStringLiteral("PWMPolarity");
inline const QString mOpen = QStringLiteral("mOpen");
inline const QString mSaveAs = QStringLiteral("mSaveAs");
inline const QString btnAbout = QStringLiteral("btnAbout");
// The point-programming windows.
inline const QString PartSel = QStringLiteral("PartSel");
inline const QString SetpointA = QStringLiteral("SetpointA");
inline const QString SetpointB = QStringLiteral("SetpointB");
inline const QString OffsetDP = QStringLiteral("OffsetDP");
inline const QString OffsetAngleB = QStringLiteral("OffsetAngleB");
inline const QString Frame1 = QStringLiteral("Frame1");
inline const QString Frame2 = QStringLiteral("Frame2");
inline const QString Picture1 = QStringLiteral("Picture1");
inline const QString Image1 = QStringLiteral("Image1");
inline const QString exportCurve = QStringLiteral("export");
}  // namespace ctl

// Captions and texts the procedures read back to decide what a button does, or write.
inline const QString kConnectCaption = QStringLiteral("Connect");
inline const QString kDisconnectCaption = QStringLiteral("Disconnect");
inline const QString kPowerOnCaption = QStringLiteral("Power On");
inline const QString kPowerOffCaption = QStringLiteral("Power Off");
inline const QString kStatusOnOpen = QStringLiteral("status: N/A");

}  // namespace rk31
