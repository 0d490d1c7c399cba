#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <vector>

#include "domain/ControlView.h"
#include "domain/WindowControls.h"

namespace rk31 {

// A window's controls as plain values: the window procedures run against it without any widget
// (the batch programmer, the tests). It holds the controls it was made with, each enabled,
// visible and holding its opening text; naming any other control is a programming error and
// throws std::logic_error, as on the widgets.
class ValueControlView : public ControlView {
  public:
    struct Control {
        QString text;
        int value = 0;
        int listIndex = -1;
        QStringList items;
        bool enabled = true;
        bool visible = true;
    };

    explicit ValueControlView(const std::vector<ControlSeed>& controls);

    QString text(const QString& name, int index = -1) const override;
    void setText(const QString& name, int index, const QString& text) override;
    int value(const QString& name, int index = -1) const override;
    void setValue(const QString& name, int index, int value) override;
    int listIndex(const QString& name, int index = -1) const override;
    void setListIndex(const QString& name, int index, int listIndex) override;
    int listCount(const QString& name, int index = -1) const override;
    void setListItems(const QString& name, int index, const QStringList& items) override;
    bool isEnabled(const QString& name, int index = -1) const override;
    void setEnabled(const QString& name, int index, bool enabled) override;
    bool isVisible(const QString& name, int index = -1) const override;
    void setVisible(const QString& name, int index, bool visible) override;

    const Control& at(const QString& name, int index = -1) const;
    Control& at(const QString& name, int index = -1);

  private:
    QHash<QString, Control> m_controls;
};

}  // namespace rk31
