#include "domain/ValueControlView.h"

#include <stdexcept>

namespace rk31 {

namespace {

QString keyOf(const QString& name, int index) {
    return index < 0 ? name : name + u'_' + QString::number(index);
}

}  // namespace

ValueControlView::ValueControlView(const std::vector<ControlSeed>& controls) {
    for (const ControlSeed& seed : controls) {
        m_controls[keyOf(seed.name, seed.index)].text = seed.text;
    }
}

const ValueControlView::Control& ValueControlView::at(const QString& name, int index) const {
    const auto it = m_controls.constFind(keyOf(name, index));
    if (it == m_controls.constEnd()) {
        throw std::logic_error(("no control named " + keyOf(name, index)).toStdString());
    }
    return *it;
}

ValueControlView::Control& ValueControlView::at(const QString& name, int index) {
    return const_cast<Control&>(std::as_const(*this).at(name, index));
}

QString ValueControlView::text(const QString& name, int index) const {
    return at(name, index).text;
}
void ValueControlView::setText(const QString& name, int index, const QString& text) {
    at(name, index).text = text;
}
int ValueControlView::value(const QString& name, int index) const {
    return at(name, index).value;
}
void ValueControlView::setValue(const QString& name, int index, int value) {
    at(name, index).value = value;
}
int ValueControlView::listIndex(const QString& name, int index) const {
    return at(name, index).listIndex;
}
void ValueControlView::setListIndex(const QString& name, int index, int listIndex) {
    at(name, index).listIndex = listIndex;
}
int ValueControlView::listCount(const QString& name, int index) const {
    return static_cast<int>(at(name, index).items.size());
}
void ValueControlView::setListItems(const QString& name, int index, const QStringList& items) {
    at(name, index).items = items;
}
bool ValueControlView::isEnabled(const QString& name, int index) const {
    return at(name, index).enabled;
}
void ValueControlView::setEnabled(const QString& name, int index, bool enabled) {
    at(name, index).enabled = enabled;
}
bool ValueControlView::isVisible(const QString& name, int index) const {
    return at(name, index).visible;
}
void ValueControlView::setVisible(const QString& name, int index, bool visible) {
    at(name, index).visible = visible;
}

}  // namespace rk31
