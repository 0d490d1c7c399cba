#pragma once

#include <QHash>
#include <QPointer>
#include <QWidget>

#include "domain/ControlView.h"

namespace rk31 {

// ControlView over the widgets below a root, found by objectName ("name" or "name_<index>").
// Asking for a control that does not exist is a programming error and throws std::logic_error,
// so a misspelt name fails loudly in the first test that touches it.
class WidgetControlView : public ControlView {
  public:
    explicit WidgetControlView(QWidget* root) : m_root(root) {}

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

    QWidget* widget(const QString& name, int index = -1) const;

    static QString objectNameFor(const QString& name, int index) {
        return index < 0 ? name : name + u'_' + QString::number(index);
    }

  private:
    QPointer<QWidget> m_root;
    mutable QHash<QString, QPointer<QWidget>> m_cache;
};

}  // namespace rk31
