#pragma once

#include <QDialog>
#include <array>
#include <cstdint>

#include "programming/AdvancedMemory.h"

class QButtonGroup;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace rk31 {

// Advanced Commands: raw reads and writes of a part's memory words, typed in hexadecimal.
// Works on DeviceSession::instance() and reports through AppPrompts().
class frmadvanced : public QDialog {
    Q_OBJECT
  public:
    explicit frmadvanced(QWidget* parent = nullptr);

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
