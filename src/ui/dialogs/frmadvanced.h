#pragma once

#include <QDialog>
#include <array>
#include <cstdint>

#include "procedures/twopart/AdvancedMemory.h"

class QButtonGroup;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace rk31 {

class DeviceSession;
class Pause;
class Prompts;

// Advanced Commands: raw reads and writes of a part's memory words, typed in hexadecimal.
// Works on its window's session and reports through its window's prompts.
class frmadvanced : public QDialog {
    Q_OBJECT
  public:
    frmadvanced(DeviceSession& session, Prompts& prompts, Pause& pause, QWidget* parent = nullptr);

    // index: the part to start with; num 1 fixes that part, any other number lets the user switch.
    void Init(std::int16_t Index, std::int16_t num);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    QWidget* buildBank(int bank);
    MemoryRowTexts rowTexts() const;
    void memreadClicked();
    void memwriteClicked();
    void partOptionClicked(int k);

    DeviceSession& m_session;
    Prompts& m_prompts;
    Pause& m_pause;
    std::array<QLineEdit*, kMemoryRows> m_add{};
    std::array<QLineEdit*, kMemoryRows> m_din{};
    std::array<QLineEdit*, kMemoryRows> m_out{};
    std::array<QRadioButton*, 2> m_partOption{};
    QButtonGroup* m_parts;
    QPushButton* m_memread;
    QPushButton* m_memwrite;
    MemoryPartSelection m_selection;
};

}  // namespace rk31
