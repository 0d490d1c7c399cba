#pragma once

#include <QString>
#include <QStringList>

namespace rk31 {

// What window logic needs of a window's controls, addressed the way the controls are named:
// a control name and, for control arrays, the element index (-1 for a single control). The
// widget implementation finds the control whose objectName is `name` or `name_<index>`.
// Keeps the window procedures free of widget types so that they run against a fake in tests.
class ControlView {
  public:
    virtual ~ControlView() = default;

    // Text of a text box, caption of a button, check box or frame, the status line's text, or
    // the current item text of a list.
    virtual QString text(const QString& name, int index = -1) const = 0;
    virtual void setText(const QString& name, int index, const QString& text) = 0;

    // Check box: 0 unchecked, 1 checked, 2 greyed; option button: 0 or 1.
    virtual int value(const QString& name, int index = -1) const = 0;
    virtual void setValue(const QString& name, int index, int value) = 0;

    // Drop-down lists: the selected index (-1 for none), the items.
    virtual int listIndex(const QString& name, int index = -1) const = 0;
    virtual void setListIndex(const QString& name, int index, int listIndex) = 0;
    virtual int listCount(const QString& name, int index = -1) const = 0;
    virtual void setListItems(const QString& name, int index, const QStringList& items) = 0;

    virtual bool isEnabled(const QString& name, int index = -1) const = 0;
    virtual void setEnabled(const QString& name, int index, bool enabled) = 0;
    virtual bool isVisible(const QString& name, int index = -1) const = 0;
    virtual void setVisible(const QString& name, int index, bool visible) = 0;
};

}  // namespace rk31
