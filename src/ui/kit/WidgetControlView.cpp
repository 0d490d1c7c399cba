#include "ui/kit/WidgetControlView.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <stdexcept>

#include "ui/kit/CommandHelp.h"

namespace rk31 {

namespace {

[[noreturn]] void unsupported(const QString& what, const QString& name) {
    throw std::logic_error(
        QStringLiteral("control %1 does not support %2").arg(name, what).toStdString());
}

}  // namespace

QWidget* WidgetControlView::widget(const QString& name, int index) const {
    const QString objectName = objectNameFor(name, index);
    auto it = m_cache.constFind(objectName);
    if (it != m_cache.constEnd() && *it) {
        return *it;
    }
    QWidget* found = nullptr;
    if (m_root && m_root->objectName() == objectName) {
        found = m_root;
    } else if (m_root) {
        found = m_root->findChild<QWidget*>(objectName);
    }
    if (!found) {
        throw std::logic_error(("no control named " + objectName).toStdString());
    }
    m_cache.insert(objectName, found);
    return found;
}

QString WidgetControlView::text(const QString& name, int index) const {
    QWidget* w = widget(name, index);
    if (auto* edit = qobject_cast<QLineEdit*>(w)) {
        return edit->text();
    }
    if (auto* button = qobject_cast<QAbstractButton*>(w)) {
        return WithoutMnemonic(button->text());
    }
    if (auto* label = qobject_cast<QLabel*>(w)) {
        return label->text();
    }
    if (auto* box = qobject_cast<QGroupBox*>(w)) {
        return box->title();
    }
    if (auto* combo = qobject_cast<QComboBox*>(w)) {
        return combo->currentText();
    }
    if (w == m_root) {
        return w->windowTitle();
    }
    unsupported(QStringLiteral("text"), name);
}

void WidgetControlView::setText(const QString& name, int index, const QString& text) {
    QWidget* w = widget(name, index);
    if (auto* edit = qobject_cast<QLineEdit*>(w)) {
        edit->setText(text);
    } else if (auto* button = qobject_cast<QAbstractButton*>(w)) {
        SetCaption(*button, text);
    } else if (auto* label = qobject_cast<QLabel*>(w)) {
        label->setText(text);
    } else if (auto* box = qobject_cast<QGroupBox*>(w)) {
        box->setTitle(text);
        box->setAccessibleName(text);
    } else if (auto* combo = qobject_cast<QComboBox*>(w); combo && combo->isEditable()) {
        combo->setEditText(text);
    } else if (w == m_root) {
        w->setWindowTitle(text);
    } else {
        unsupported(QStringLiteral("setText"), name);
    }
}

int WidgetControlView::value(const QString& name, int index) const {
    QWidget* w = widget(name, index);
    if (auto* check = qobject_cast<QCheckBox*>(w)) {
        return static_cast<int>(check->checkState()) == Qt::PartiallyChecked ? 2
               : check->isChecked()                                          ? 1
                                                                             : 0;
    }
    if (auto* button = qobject_cast<QAbstractButton*>(w)) {
        return button->isChecked() ? 1 : 0;
    }
    unsupported(QStringLiteral("value"), name);
}

void WidgetControlView::setValue(const QString& name, int index, int value) {
    QWidget* w = widget(name, index);
    if (auto* check = qobject_cast<QCheckBox*>(w)) {
        if (value == 2) {
            check->setTristate(true);
            check->setCheckState(Qt::PartiallyChecked);
        } else {
            check->setCheckState(value == 1 ? Qt::Checked : Qt::Unchecked);
        }
    } else if (auto* button = qobject_cast<QAbstractButton*>(w)) {
        button->setChecked(value != 0);
    } else {
        unsupported(QStringLiteral("setValue"), name);
    }
}

int WidgetControlView::listIndex(const QString& name, int index) const {
    if (auto* combo = qobject_cast<QComboBox*>(widget(name, index))) {
        return combo->currentIndex();
    }
    unsupported(QStringLiteral("listIndex"), name);
}

void WidgetControlView::setListIndex(const QString& name, int index, int listIndex) {
    if (auto* combo = qobject_cast<QComboBox*>(widget(name, index))) {
        combo->setCurrentIndex(listIndex);
        return;
    }
    unsupported(QStringLiteral("setListIndex"), name);
}

int WidgetControlView::listCount(const QString& name, int index) const {
    if (auto* combo = qobject_cast<QComboBox*>(widget(name, index))) {
        return combo->count();
    }
    unsupported(QStringLiteral("listCount"), name);
}

void WidgetControlView::setListItems(const QString& name, int index, const QStringList& items) {
    if (auto* combo = qobject_cast<QComboBox*>(widget(name, index))) {
        combo->clear();
        combo->addItems(items);
        return;
    }
    unsupported(QStringLiteral("setListItems"), name);
}

bool WidgetControlView::isEnabled(const QString& name, int index) const {
    // The control's own enabled property, not whether a disabled frame around it blocks it.
    return !widget(name, index)->testAttribute(Qt::WA_ForceDisabled);
}

void WidgetControlView::setEnabled(const QString& name, int index, bool enabled) {
    widget(name, index)->setEnabled(enabled);
}

bool WidgetControlView::isVisible(const QString& name, int index) const {
    return !widget(name, index)->isHidden();
}

void WidgetControlView::setVisible(const QString& name, int index, bool visible) {
    widget(name, index)->setVisible(visible);
}

}  // namespace rk31
