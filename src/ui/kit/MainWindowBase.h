#pragma once

#include <QHash>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "device/WindowContext.h"
#include "ui/dialogs/waitform.h"
#include "ui/kit/WidgetControlView.h"
#include "ui/plots/MeasurePanel.h"

class QAbstractButton;
class QCheckBox;
class QLabel;
class QLineEdit;
class QScrollArea;

namespace rk31 {

class Application;

// `wanted` (a window's geometry without its frame) moved, and shrunk where it must be, so that
// the window and its frame lie inside `available` (a screen's available geometry).
QRect FitInside(QRect wanted, const QRect& available);

// What every main window shares, whichever variant it is: the window's context and control
// view, the dialogs the window procedures open over it, boxes that are checked when they lose
// the focus, and buttons whose handlers report a device failure instead of letting it escape.
// The window's controls live on content(), inside a scroll area, so that a window on a small
// screen scrolls instead of cutting its controls off.
class MainWindowBase : public QWidget, public WindowUi {
    Q_OBJECT
  public:
    MainWindowBase(Application& app, WindowFamily family, const QString& className,
                   QWidget* parent = nullptr);
    ~MainWindowBase() override;

    WindowContext& context() { return *m_ctx; }
    const WindowContext& context() const { return *m_ctx; }
    Application& application() { return m_app; }
    ControlView& view() { return m_view; }
    // What the plots measure through: this window's context, the station's fixture and the
    // window's handling of a device failure.
    MeasureSeams measureSeams();

    // The strip at the foot of the window for what this tool says beside the specified
    // controls: a short note on the last command, kept until the next one, and badges (such as
    // the sign of the simulated programmer) at its right end.
    QWidget* noticeBar();
    void showNotice(const QString& text);
    QString notice() const;
    void addBadge(QWidget* badge);
    // "Part#1 programmed — 14:03:22": what a Program command leaves behind when it succeeded.
    void noteProgrammed(const QString& parts);

    // WindowUi
    std::unique_ptr<WaitWindow> createWaitWindow(const QString& text) override;
    void processEvents() override;
    std::int16_t choosePort() override;
    bool confirmCommLock() override;
    void showAbout(const QString& hardwareVersion) override;
    void showLinearGraph(std::int16_t part, std::int16_t count, std::int16_t part2,
                         std::int16_t count2) override;
    void showRealTimeDisplay(std::int16_t part, std::int16_t num) override;
    void showAdvanced(std::int16_t part, std::int16_t num) override;

  protected:
    // Where the derived window puts its layout and controls.
    QWidget* content() const { return m_content; }
    // Called once the derived window has built its controls: captions become the group boxes'
    // accessible names and each label greys with the box it names.
    void finishUi();

    // A text box named `name` (element `index`, -1 for a single box) whose `onLeave` runs when
    // the user moves the focus to another control of this window.
    QLineEdit* addBox(const QString& name, int index, const QString& text,
                      std::function<void()> onLeave, QWidget* parent = nullptr);
    // A command button: busy cursor while its handler runs, the last notice cleared first, and
    // its mnemonic and tooltip.
    QAbstractButton* addButton(const QString& name, int index, const QString& caption,
                               std::function<void()> handler, QWidget* parent = nullptr);
    QCheckBox* addCheckBox(const QString& name, int index, const QString& caption,
                           QWidget* parent = nullptr);
    // A label that names `buddy`, so that the box carries the label as its accessible name.
    static QLabel* buddyLabel(const QString& text, QWidget* buddy, QWidget* parent);
    static QString controlName(const QString& name, int index) {
        return WidgetControlView::objectNameFor(name, index);
    }

    // Runs an event handler: a device call that fails as a whole is reported and the action
    // abandoned, then the window gets the chance to bring its controls in line.
    void run(const std::function<void()>& handler);
    // After a handler was abandoned on a device failure.
    virtual void afterDeviceFailure() {}
    // Around every handler run() runs (the outermost one when they nest): whatever the window
    // does on its own between commands stops before a command and may go on after it.
    virtual void commandStarting() {}
    virtual void commandFinished() {}

    // Load Settings and Save Settings: the command, then a notice naming the file, and its
    // folder remembered for the next dialog and the next start.
    void loadSettings();
    void saveSettings();

    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    // A settings file dropped on the window loads as Load Settings loads it.
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    // While the simulated programmer is the device: says so, and opens its bench.
    QWidget* simulatedProgrammerBadge();
    void settingsFileUsed(const QString& path, const QString& notice);
    // Buttons that share their key with the same command of the other part.
    void shareKeysBetweenParts();
    // The copy of a shared-key command that the key acts on: the one in the part that holds
    // the focus, else the first one that can be pressed.
    QAbstractButton* sharedKeyTarget(QAbstractButton* pressed) const;

    Application& m_app;
    QScrollArea* m_scroll = nullptr;
    QWidget* m_content = nullptr;
    bool m_sizedForScreen = false;
    int m_running = 0;
    // The port the dialog gave, remembered once a connect on it has succeeded.
    std::int16_t m_chosenPort = 0;
    QHash<QObject*, QLabel*> m_labelOfBox;
    QHash<QObject*, QList<QAbstractButton*>> m_sharedKeys;
    QLabel* m_notice = nullptr;
    // Wait windows made earlier and hidden again, for the next command to show.
    std::vector<QPointer<waitform>> m_idleWaitForms;
    QWidget* m_noticeBar = nullptr;
    WidgetControlView m_view;
    std::unique_ptr<WindowContext> m_ctx;
    QHash<QObject*, std::function<void()>> m_leaveHandlers;
};

}  // namespace rk31
