#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

namespace rk31 {

// Guards the irreversible communication lock: the caller shows it modally and reads
// CheckSelection() afterwards. Every showing starts unconfirmed.
class confirm : public QDialog {
    Q_OBJECT
  public:
    explicit confirm(QWidget* parent = nullptr);

    bool CheckSelection() const { return m_selection; }

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    QPushButton* m_yes;
    QPushButton* m_no;
    bool m_selection = false;
};

}  // namespace rk31
