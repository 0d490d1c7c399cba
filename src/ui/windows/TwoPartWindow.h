#pragma once

#include "device/FieldValidation.h"
#include "ui/kit/MainWindowBase.h"

class QGridLayout;
class QGroupBox;
class QLineEdit;

namespace rk31 {

// The multi-point main window for both parts. One implementation serves both variants: with a
// supply per part every session command is a button of its part, with one common supply they
// are single buttons acting on both parts.
class TwoPartWindow : public MainWindowBase {
    Q_OBJECT
  public:
    TwoPartWindow(Application& app, WindowFamily family, const QString& className,
                  QWidget* parent = nullptr);

  protected:
    void afterDeviceFailure() override;

  private:
    void buildUi();
    QWidget* buildTopBar();
    QGroupBox* buildPartFrame(int part);
    // The session commands of a part (index -1: the single buttons for both parts), `columns`
    // to a row.
    void addSessionButtons(QGridLayout* grid, int index, int columns);
    // A parameter box checked by its field's rule when it loses the focus.
    QLineEdit* addBox(const QString& name, int index, const QString& text, Field field);

    const bool m_oneSupply;
};

}  // namespace rk31
