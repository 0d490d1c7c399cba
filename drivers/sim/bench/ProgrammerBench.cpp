#include "sim/bench/ProgrammerBench.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShowEvent>

#include "sim/bench/BenchControls.h"
#include "sim/bench/BenchText.h"
#include "sim/bench/DiePanel.h"
#include "sim/bench/FaultsPanel.h"
#include "sim/bench/MagnetPanel.h"
#include "sim/bench/TrafficPanel.h"

namespace rk31::sim {

ProgrammerBench::ProgrammerBench(Simulation simulation, QWidget* parent)
    : QWidget(parent, Qt::Window), m_simulation(std::move(simulation)) {
    setObjectName(QStringLiteral("programmerBench"));
    setWindowTitle(QStringLiteral("Simulated programmer - bench"));
    // The program ends with its main window; an open bench does not keep it running.
    setAttribute(Qt::WA_QuitOnClose, false);

    const auto& box = m_simulation.box;
    m_magnet = new MagnetPanel(box, this);
    for (int part = 0; part < 2; ++part) {
        m_dies[static_cast<std::size_t>(part)] = new DiePanel(box, part, this);
    }
    m_faults = new FaultsPanel(box, this);
    m_traffic = new TrafficPanel(m_simulation.traffic, this);
    m_faultsOn = new QLabel(this);
    m_faultsOn->setObjectName(QStringLiteral("faultsOn"));
    m_faultsOn->setWordWrap(true);
    m_faultsOn->setTextInteractionFlags(Qt::TextSelectableByMouse);
    connect(m_faults, &FaultsPanel::switched, this, &ProgrammerBench::showFaultsOn);

    // The faults that are on first; what is set on the left, what happens on the right. Narrow
    // enough to sit beside a main window on a 1920 x 1080 screen, low enough to fit on a
    // 1366 x 768 one.
    auto* settings = new QVBoxLayout;
    settings->addWidget(m_magnet);
    settings->addWidget(m_faults, 1);
    auto* dies = new QHBoxLayout;
    dies->addWidget(m_dies[0]);
    dies->addWidget(m_dies[1]);
    auto* happenings = new QVBoxLayout;
    happenings->addLayout(dies);
    happenings->addWidget(m_traffic, 1);
    auto* columns = new QHBoxLayout;
    columns->addLayout(settings);
    columns->addLayout(happenings, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_faultsOn);
    layout->addLayout(columns, 1);
    layout->addWidget(scenarioBar());

    m_simulation.traffic->setRecording(true);
    m_timer.setInterval(kRefreshMs);
    connect(&m_timer, &QTimer::timeout, this, &ProgrammerBench::refresh);
    refresh();
}

QWidget* ProgrammerBench::scenarioBar() {
    auto* bar = new QWidget(this);
    m_simText = new QLineEdit(bar);
    m_simText->setObjectName(QStringLiteral("simText"));
    m_simText->setReadOnly(true);
    m_simText->setToolTip(QStringLiteral(
        "Start the program with this in RK31_SIM to begin where the simulator is now"));
    auto* label = BuddyLabel(QStringLiteral("Scenario: RK31_SIM="), m_simText, bar);
    auto* copy = BenchButton(QStringLiteral("&Copy as RK31_SIM"), QStringLiteral("copySim"), bar);
    connect(copy, &QPushButton::clicked, this, &ProgrammerBench::copySimText);
    m_copied = new QLabel(bar);
    m_copied->setObjectName(QStringLiteral("copied"));
    m_chip = new QLabel(bar);
    m_chip->setObjectName(QStringLiteral("chipNumber"));
    auto* newChip = BenchButton(QStringLiteral("&New chip"), QStringLiteral("newChip"), bar);
    newChip->setToolTip(QStringLiteral(
        "Takes the chip out of the socket and puts a fresh blank one in, as a handler does"));
    connect(newChip, &QPushButton::clicked, this, [this] {
        m_simulation.box->newChip();
        refresh();
    });

    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label);
    layout->addWidget(m_simText, 1);
    layout->addWidget(copy);
    layout->addWidget(m_copied);
    layout->addSpacing(12);
    layout->addWidget(m_chip);
    layout->addWidget(newChip);
    return bar;
}

QSize ProgrammerBench::sizeHint() const {
    // The traffic view and the scenario text would take any width; they share what is left.
    return QWidget::sizeHint().boundedTo(QSize(800, 680)).expandedTo(minimumSizeHint());
}

void ProgrammerBench::refresh() {
    m_magnet->refresh();
    for (DiePanel* die : m_dies) {
        die->refresh();
    }
    m_faults->refresh();
    showFaultsOn();
    m_traffic->refresh();
    ShowText(m_chip, QStringLiteral("Chip %1").arg(m_simulation.box->chipNumber()));
    const QString text = simText();
    if (m_simText->text() != text) {
        m_simText->setText(text);
        m_simText->setCursorPosition(0);
        m_copied->clear();
    }
}

void ProgrammerBench::showFaultsOn() {
    const QStringList on = FaultsOn(*m_simulation.box);
    const QString text = on.isEmpty()
                             ? QStringLiteral("No faults on")
                             : QStringLiteral("Faults on: ") + on.join(QStringLiteral(", "));
    if (m_faultsOn->text() == text) {
        return;
    }
    m_faultsOn->setText(text);
    m_faultsOn->setAccessibleName(text);
    // A fault that is on is the first thing a person sees; none on, a quiet line.
    m_faultsOn->setStyleSheet(
        on.isEmpty() ? QStringLiteral("color: #505050; padding: 3px;")
                     : QStringLiteral("font-weight: bold; color: #b00020; background: #fde8ec; "
                                      "border: 1px solid #b00020; padding: 3px;"));
}

QString ProgrammerBench::simText() const {
    return WriteSimConfig(m_simulation.box->settings());
}

void ProgrammerBench::copySimText() {
    QGuiApplication::clipboard()->setText(simText());
    m_copied->setText(QStringLiteral("copied"));
}

void ProgrammerBench::showEvent(QShowEvent* event) {
    refresh();
    m_timer.start();
    QWidget::showEvent(event);
}

void ProgrammerBench::hideEvent(QHideEvent* event) {
    // Closed or minimised, the recorder goes on gathering the traffic (in its bounded ring) for
    // the next look.
    m_timer.stop();
    QWidget::hideEvent(event);
}

}  // namespace rk31::sim
