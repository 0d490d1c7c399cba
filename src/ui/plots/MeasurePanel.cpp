#include "ui/plots/MeasurePanel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressDialog>
#include <QPushButton>
#include <QSpinBox>

#include "device/PlotMeasurement.h"
#include "device/WindowContext.h"
#include "domain/Messages.h"
#include "ui/kit/BusyCursor.h"
#include "ui/plots/TransferCurvePlot.h"

namespace rk31 {

namespace {

QPushButton* button(const QString& name, const QString& caption, const QString& toolTip,
                    QWidget* parent) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    b->setAutoDefault(false);
    b->setToolTip(toolTip);
    return b;
}

}  // namespace

MeasurePanel::MeasurePanel(MeasureSeams seams, TransferCurvePlot& plot, QWidget* parent)
    : QGroupBox(kMeasureTitle, parent), m_seams(std::move(seams)), m_plot(plot) {
    setObjectName(QStringLiteral("measureFrame"));
    setAccessibleName(title());
    auto* row = new QHBoxLayout(this);
    // The letters stay clear of the windows' own: "m" is the simulated programmer's badge.
    if (m_seams.fixture != nullptr) {
        m_step = new QSpinBox(this);
        m_step->setObjectName(QStringLiteral("measureStep"));
        m_step->setRange(kSweepStepMin, kSweepStepMax);
        m_step->setValue(kSweepStepDefault);
        m_step->setToolTip(tr("How far the fixture turns the magnet between readings"));
        m_step->setAccessibleName(tr("Step (deg)"));
        auto* label = new QLabel(tr("S&tep (deg):"), this);
        label->setBuddy(m_step);
        row->addWidget(label);
        row->addWidget(m_step);
        auto* measure =
            button(QStringLiteral("measure"), tr("M&easure"),
                   tr("Turns the magnet through a whole turn with the fixture and measures the "
                      "output at every step"),
                   this);
        connect(measure, &QPushButton::clicked, this, [this] { m_seams.run([this] { sweep(); }); });
        row->addWidget(measure);
    } else {
        auto* add = button(QStringLiteral("addMeasurement"), tr("Add m&easurement"),
                           tr("Reads the angle and the output where the magnet stands now and "
                              "adds the point; turn the magnet between readings"),
                           this);
        connect(add, &QPushButton::clicked, this, [this] {
            const BusyCursor busy;
            m_seams.run([this] { addMeasurement(); });
        });
        row->addWidget(add);
    }
    auto* clearButton = button(QStringLiteral("clearMeasurements"), tr("&Clear"),
                               tr("Removes the measured points from the plot"), this);
    connect(clearButton, &QPushButton::clicked, this, [this] { clear(); });
    row->addWidget(clearButton);
    m_result = new QLabel(kNoMeasurementsText, this);
    m_result->setObjectName(QStringLiteral("measureResult"));
    m_result->setWordWrap(true);
    m_result->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_result->setAccessibleName(tr("Measurement result"));
    row->addWidget(m_result, 1);
}

std::vector<std::int16_t> MeasurePanel::measuredParts() const {
    std::vector<std::int16_t> parts;
    for (const int part : ShownPartIndexes(m_plot.shownParts())) {
        if (part == 0 || part == 1) {
            parts.push_back(static_cast<std::int16_t>(part));
        }
    }
    return parts;
}

void MeasurePanel::sweep() {
    const std::vector<std::int16_t> parts = measuredParts();
    QProgressDialog progress(window());
    progress.setWindowTitle(kMeasureTitle);
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(0);
    progress.setAutoReset(false);
    const PartReadings taken =
        SweepParts(m_seams.ctx, parts, *m_seams.fixture, m_step->value(),
                   [&progress](const SweepProgress& at) {
                       progress.setMaximum(static_cast<int>(at.total));
                       progress.setLabelText(MeasuringAtText(at.part, at.angle));
                       progress.setValue(static_cast<int>(at.done));
                       return !progress.wasCanceled();
                   });
    progress.reset();
    show(taken, true);
}

void MeasurePanel::addMeasurement() {
    show(ReadPartsHere(m_seams.ctx, measuredParts()), false);
}

void MeasurePanel::show(const PartReadings& taken, bool replace) {
    PartReadings readings = m_plot.readings();
    for (const std::int16_t part : measuredParts()) {
        const auto p = static_cast<std::size_t>(part);
        if (replace) {
            readings[p] = taken[p];
        } else {
            readings[p].insert(readings[p].end(), taken[p].begin(), taken[p].end());
        }
    }
    m_plot.setReadings(std::move(readings));
    refresh();
}

void MeasurePanel::clear() {
    m_plot.setReadings({});
    refresh();
}

void MeasurePanel::refresh() {
    m_result->setText(MeasurementSummary(ShownPartIndexes(m_plot.shownParts()), m_plot.curves(),
                                         m_plot.readings()));
}

}  // namespace rk31
