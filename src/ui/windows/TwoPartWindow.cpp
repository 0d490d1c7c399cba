#include "ui/windows/TwoPartWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>

#include "device/UpdateControl.h"
#include "domain/PartParameters.h"
#include "procedures/shared/Connection.h"
#include "procedures/shared/SettingsCommands.h"
#include "procedures/twopart/AngleCommands.h"
#include "procedures/twopart/ProgramAction.h"
#include "procedures/twopart/SessionCommands.h"
#include "procedures/twopart/WindowCommands.h"
#include "ui/kit/CommandHelp.h"

namespace rk31 {

namespace {

const char* const kPointLetters[] = {"A", "B", "C", "D"};

}  // namespace

TwoPartWindow::TwoPartWindow(Application& app, WindowFamily family, const QString& className,
                             QWidget* parent)
    : MainWindowBase(app, family, className, parent),
      m_oneSupply(family == WindowFamily::TwoPartOneSupply) {
    buildUi();
    run([this] { TwoPartWindowLoad(context()); });
}

QLineEdit* TwoPartWindow::addBox(const QString& name, int index, const QString& text, Field field) {
    WindowContext& ctx = context();
    return MainWindowBase::addBox(name, index, text,
                                  [&ctx, field, index] { ValidateField(ctx, field, index); });
}

void TwoPartWindow::afterDeviceFailure() {
    TwoPartAfterDeviceFailure(context());
}

void TwoPartWindow::addSessionButtons(QGridLayout* grid, int index, int columns) {
    const auto part = static_cast<std::int16_t>(index < 0 ? 0 : index);
    WindowContext& ctx = context();
    const std::int16_t target = index < 0 ? kBothParts : part;
    const QString programmed = index < 0 ? tr("Part#1 and Part#2") : tr("Part#%1").arg(part + 1);
    QAbstractButton* const buttons[] = {
        addButton(ctl::newdevice, index, tr("New Device"), [&ctx, part] { NewDevice(ctx, part); }),
        addButton(ctl::owilock, index, tr("Comm Lock"),
                  [&ctx, part] { CommLockCommand(ctx, part); }),
        addButton(ctl::Advanced, index, tr("Advanced"),
                  [&ctx, part] { AdvancedCommand(ctx, part); }),
        addButton(ctl::btnconfigsolver, index, tr("Program"),
                  [this, &ctx, target, programmed] {
                      if (ProgramAction(ctx, target)) {
                          noteProgrammed(programmed);
                      }
                  }),
        addButton(ctl::lineargraph, index, tr("Linear Graph"),
                  [&ctx, part] { LinearGraphCommand(ctx, part); }),
        addButton(ctl::viewoutput, index, tr("View Output"),
                  [&ctx, part] { ViewOutputCommand(ctx, part); }),
    };
    int i = 0;
    for (QAbstractButton* button : buttons) {
        grid->addWidget(button, i / columns, i % columns);
        ++i;
    }
}

QWidget* TwoPartWindow::buildTopBar() {
    WindowContext& ctx = context();
    auto* bar = new QWidget(this);
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(
        addButton(ctl::connect, -1, kConnectCaption, [&ctx] { TwoPartConnectCommand(ctx); }));
    if (m_oneSupply) {
        layout->addWidget(
            addButton(ctl::PowerOn, -1, kPowerOnCaption, [&ctx] { PowerCommand(ctx, 0); }));
    }
    layout->addStretch(1);
    layout->addWidget(addButton(ctl::mOpen, -1, tr("Load Settings"), [this] { loadSettings(); }));
    layout->addWidget(addButton(ctl::mSaveAs, -1, tr("Save Settings"), [this] { saveSettings(); }));
    layout->addWidget(addButton(ctl::btnAbout, -1, tr("About"), [&ctx] { AboutCommand(ctx); }));
    return bar;
}

QGroupBox* TwoPartWindow::buildPartFrame(int part) {
    WindowContext& ctx = context();
    const auto p = static_cast<std::int16_t>(part);
    auto* frame = new QGroupBox(tr("Part #%1").arg(part + 1), this);
    frame->setObjectName(controlName(ctl::PartFrame, part));
    auto* column = new QVBoxLayout(frame);

    auto* top = new QGridLayout;
    top->setColumnStretch(4, 1);
    int row = 0;
    auto* vdd = addBox(ctl::VDD, part, DefaultVDDText, Field::VDD);
    top->addWidget(buddyLabel(tr("VDD (V)"), vdd, frame), row, 0);
    top->addWidget(vdd, row, 1);
    if (!m_oneSupply) {
        top->addWidget(
            addButton(ctl::PowerOn, part, kPowerOnCaption, [&ctx, p] { PowerCommand(ctx, p); }),
            row, 2, 1, 2);
    }
    ++row;
    auto* rangle = addBox(ctl::Rangle, part, DefaultReadAngleText, Field::ReadAngle);
    top->addWidget(buddyLabel(tr("Angle (deg)"), rangle, frame), row, 0);
    top->addWidget(rangle, row, 1);
    top->addWidget(addButton(ctl::btnreadangle, part, tr("Read Angle"),
                             [&ctx, p] { ReadAngleCommand(ctx, p); }),
                   row, 2, 1, 2);
    ++row;
    auto* dp = addBox(ctl::DP, part, DefaultDPText, Field::DP);
    top->addWidget(buddyLabel(tr("DP (deg)"), dp, frame), row, 0);
    top->addWidget(dp, row, 1);
    top->addWidget(addButton(ctl::GetDP, part, tr("Get DP Mid Point"),
                             [&ctx, p] { GetDPMidPointCommand(ctx, p); }),
                   row, 2, 1, 2);
    ++row;
    auto* high = addBox(ctl::clamphigh, part, DefaultClampHighText, Field::ClampHigh);
    auto* low = addBox(ctl::clamplow, part, DefaultClampLowText, Field::ClampLow);
    top->addWidget(buddyLabel(tr("Clamp High (%VDD)"), high, frame), row, 0);
    top->addWidget(high, row, 1);
    top->addWidget(buddyLabel(tr("Clamp Low (%VDD)"), low, frame), row, 2);
    top->addWidget(low, row, 3);
    ++row;
    top->addWidget(addCheckBox(ctl::clockwise, part, tr("clockwise"), frame), row, 0, 1, 2);
    column->addLayout(top);

    if (!m_oneSupply) {
        auto* session = new QGridLayout;
        addSessionButtons(session, part, 3);
        column->addLayout(session);
    }

    auto* points = new QGroupBox(tr("Points"), frame);
    auto* grid = new QGridLayout(points);
    for (int k = 0; k < 4; ++k) {
        const int box = part * 4 + k;
        const QString letter = QString::fromLatin1(kPointLetters[k]);
        auto* angle = addBox(ctl::Angle, box, QString(), Field::Angle);
        auto* level = addBox(ctl::Level, box, QString(), Field::Level);
        grid->addWidget(buddyLabel(tr("Angle %1 (deg)").arg(letter), angle, points), k, 0);
        grid->addWidget(angle, k, 1);
        grid->addWidget(buddyLabel(tr("Level %1 [%VDD]").arg(letter), level, points), k, 2);
        grid->addWidget(level, k, 3);
        grid->addWidget(addButton(ctl::Setpoint, box, tr("Set point %1").arg(letter),
                                  [&ctx, box] { SetPointCommand(ctx, box); }),
                        k, 4);
    }
    // The hints read as one paragraph, line under line.
    auto* hints = new QVBoxLayout;
    hints->setSpacing(0);
    for (const QString& hint : {tr("Fill All Angles to make 4 Points Programming!"),
                                tr("Leave Angle D EMPTY to make 3 Points Programming!"),
                                tr("Leave Angle C EMPTY to make 2 Points Programming!"),
                                tr("Fill below box to make one point + slope Programming!")}) {
        auto* label = new QLabel(hint, points);
        label->setObjectName(QStringLiteral("hint"));
        hints->addWidget(label);
    }
    int hintRow = 4;
    grid->addLayout(hints, hintRow++, 0, 1, 5);
    auto* slope = addBox(ctl::KforA, part, QString(), Field::Slope);
    grid->addWidget(buddyLabel(tr("Slope"), slope, points), hintRow, 0);
    grid->addWidget(slope, hintRow, 1);
    grid->addWidget(new QLabel(tr("%VDD/deg"), points), hintRow, 2);
    grid->setColumnStretch(5, 1);
    column->addWidget(points);

    auto* lower = new QHBoxLayout;
    auto* swo = new QGroupBox(tr("SWO Programming"), frame);
    auto* swoGrid = new QGridLayout(swo);
    auto* op = addBox(ctl::op, part, QString(), Field::OP);
    swoGrid->addWidget(buddyLabel(tr("OP (deg)"), op, swo), 0, 0);
    swoGrid->addWidget(op, 0, 1);
    swoGrid->addWidget(
        addButton(ctl::swobtn, part, tr("Set Op"), [&ctx, p] { SetOpCommand(ctx, p); }), 0, 2, 1,
        2);
    auto* hys = addBox(ctl::hys, part, DefaultHYSText, Field::HYS);
    swoGrid->addWidget(buddyLabel(tr("HYS (deg)"), hys, swo), 1, 0);
    auto* hysRow = new QHBoxLayout;
    hysRow->addWidget(hys);
    for (const auto& [name, arrow, direction, accessible] :
         {std::tuple{ctl::hysup, Qt::UpArrow, 1, tr("HYS up")},
          std::tuple{ctl::hysdown, Qt::DownArrow, -1, tr("HYS down")}}) {
        auto* step = new QToolButton(swo);
        step->setObjectName(controlName(name, part));
        step->setArrowType(arrow);
        step->setAccessibleName(accessible);
        // No letter of "HYS up" or "HYS down" is free in a part, and the arrows say it anyway.
        step->setShortcut(QKeySequence(Qt::ALT | (direction > 0 ? Qt::Key_Up : Qt::Key_Down)));
        const QString help = HelpFor(name, part, context().family).toolTip;
        step->setAccessibleDescription(help);
        step->setToolTip(help + QStringLiteral(" (") +
                         step->shortcut().toString(QKeySequence::NativeText) + u')');
        const int dir = direction;
        connect(step, &QToolButton::clicked, this,
                [this, p, dir] { run([this, p, dir] { HysStep(context(), p, dir); }); });
        hysRow->addWidget(step);
    }
    hysRow->addStretch(1);
    swoGrid->addLayout(hysRow, 1, 1, 1, 3);
    swoGrid->addWidget(addCheckBox(ctl::Kpolarity, part, tr("Polarity"), swo), 2, 0, 1, 2);
    lower->addWidget(swo);

    auto* output = new QGroupBox(tr("Output"), frame);
    auto* outGrid = new QGridLayout(output);
    const struct {
        const QString& name;
        QString label;
    } lists[] = {{ctl::OutMode, tr("Output mode")},
                 {ctl::PWMFreq, tr("PWM frequency")},
                 {ctl::PWMPolarity, tr("PWM polarity")}};
    int outRow = 0;
    for (const auto& list : lists) {
        auto* combo = new QComboBox(output);
        combo->setObjectName(controlName(list.name, part));
        outGrid->addWidget(buddyLabel(list.label, combo, output), outRow, 0);
        outGrid->addWidget(combo, outRow++, 1);
        if (list.name == ctl::OutMode) {
            connect(combo, qOverload<int>(&QComboBox::activated), this,
                    [this, p] { run([this, p] { OutModeSelected(context(), p); }); });
        }
    }
    lower->addWidget(output);
    column->addLayout(lower);
    column->addStretch(1);
    return frame;
}

void TwoPartWindow::buildUi() {
    auto* layout = new QVBoxLayout(content());
    layout->addWidget(buildTopBar());
    if (m_oneSupply) {
        auto* both = new QGroupBox(tr("Both parts"), this);
        auto* grid = new QGridLayout(both);
        addSessionButtons(grid, -1, 6);
        layout->addWidget(both);
    }
    auto* parts = new QHBoxLayout;
    for (int part = 0; part < 2; ++part) {
        auto* column = new QVBoxLayout;
        if (!m_oneSupply) {
            // Outside the frame: the frame is disabled while its part is not enabled.
            auto* enable = addCheckBox(ctl::PartEnable, part, tr("Enable Part #%1").arg(part + 1));
            // However the tick comes (mouse, keyboard, an assistive tool's toggle), the part's
            // controls follow it.
            connect(enable, &QCheckBox::toggled, this,
                    [this] { run([this] { UpdateControl(context()); }); });
            column->addWidget(enable);
        }
        column->addWidget(buildPartFrame(part), 1);
        parts->addLayout(column);
    }
    layout->addLayout(parts, 1);
    auto* statusFrame = new QGroupBox(tr("Status"), this);
    auto* statusLayout = new QHBoxLayout(statusFrame);
    auto* status = new QLabel(kStatusOnOpen, statusFrame);
    status->setObjectName(ctl::status);
    status->setTextInteractionFlags(Qt::TextSelectableByMouse);
    statusLayout->addWidget(status, 1);
    statusLayout->addWidget(noticeBar());
    layout->addWidget(statusFrame);
    finishUi();
}

}  // namespace rk31
