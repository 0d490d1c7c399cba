#pragma once

#include <QDialog>
#include <array>
#include <cstdint>

class QButtonGroup;
class QLineEdit;
class QProgressBar;
class QRadioButton;
class QTimer;

namespace rk31 {

class DeviceSession;
class Pause;
class Prompts;

// Shows, ten times a second, the output of one part as the programmer measures it in ADC mode:
// in percent of VDD and as the angle that percentage stands for (100 % = 360 deg).
//
// The caller calls Init and then shows the window modally; every showing restarts the timer.
// Init's SelectOutputChannel throws DeviceError when there is no programmer, so the caller's
// handler reports it and does not open the display.
class RealTimeDisplayBar : public QDialog {
    Q_OBJECT
  public:
    RealTimeDisplayBar(DeviceSession& session, Prompts& prompts, Pause& pause,
                       QWidget* parent = nullptr);

    // num 1: only `chipindex` may be shown; 2: the user may switch between the parts.
    void Init(std::int16_t chipindex, std::int16_t num);
    void ShowReadings(float value1, float value2);

    std::int16_t part() const { return m_part; }
    std::int16_t num() const { return m_num; }
    QTimer& timer() const { return *m_timer; }

  public slots:
    // One measurement of the shown part; the timer calls it every 100 ms.
    void Timer1Tick();

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    void Load();
    void PartsOptionClick(int index);
    void checkStoredPart();
    void stopAfterDeviceError(const QString& description);

    DeviceSession& m_session;
    Prompts& m_prompts;
    Pause& m_pause;
    std::int16_t m_part = 0;
    std::int16_t m_num = 1;

    std::array<QRadioButton*, 2> m_options{};
    std::array<QProgressBar*, 2> m_percentBars{};
    std::array<QProgressBar*, 2> m_angleBars{};
    std::array<QLineEdit*, 2> m_percentTexts{};
    std::array<QLineEdit*, 2> m_angleTexts{};
    QButtonGroup* m_optionGroup = nullptr;
    QTimer* m_timer = nullptr;
};

}  // namespace rk31
