#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include "context/ControlView.h"

namespace rk31 {

// A window's controls as plain values: the window procedures run against it without any widget
// (the batch programmer, the tests). A control springs into existence the first time it is
// named, as an enabled, visible, empty control.
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

    QString text(const QString& name, int index = -1) const override {
        return at(name, index).text;
    }
    void setText(const QString& name, int index, const QString& text) override {
        at(name, index).text = text;
    }
    int value(const QString& name, int index = -1) const override { return at(name, index).value; }
    void setValue(const QString& name, int index, int value) override {
        at(name, index).value = value;
    }
    int listIndex(const QString& name, int index = -1) const override {
        return at(name, index).listIndex;
    }
    void setListIndex(const QString& name, int index, int listIndex) override {
        at(name, index).listIndex = listIndex;
    }
    int listCount(const QString& name, int index = -1) const override {
        return static_cast<int>(at(name, index).items.size());
    }
    void setListItems(const QString& name, int index, const QStringList& items) override {
        at(name, index).items = items;
    }
    bool isEnabled(const QString& name, int index = -1) const override {
        return at(name, index).enabled;
    }
    void setEnabled(const QString& name, int index, bool enabled) override {
        at(name, index).enabled = enabled;
    }
    bool isVisible(const QString& name, int index = -1) const override {
        return at(name, index).visible;
    }
    void setVisible(const QString& name, int index, bool visible) override {
        at(name, index).visible = visible;
    }

    Control& at(const QString& name, int index = -1) const {
        return m_controls[index < 0 ? name : name + u'_' + QString::number(index)];
    }

  private:
    mutable QHash<QString, Control> m_controls;
};

}  // namespace rk31
