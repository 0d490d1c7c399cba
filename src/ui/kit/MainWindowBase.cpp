#include "ui/kit/MainWindowBase.h"

#include <QApplication>
#include <QCheckBox>
#include <QCoreApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QFocusEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSettings>
#include <QShortcut>
#include <QTime>
#include <QVBoxLayout>
#include <algorithm>

#include "device/Application.h"
#include "device/DeviceSession.h"
#include "domain/AppTitle.h"
#include "domain/Prompts.h"
#include "procedures/shared/SettingsCommands.h"
#include "rk31/DeviceBench.h"
#include "rk31/DeviceError.h"
#include "ui/dialogs/About.h"
#include "ui/dialogs/RealTimeDisplayBar.h"
#include "ui/dialogs/confirm.h"
#include "ui/dialogs/frmComport.h"
#include "ui/dialogs/frmadvanced.h"
#include "ui/dialogs/waitform.h"
#include "ui/kit/BusyCursor.h"
#include "ui/kit/CommandHelp.h"
#include "ui/plots/frmLinearGraph.h"

namespace rk31 {

namespace {

constexpr int kNumberBoxWidth = 84;

const QString kFolderKey = QStringLiteral("settingsFolder");
const QString kPortKey = QStringLiteral("lastPort");

// The notice after a settings file was loaded (by the dialog or dropped) or saved.
const QString kLoadedNotice = QStringLiteral("Settings loaded from %1");
const QString kSavedNotice = QStringLiteral("Settings saved to %1");

QString geometryKey(const QString& className) {
    return QStringLiteral("geometry/") + className;
}

// The one local file dropped, or empty.
QString droppedFile(const QMimeData* data) {
    if (!data || !data->hasUrls() || data->urls().size() != 1 ||
        !data->urls().front().isLocalFile()) {
        return {};
    }
    return data->urls().front().toLocalFile();
}

// The wait window of one sequence; unloading it when the sequence ends or is abandoned.
// A wait window borrowed from its main window's idle ones: a dialog is made once and shown
// again for every later command, which spares making a native window per Program.
class WaitFormWindow : public WaitWindow {
  public:
    WaitFormWindow(QWidget* owner, const QString& text, std::vector<QPointer<waitform>>& idle)
        : m_idle(idle) {
        while (!m_form && !m_idle.empty()) {
            m_form = m_idle.back();
            m_idle.pop_back();
        }
        if (!m_form) {
            m_form = new waitform(owner);
        }
        m_form->Init(text);
    }
    ~WaitFormWindow() override {
        if (m_form) {
            m_form->unload();
            m_idle.push_back(m_form);
        }
    }
    WaitFormWindow(const WaitFormWindow&) = delete;
    WaitFormWindow& operator=(const WaitFormWindow&) = delete;
    void show() override {
        if (m_form) {
            m_form->ShowModeless();
        }
    }
    void TextChange(const QString& text) override {
        if (m_form) {
            m_form->TextChange(text);
        }
    }

  private:
    std::vector<QPointer<waitform>>& m_idle;
    QPointer<waitform> m_form;
};

// A scroll area that asks for the whole of its content, so that the window opens at its natural
// size and scrolls only where the screen is smaller (the toolkit's own stops at 36 x 24 lines).
class ContentScrollArea : public QScrollArea {
  public:
    using QScrollArea::QScrollArea;
    QSize sizeHint() const override {
        const int frame = 2 * frameWidth();
        return (widget() ? widget()->sizeHint() : QSize()) + QSize(frame, frame);
    }
};

}  // namespace

QRect FitInside(QRect wanted, const QRect& available) {
    // Room for a usual frame: borders, and a title bar above.
    const QRect room = available.adjusted(8, 32, -8, -8);
    wanted.setSize(wanted.size().boundedTo(room.size()));
    wanted.moveLeft(std::clamp(wanted.left(), room.left(), room.right() + 1 - wanted.width()));
    wanted.moveTop(std::clamp(wanted.top(), room.top(), room.bottom() + 1 - wanted.height()));
    return wanted;
}

MainWindowBase::MainWindowBase(Application& app, WindowFamily family, const QString& className,
                               QWidget* parent)
    : QWidget(parent), m_app(app), m_view(this) {
    setObjectName(className);
    setWindowTitle(QString::fromLatin1(kAppTitle));
    m_ctx = std::make_unique<WindowContext>(family, app.session(), m_view, app.prompts(),
                                            app.pause(), *this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_scroll = new ContentScrollArea(this);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setWidgetResizable(true);
    m_content = new QWidget(m_scroll);
    m_content->setObjectName(QStringLiteral("content"));
    m_scroll->setWidget(m_content);
    layout->addWidget(m_scroll);
    setAcceptDrops(true);
    if (QSettings* remembered = m_app.preferences()) {
        const QString folder = remembered->value(kFolderKey).toString();
        if (!folder.isEmpty() && QFileInfo(folder).isDir()) {
            m_ctx->lastFileName = folder + u'/';
        }
    }
}

void MainWindowBase::finishUi() {
    // Tight but even spacing, so that the two-part windows fit a 720-line screen.
    QList<QLayout*> layouts = m_content->findChildren<QLayout*>();
    layouts << m_content->layout();
    for (QLayout* layout : layouts) {
        if (!layout) {
            continue;
        }
        layout->setSpacing(4);
        if (qobject_cast<QGroupBox*>(layout->parentWidget()) &&
            layout->parentWidget()->layout() == layout) {
            layout->setContentsMargins(8, 4, 8, 6);
        } else if (layout == m_content->layout()) {
            layout->setContentsMargins(8, 6, 8, 6);
        }
    }
    for (auto* frame : findChildren<QGroupBox*>()) {
        frame->setAccessibleName(frame->title());
    }
    // The keys every desktop program loads and saves with; they press the buttons, so a
    // disabled button stays disabled.
    for (const auto& [name, keys] :
         {std::pair{ctl::mOpen, QKeySequence::Open}, std::pair{ctl::mSaveAs, QKeySequence::Save}}) {
        auto* button = m_content->findChild<QAbstractButton*>(name);
        if (!button) {
            continue;
        }
        auto* shortcut = new QShortcut(QKeySequence(keys), this);
        connect(shortcut, &QShortcut::activated, button, [button] {
            if (button->isEnabled()) {
                button->click();
            }
        });
        button->setToolTip(button->toolTip() + QStringLiteral(" (") +
                           QKeySequence(keys).toString(QKeySequence::NativeText) + u')');
    }
    shareKeysBetweenParts();
    for (auto* label : findChildren<QLabel*>()) {
        if (QWidget* box = label->buddy()) {
            m_labelOfBox.insert(box, label);
            box->installEventFilter(this);
            label->setEnabled(box->isEnabled());
        }
    }
}

void MainWindowBase::showEvent(QShowEvent* event) {
    if (!m_sizedForScreen && isWindow()) {
        m_sizedForScreen = true;
        // The natural size where the screen has room for it (the toolkit would stop at two
        // thirds of the screen); the scroll area takes over on a smaller screen.
        if (const QScreen* shown = screen()) {
            const QSize room = shown->availableSize() - QSize(16, 48);
            resize(sizeHint().boundedTo(room).expandedTo(minimumSizeHint()));
            // Where the window was last time, kept whole on the screen it now has.
            const QSettings* remembered = m_app.preferences();
            const QRect last =
                remembered ? remembered->value(geometryKey(objectName())).toRect() : QRect();
            if (last.isValid()) {
                setGeometry(FitInside(last, shown->availableGeometry()));
            }
        }
    }
    QWidget::showEvent(event);
}

void MainWindowBase::closeEvent(QCloseEvent* event) {
    if (QSettings* remembered = m_app.preferences(); remembered && isWindow()) {
        remembered->setValue(geometryKey(objectName()), geometry());
    }
    QWidget::closeEvent(event);
}

void MainWindowBase::dragEnterEvent(QDragEnterEvent* event) {
    if (!droppedFile(event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void MainWindowBase::dropEvent(QDropEvent* event) {
    const QString path = droppedFile(event->mimeData());
    if (path.isEmpty()) {
        return;
    }
    event->acceptProposedAction();
    showNotice(QString());
    const BusyCursor busy;
    run([this, path] {
        m_ctx->lastFileName = path;
        settingsFileUsed(LoadSettingsFrom(*m_ctx, path), kLoadedNotice);
    });
}

void MainWindowBase::loadSettings() {
    settingsFileUsed(LoadSettingsCommand(*m_ctx), kLoadedNotice);
}

void MainWindowBase::saveSettings() {
    settingsFileUsed(SaveSettingsCommand(*m_ctx), kSavedNotice);
}

void MainWindowBase::settingsFileUsed(const QString& path, const QString& notice) {
    if (path.isEmpty()) {
        return;
    }
    showNotice(notice.arg(QDir::toNativeSeparators(path)));
    if (QSettings* remembered = m_app.preferences()) {
        remembered->setValue(kFolderKey, QFileInfo(path).absolutePath());
    }
}

MainWindowBase::~MainWindowBase() = default;

QWidget* MainWindowBase::noticeBar() {
    if (!m_noticeBar) {
        m_noticeBar = new QWidget(m_content);
        m_noticeBar->setObjectName(QStringLiteral("noticeBar"));
        auto* layout = new QHBoxLayout(m_noticeBar);
        layout->setContentsMargins(0, 0, 0, 0);
        m_notice = new QLabel(m_noticeBar);
        m_notice->setObjectName(QStringLiteral("notice"));
        m_notice->setTextInteractionFlags(Qt::TextSelectableByMouse);
        layout->addWidget(m_notice, 1);
        if (m_app.bench() != nullptr) {
            addBadge(simulatedProgrammerBadge());
        }
    }
    return m_noticeBar;
}

QWidget* MainWindowBase::simulatedProgrammerBadge() {
    auto* badge = new QPushButton(QStringLiteral("Si&mulated programmer"), m_noticeBar);
    badge->setObjectName(QStringLiteral("simulatedProgrammer"));
    badge->setAutoDefault(false);
    badge->setCursor(Qt::PointingHandCursor);
    badge->setToolTip(
        QStringLiteral("No programmer box is attached: the chip is simulated. Click to open the "
                       "bench (magnet, dies, faults, device traffic)."));
    // A sign rather than a command, so coloured apart from the window's own buttons; a palette
    // and not a style sheet, which would bring a style engine into every start-up.
    QPalette colours = badge->palette();
    colours.setColor(QPalette::Button, QColor(0xff, 0xf0, 0xb8));
    colours.setColor(QPalette::ButtonText, QColor(0x5c, 0x44, 0x00));
    badge->setPalette(colours);
    // No taller than the notice beside it: the strip keeps its height, the window its size.
    badge->setFixedHeight(m_notice->sizeHint().height());
    badge->setMinimumWidth(badge->sizeHint().width() + badge->fontMetrics().averageCharWidth() * 2);
    connect(badge, &QPushButton::clicked, this, [this] {
        if (DeviceBench* bench = m_app.bench()) {
            bench->open(this);
        }
    });
    return badge;
}

void MainWindowBase::showNotice(const QString& text) {
    noticeBar();
    m_notice->setText(text);
}

QString MainWindowBase::notice() const {
    return m_notice ? m_notice->text() : QString();
}

void MainWindowBase::addBadge(QWidget* badge) {
    noticeBar()->layout()->addWidget(badge);
}

void MainWindowBase::noteProgrammed(const QString& parts) {
    showNotice(parts + QStringLiteral(" programmed \u2014 ") +
               QTime::currentTime().toString(QStringLiteral("HH:mm:ss")));
}

QLineEdit* MainWindowBase::addBox(const QString& name, int index, const QString& text,
                                  std::function<void()> onLeave, QWidget* parent) {
    auto* box = new QLineEdit(text, parent ? parent : m_content);
    box->setObjectName(controlName(name, index));
    box->setMaximumWidth(kNumberBoxWidth);
    box->setMinimumWidth(kNumberBoxWidth);
    box->installEventFilter(this);
    m_leaveHandlers.insert(box, std::move(onLeave));
    return box;
}

QAbstractButton* MainWindowBase::addButton(const QString& name, int index, const QString& caption,
                                           std::function<void()> handler, QWidget* parent) {
    auto* button = new QPushButton(caption, parent ? parent : m_content);
    button->setObjectName(controlName(name, index));
    button->setAutoDefault(false);
    ApplyHelp(*button, HelpFor(name, index, m_ctx->family));
    connect(button, &QPushButton::clicked, this, [this, handler = std::move(handler)] {
        showNotice(QString());
        const BusyCursor busy;
        run(handler);
    });
    return button;
}

QCheckBox* MainWindowBase::addCheckBox(const QString& name, int index, const QString& caption,
                                       QWidget* parent) {
    auto* box = new QCheckBox(caption, parent ? parent : m_content);
    box->setObjectName(controlName(name, index));
    ApplyHelp(*box, HelpFor(name, index, m_ctx->family));
    return box;
}

QLabel* MainWindowBase::buddyLabel(const QString& text, QWidget* buddy, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setBuddy(buddy);
    return label;
}

void MainWindowBase::shareKeysBetweenParts() {
    QHash<QString, QList<QAbstractButton*>> byKey;
    for (auto* button : m_content->findChildren<QAbstractButton*>()) {
        if (!button->shortcut().isEmpty()) {
            byKey[button->shortcut().toString()] << button;
        }
    }
    for (const QList<QAbstractButton*>& buttons : std::as_const(byKey)) {
        if (buttons.size() < 2) {
            continue;
        }
        for (QAbstractButton* button : buttons) {
            m_sharedKeys.insert(button, buttons);
            button->installEventFilter(this);
            button->setToolTip(button->toolTip() + QStringLiteral(" — ") +
                               button->shortcut().toString(QKeySequence::NativeText) +
                               QStringLiteral(" acts on the part that holds the focus"));
        }
    }
}

QAbstractButton* MainWindowBase::sharedKeyTarget(QAbstractButton* pressed) const {
    const auto partFrame = [](QWidget* w) -> QWidget* {
        for (; w; w = w->parentWidget()) {
            if (w->objectName().startsWith(ctl::PartFrame + u'_')) {
                return w;
            }
        }
        return nullptr;
    };
    QWidget* focusPart = partFrame(QApplication::focusWidget());
    QAbstractButton* first = nullptr;
    for (QAbstractButton* button : m_sharedKeys.value(pressed)) {
        if (!button->isEnabled() || !button->isVisibleTo(this)) {
            continue;
        }
        if (focusPart && partFrame(button) == focusPart) {
            return button;
        }
        if (!first) {
            first = button;
        }
    }
    return first;
}

bool MainWindowBase::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Shortcut && m_sharedKeys.contains(watched) &&
        static_cast<QShortcutEvent*>(event)->isAmbiguous()) {
        // Qt would only move the focus between the copies; the user meant the part they are in.
        if (QAbstractButton* target = sharedKeyTarget(static_cast<QAbstractButton*>(watched))) {
            target->animateClick();
        }
        return true;
    }
    if (event->type() == QEvent::EnabledChange) {
        if (QLabel* label = m_labelOfBox.value(watched)) {
            label->setEnabled(static_cast<QWidget*>(watched)->isEnabled());
        }
    }
    if (event->type() == QEvent::FocusOut) {
        const auto reason = static_cast<QFocusEvent*>(event)->reason();
        // Only a move to another control of this window counts as leaving the box; a message
        // box or another window taking the focus does not.
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) {
            const auto it = m_leaveHandlers.constFind(watched);
            if (it != m_leaveHandlers.constEnd()) {
                const std::function<void()> handler = *it;
                run(handler);
            }
        }
    }
    return QWidget::eventFilter(watched, event);
}

void MainWindowBase::run(const std::function<void()>& handler) {
    struct Running {
        MainWindowBase& window;
        explicit Running(MainWindowBase& w) : window(w) {
            if (window.m_running++ == 0) {
                window.commandStarting();
            }
        }
        ~Running() {
            if (--window.m_running == 0) {
                window.commandFinished();
            }
        }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;
    } running(*this);
    try {
        handler();
    } catch (const DeviceError& e) {
        m_ctx->prompts.message(e.description());
        afterDeviceFailure();
    }
    if (m_chosenPort != 0 && m_ctx->session.ProgrammerConnected != 0) {
        if (QSettings* remembered = m_app.preferences()) {
            remembered->setValue(kPortKey, QStringLiteral("COM%1").arg(m_chosenPort));
        }
        m_chosenPort = 0;
    }
}

std::unique_ptr<WaitWindow> MainWindowBase::createWaitWindow(const QString& text) {
    return std::make_unique<WaitFormWindow>(this, text, m_idleWaitForms);
}

void MainWindowBase::processEvents() {
    QCoreApplication::processEvents();
}

std::int16_t MainWindowBase::choosePort() {
    frmComport dialog(m_app.ports(), m_ctx->prompts, this);
    if (const QSettings* remembered = m_app.preferences()) {
        dialog.preselect(remembered->value(kPortKey).toString());
    }
    m_ctx->prompts.runModal(dialog);
    m_chosenPort = dialog.SelectedCOM();
    return m_chosenPort;
}

bool MainWindowBase::confirmCommLock() {
    confirm dialog(this);
    m_ctx->prompts.runModal(dialog);
    return dialog.CheckSelection();
}

void MainWindowBase::showAbout(const QString& hardwareVersion) {
    About box(m_ctx->session, m_ctx->prompts, this);
    box.Init(hardwareVersion);
    m_ctx->prompts.runModal(box);
}

MeasureSeams MainWindowBase::measureSeams() {
    return {*m_ctx, m_app.fixture(),
            [this](const std::function<void()>& handler) { run(handler); }};
}

void MainWindowBase::showLinearGraph(std::int16_t part, std::int16_t count, std::int16_t part2,
                                     std::int16_t count2) {
    frmLinearGraph graph(measureSeams(), SwitchOf(m_ctx->family), this);
    graph.Init(part, count, part2, count2);
    m_ctx->prompts.runModal(graph);
}

void MainWindowBase::showRealTimeDisplay(std::int16_t part, std::int16_t num) {
    RealTimeDisplayBar display(m_ctx->session, m_ctx->prompts, m_ctx->pause, this);
    display.Init(part, num);
    m_ctx->prompts.runModal(display);
}

void MainWindowBase::showAdvanced(std::int16_t part, std::int16_t num) {
    frmadvanced dialog(m_ctx->session, m_ctx->prompts, m_ctx->pause, this);
    dialog.Init(part, num);
    m_ctx->prompts.runModal(dialog);
}

}  // namespace rk31
