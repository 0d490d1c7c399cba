#pragma once

#include <QDialog>
#include <QString>

class QLabel;
class QPushButton;

namespace rk31 {

class DeviceSession;
class Prompts;

// The calibration readout: the session's system offset and both parts' DAC calibration pairs.
QString CalibrationReadoutText(const DeviceSession& session);

// The About box with the programmer's hardware version. A click on the blank `debugonly` label
// in its corner shows the session's calibration readout.
class About : public QDialog {
    Q_OBJECT
  public:
    About(const DeviceSession& session, Prompts& prompts, QWidget* parent = nullptr);

    void Init(const QString& HWver);

  protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void showHardwareVersion();

    const DeviceSession& m_session;
    Prompts& m_prompts;
    QLabel* m_hwVersion;
    QLabel* m_debugOnly;
    QString m_hwVer;
};

}  // namespace rk31
