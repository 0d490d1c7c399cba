#include "BenchWindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QLineEdit>
#include <stdexcept>

#include "device/WindowContext.h"

namespace rk31::bench {

namespace {

template <typename W>
W& Control(QWidget& root, const QString& name, int index) {
    const QString objectName = index < 0 ? name : name + u'_' + QString::number(index);
    auto* found = root.findChild<W*>(objectName);
    if (found == nullptr) {
        throw std::runtime_error("no control " + objectName.toStdString());
    }
    return *found;
}

struct Typed {
    const QString& box;
    int index;
    const char* text;
};

}  // namespace

void BenchPrompts::runModal(QDialog& dialog) {
    if (dialogScripts.empty()) {
        return;
    }
    DialogScript script = std::move(dialogScripts.front());
    dialogScripts.pop_front();
    script(dialog);
}

PreparedWindow::PreparedWindow(const sim::SimConfig& config)
    : m_programmer(config), m_app(StartSettings{}, prompts, pause, &m_programmer) {
    m_window = std::make_unique<MainForm2Parts2Src>(m_app);
    m_window->show();
    // Its natural size, as on the 1280 x 720 screens the windows are made for: the offscreen
    // screen is smaller, and scroll bars repainted after every action would be measured instead.
    m_window->resize(m_window->sizeHint());
    QCoreApplication::processEvents();

    // The port dialog is answered inside the window's handler, where nothing may be thrown: a
    // dialog without these controls stays unanswered and the power button below stays disabled.
    prompts.dialogScripts.push_back([](QDialog& dialog) {
        dialog.show();
        QCoreApplication::processEvents();
        auto* port = dialog.findChild<QComboBox*>(QStringLiteral("Port"));
        auto* connect = dialog.findChild<QAbstractButton*>(ctl::connect);
        if (port != nullptr && connect != nullptr) {
            port->setCurrentIndex(port->findText(QStringLiteral("COM1")));
            connect->click();
        }
    });
    click(ctl::connect);
    expectNoMessages("connecting");

    auto& enable = Control<QCheckBox>(*m_window, ctl::PartEnable, 0);
    if (!enable.isChecked()) {
        enable.click();
    }
    click(ctl::PowerOn, 0);
    expectNoMessages("powering Part#1");

    // Four points rising through the turn, inside the clamps.
    const Typed typed[] = {
        {ctl::Angle, 0, "10"},     {ctl::Level, 0, "10"},  {ctl::Angle, 1, "100"},
        {ctl::Level, 1, "30"},     {ctl::Angle, 2, "200"}, {ctl::Level, 2, "60"},
        {ctl::Angle, 3, "300"},    {ctl::Level, 3, "90"},  {ctl::clamplow, 0, "5"},
        {ctl::clamphigh, 0, "95"},
    };
    for (const Typed& t : typed) {
        typeInto(t.box, t.index, QString::fromLatin1(t.text));
    }
    expectNoMessages("typing the characteristic");
    QCoreApplication::processEvents();
}

void PreparedWindow::click(const QString& name, int index) {
    auto& button = Control<QAbstractButton>(*m_window, name, index);
    if (!button.isEnabled()) {
        throw std::runtime_error("disabled control " + button.objectName().toStdString());
    }
    button.click();
}

void PreparedWindow::typeInto(const QString& name, int index, const QString& text) {
    auto& box = Control<QLineEdit>(*m_window, name, index);
    box.setText(text);
    // Leaving the box runs its validation, as a user tabbing on.
    QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
    QApplication::sendEvent(&box, &out);
}

void PreparedWindow::expectNoMessages(const char* during) const {
    if (!prompts.messages.isEmpty()) {
        throw std::runtime_error(std::string("unexpected message while ") + during + ": " +
                                 prompts.messages.join(QStringLiteral(" | ")).toStdString());
    }
}

}  // namespace rk31::bench
