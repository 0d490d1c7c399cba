#include "ui/windows/PointWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QTimer>
#include <QVBoxLayout>

#include "device/DeviceSession.h"
#include "device/FieldValidation.h"
#include "device/WindowContext.h"
#include "procedures/points/PointPreparation.h"
#include "procedures/shared/Connection.h"
#include "procedures/shared/SettingsCommands.h"
#include "rk31/DeviceError.h"
#include "ui/kit/CommandHelp.h"
#include "ui/plots/CurveExport.h"
#include "ui/plots/MeasurePanel.h"
#include "ui/plots/TransferCurvePlot.h"
#include "ui/windows/SensorSketch.h"

namespace rk31 {

namespace {

const char* const kPointLetters[] = {"A", "B"};

QString partCaption(int part) {
    return QStringLiteral("Part#") + QString::number(part + 1);
}

QString watchedAngleName(int part) {
    return QStringLiteral("Angle now, %1").arg(partCaption(part));
}

}  // namespace

PointProgrammingWindow::PointProgrammingWindow(Application& app, const PointWindowTraits& traits,
                                               const QString& className, QWidget* parent)
    : MainWindowBase(app, FamilyOf(traits), className, parent), m_traits(traits) {
    buildUi();
    run([this] { PointWindowLoad(context(), m_traits); });
    refreshPictures();
}

void PointProgrammingWindow::afterDeviceFailure() {
    PointAfterDeviceFailure(context());
}

QAbstractButton* PointProgrammingWindow::addCommand(const QString& name, const QString& caption,
                                                    std::function<void()> handler) {
    auto* button = addButton(name, -1, caption, std::move(handler));
    // After the handler: Set point B leaves a new curve behind, and any command may have moved
    // the rounded points that the plot marks.
    connect(button, &QAbstractButton::clicked, this, [this] { refreshPictures(); });
    return button;
}

int PointProgrammingWindow::addCurveBoxes(QGridLayout* grid, int row, int part, QWidget* frame) {
    WindowContext& ctx = context();
    const int index = m_traits.bothParts ? part : -1;
    const struct {
        const QString& name;
        QString label;
        QString text;
        Field field;
    } boxes[] = {
        {ctl::DP, tr("DP (deg)"), DefaultDPText, Field::DP},
        {ctl::clamphigh, tr("Clamp High (%VDD)"), DefaultClampHighText, Field::ClampHigh},
        {ctl::clamplow, tr("Clamp Low (%VDD)"), DefaultClampLowText, Field::ClampLow},
    };
    for (const auto& b : boxes) {
        const Field field = b.field;
        auto* box = addBox(
            b.name, index, b.text, [&ctx, field, index] { ValidateField(ctx, field, index); },
            frame);
        grid->addWidget(buddyLabel(b.label, box, frame), row, 0);
        grid->addWidget(box, row, 1);
        if (b.name == ctl::DP && !m_traits.bothParts && !m_traits.offsets) {
            grid->addWidget(addCommand(ctl::GetDP, tr("Get DP Mid Point"),
                                       [this] { PointGetDPCommand(context(), m_traits); }),
                            row, 2);
        }
        ++row;
    }
    auto* clockwise = addCheckBox(
        ctl::clockwise, index,
        m_traits.bothParts ? tr("CW (%1)").arg(partCaption(part)) : tr("clockwise"), frame);
    connect(clockwise, &QCheckBox::stateChanged, this, [this] { refreshPictures(); });
    grid->addWidget(clockwise, row++, 0, 1, 2);
    return row;
}

int PointProgrammingWindow::addPointBoxes(QGridLayout* grid, int row, int part, QWidget* frame) {
    WindowContext& ctx = context();
    for (int k = 0; k < 2; ++k) {
        const int index = m_traits.bothParts ? part * 2 + k : k;
        const QString letter = QString::fromLatin1(kPointLetters[k]);
        auto* angle = addBox(
            ctl::Angle, index, QString(),
            [&ctx, index] { ValidateField(ctx, Field::Angle, index); }, frame);
        auto* level = addBox(
            ctl::Level, index, QString(),
            [&ctx, index] { ValidateField(ctx, Field::Level, index); }, frame);
        const QString angleLabel = tr("Angle %1 (deg)").arg(letter);
        const QString levelLabel = tr("Level %1 [%VDD]").arg(letter);
        // Point B is taught by turning the magnet: what the part senses meanwhile shows beside it.
        QLabel* watched = k == 1 && !m_traits.offsets ? addWatchedAngle(part, frame) : nullptr;
        if (m_traits.bothParts) {
            // Narrow columns: the two parts stand side by side.
            grid->addWidget(buddyLabel(angleLabel, angle, frame), row, 0);
            grid->addWidget(angle, row++, 1);
            if (watched) {
                grid->addWidget(watched, row++, 1);
            }
            grid->addWidget(buddyLabel(levelLabel, level, frame), row, 0);
            grid->addWidget(level, row++, 1);
        } else {
            grid->addWidget(buddyLabel(angleLabel, angle, frame), row, 0);
            grid->addWidget(angle, row, 1);
            grid->addWidget(buddyLabel(levelLabel, level, frame), row, 2);
            grid->addWidget(level, row, 3);
            if (watched) {
                grid->addWidget(watched, row, 4);
            }
            ++row;
        }
    }
    return row;
}

QGroupBox* PointProgrammingWindow::buildOffsetFrame() {
    WindowContext& ctx = context();
    auto* frame = new QGroupBox(tr("Offset setting against Angle A"), this);
    frame->setObjectName(ctl::Frame1);
    auto* grid = new QGridLayout(frame);
    const struct {
        const QString& name;
        QString label;
    } offsets[] = {{ctl::OffsetDP, tr("DP offset (deg)")},
                   {ctl::OffsetAngleB, tr("Angle B offset (deg)")}};
    int row = 0;
    for (const auto& o : offsets) {
        auto* box = addBox(
            o.name, -1, DefaultOffsetText, [&ctx, name = o.name] { OffsetLeft(ctx, name); }, frame);
        grid->addWidget(buddyLabel(o.label, box, frame), row, 0);
        grid->addWidget(box, row++, 1);
    }
    grid->setColumnStretch(2, 1);
    return frame;
}

QGroupBox* PointProgrammingWindow::buildOnePartFrame() {
    auto* partFrame = new QGroupBox(tr("Part Configuration"), this);
    partFrame->setObjectName(ctl::PartFrame);
    auto* column = new QVBoxLayout(partFrame);

    auto* top = new QGridLayout;
    auto* partSel = new QComboBox(partFrame);
    partSel->setObjectName(ctl::PartSel);
    connect(partSel, qOverload<int>(&QComboBox::currentIndexChanged), this,
            [this] { refreshPictures(); });
    top->addWidget(buddyLabel(tr("Part"), partSel, partFrame), 0, 0);
    top->addWidget(partSel, 0, 1);
    addCurveBoxes(top, 1, 0, partFrame);
    top->setColumnStretch(3, 1);
    column->addLayout(top);

    auto* points = new QGroupBox(tr("2 Points"), partFrame);
    points->setObjectName(ctl::Frame2);
    auto* grid = new QGridLayout(points);
    const int row = addPointBoxes(grid, 0, 0, points);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(addCommand(ctl::SetpointA, tr("Set point A"), [this] { setPointA(); }));
    auto* setPointB = addCommand(ctl::SetpointB, pointBCaption(), [this] { this->setPointB(); });
    if (m_traits.offsets) {
        ApplyHelp(*setPointB,
                  {u'r', tr("Programs the part with point A, and point B and DP at their offsets "
                            "from it, then powers it off")});
    }
    buttons->addWidget(setPointB);
    if (!m_traits.offsets) {
        buttons->addWidget(addWatchToggle(points));
    }
    buttons->addStretch(1);
    grid->addLayout(buttons, row, 0, 1, 4);
    column->addWidget(points);
    if (m_traits.offsets) {
        column->addWidget(buildOffsetFrame());
    }
    return partFrame;
}

QGroupBox* PointProgrammingWindow::buildDualFrame() {
    auto* partFrame = new QGroupBox(tr("Part Configuration"), this);
    partFrame->setObjectName(ctl::PartFrame);
    auto* column = new QVBoxLayout(partFrame);
    auto* parts = new QHBoxLayout;
    for (int part = 0; part < 2; ++part) {
        auto* frame = new QGroupBox(partCaption(part), partFrame);
        frame->setObjectName(part == 0 ? ctl::Frame1 : ctl::Frame2);
        auto* grid = new QGridLayout(frame);
        const int row = addPointBoxes(grid, 0, part, frame);
        addCurveBoxes(grid, row, part, frame);
        parts->addWidget(frame);
    }
    column->addLayout(parts);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(addCommand(ctl::SetpointA, tr("Set point A"), [this] { setPointA(); }));
    buttons->addWidget(addCommand(ctl::SetpointB, tr("Set point B"), [this] { setPointB(); }));
    buttons->addWidget(
        addCommand(ctl::GetDP, tr("Get DP"), [this] { PointGetDPCommand(context(), m_traits); }));
    buttons->addWidget(addWatchToggle(partFrame));
    buttons->addStretch(1);
    column->addLayout(buttons);
    return partFrame;
}

QLayout* PointProgrammingWindow::buildTopBar() {
    WindowContext& ctx = context();
    auto* bar = new QHBoxLayout;
    bar->addWidget(
        addButton(ctl::connect, -1, kConnectCaption, [&ctx] { PointConnectCommand(ctx); }));
    if (m_traits.powerButton) {
        bar->addWidget(addCommand(ctl::PowerOn, kPowerOnCaption,
                                  [this] { PointPowerOnCommand(context(), m_traits); }));
    }
    bar->addStretch(1);
    bar->addWidget(addButton(ctl::exportCurve, -1, tr("Export\u2026"), [this] {
        ExportCurveCommand(*m_plot, tr("window \"%1\"").arg(SwitchOf(FamilyOf(m_traits), m_traits)),
                           m_lastExport, context().prompts);
    }));
    bar->addWidget(addButton(ctl::mOpen, -1, tr("Load Settings"), [this] { loadSettings(); }));
    bar->addWidget(addButton(ctl::mSaveAs, -1, tr("Save Settings"), [this] { saveSettings(); }));
    bar->addWidget(addButton(ctl::btnAbout, -1, tr("About"), [&ctx] { AboutCommand(ctx); }));
    return bar;
}

void PointProgrammingWindow::buildUi() {
    m_plot = new TransferCurvePlot(context().session.CurveTable, context().session.rounded, this);
    m_plot->setObjectName(ctl::Picture1);
    m_plot->setMarkedPoints(2);
    m_plot->setAccessibleName(tr("Transfer curve"));
    m_plot->setMinimumSize(520, 280);
    m_plot->setPreferredSize({640, 420});
    WindowContext& ctx = context();
    const bool both = m_traits.bothParts;
    if (both) {
        m_plot->setShownParts(BothParts());
    } else {
        m_plot->setShownPartsSource(
            [&ctx] { return SinglePart(static_cast<std::int16_t>(ctx.selectedPart())); });
    }
    m_sketch = new SensorSketch(
        [&ctx, both] {
            std::vector<SensorSketch::Direction> directions;
            if (both) {
                for (int part = 0; part < 2; ++part) {
                    directions.push_back({partCaption(part),
                                          part == 0 ? kFirstCurveColour : kSecondCurveColour,
                                          ctx.view.value(ctl::clockwise, part) == 1});
                }
            } else {
                directions.push_back({partCaption(ctx.selectedPart()), kFirstCurveColour,
                                      ctx.view.value(ctl::clockwise) == 1});
            }
            return directions;
        },
        this);

    auto* layout = new QVBoxLayout(content());
    layout->addLayout(buildTopBar());
    auto* body = new QHBoxLayout;
    auto* left = new QVBoxLayout;
    left->addWidget(both ? buildDualFrame() : buildOnePartFrame());
    left->addWidget(m_sketch, 1);
    body->addLayout(left);
    m_measure = new MeasurePanel(measureSeams(), *m_plot, this);
    auto* picture = new QVBoxLayout;
    picture->addWidget(m_plot, 1);
    picture->addWidget(m_measure);
    body->addLayout(picture, 1);
    layout->addLayout(body, 1);
    layout->addWidget(noticeBar());
    finishUi();
}

std::vector<int> PointProgrammingWindow::commandParts() const {
    if (m_traits.bothParts) {
        return {0, 1};
    }
    return {context().selectedPart()};
}

QString PointProgrammingWindow::pointBCaption() const {
    return m_traits.offsets ? tr("Program") : tr("Set point B");
}

void PointProgrammingWindow::setPointA() {
    const bool ready = context().view.isEnabled(ctl::SetpointB);
    SetPointACommand(context(), m_traits);
    if (ready || !context().view.isEnabled(ctl::SetpointB)) {
        return;  // nothing was taken
    }
    for (const int part : commandParts()) {
        const auto index = static_cast<std::size_t>(part);
        if (DrawnSegmentCount(context().session.CurveTable[index]) > 0) {
            m_curveCaption[index] = tr("Earlier curve: point A is new");
        }
    }
}

void PointProgrammingWindow::setPointB() {
    const CurveTables before = context().session.CurveTable;
    const bool programmed = SetPointBCommand(context(), m_traits);
    const bool newCurve = context().session.CurveTable != before;
    // A new curve, whatever the programming reported: what was measured belongs to the old one.
    if (newCurve) {
        m_measure->clear();
    }
    for (const int part : commandParts()) {
        QString& caption = m_curveCaption[static_cast<std::size_t>(part)];
        if (programmed) {
            caption.clear();
        } else if (!context().view.isEnabled(ctl::SetpointB)) {
            // The command went as far as programming (the buttons start over) and failed.
            caption = tr("Not in the chip: %1 failed").arg(pointBCaption());
        }
    }
    if (!programmed) {
        return;
    }
    noteProgrammed(m_traits.bothParts ? tr("Part#1 and Part#2")
                                      : partCaption(context().selectedPart()));
}

QLabel* PointProgrammingWindow::addWatchedAngle(int part, QWidget* frame) {
    auto* label = new QLabel(frame);
    label->setObjectName(controlName(QStringLiteral("watchedAngle"), part));
    label->setAccessibleName(watchedAngleName(part));
    label->setMinimumWidth(
        label->fontMetrics().horizontalAdvance(QStringLiteral("now 359.99\u00B0")));
    m_watchedAngle[static_cast<std::size_t>(part)] = label;
    return label;
}

QCheckBox* PointProgrammingWindow::addWatchToggle(QWidget* frame) {
    m_watch = new QCheckBox(tr("Watch angle"), frame);
    m_watch->setObjectName(QStringLiteral("watchAngle"));
    ApplyHelp(*m_watch,
              {u'w', tr("Between Set point A and Set point B, reads the angle the part senses "
                        "%1 times a second and shows it beside Angle B")
                         .arg(1000 / kWatchIntervalMs)});
    m_watchTimer = new QTimer(this);
    m_watchTimer->setInterval(kWatchIntervalMs);
    connect(m_watchTimer, &QTimer::timeout, this, [this] { watchTick(); });
    connect(m_watch, &QCheckBox::toggled, this, [this] { updateWatch(); });
    return m_watch;
}

void PointProgrammingWindow::commandStarting() {
    // Every command's device calls stay exactly its own.
    if (m_watchTimer) {
        m_watchTimer->stop();
    }
}

void PointProgrammingWindow::commandFinished() {
    updateWatch();
}

void PointProgrammingWindow::updateWatch() {
    if (!m_watchTimer) {
        return;
    }
    const WindowContext& ctx = context();
    bool watching = m_watch->isChecked() && ctx.view.isEnabled(ctl::SetpointB) && ctx.powered;
    for (const int part : commandParts()) {
        watching = watching && ctx.session.ChipState[static_cast<std::size_t>(part)] == OwiMode;
    }
    if (watching && !m_watchTimer->isActive()) {
        m_watchTimer->start();
        watchTick();
    } else if (!watching) {
        m_watchTimer->stop();
        for (QLabel* label : m_watchedAngle) {
            if (label) {
                label->clear();
                label->setAccessibleName(watchedAngleName(label == m_watchedAngle[1] ? 1 : 0));
            }
        }
    }
}

void PointProgrammingWindow::watchTick() {
    // A reading still waiting on a slow line lets the event loop run; this tick is left out.
    if (context().session.callInProgress()) {
        return;
    }
    for (const int part : commandParts()) {
        QLabel* label = m_watchedAngle[static_cast<std::size_t>(part)];
        // One box in the one-part windows, for whichever part is chosen.
        if (!label) {
            label = m_watchedAngle[0];
        }
        QString shown;
        try {
            float angle = 0;
            context().session.device().ReadAngle(static_cast<std::int16_t>(part), angle);
            shown = tr("now %1\u00B0").arg(QLocale::c().toString(angle, 'f', 2));
        } catch (const DeviceError&) {
            // The commands report a lost programmer; watching just stops.
            m_watchTimer->stop();
            shown = tr("no reading");
        }
        label->setText(shown);
        label->setAccessibleName(watchedAngleName(part) + QStringLiteral(": ") + shown);
    }
}

void PointProgrammingWindow::refreshPictures() {
    if (m_plot) {
        m_plot->setCaption(m_curveCaption[static_cast<std::size_t>(commandParts().front())]);
        m_plot->update();
    }
    if (m_measure) {
        m_measure->refresh();
    }
    if (m_sketch) {
        m_sketch->refresh();
    }
}

}  // namespace rk31
