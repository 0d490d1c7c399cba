#include "ui/plots/frmLinearGraph.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShowEvent>
#include <QTimer>

#include <QVBoxLayout>

#include "device/DeviceSession.h"
#include "device/WindowContext.h"
#include "domain/Curve.h"
#include "domain/Prompts.h"
#include "ui/plots/CurveExport.h"
#include "ui/plots/MeasurePanel.h"
#include "ui/plots/TransferCurvePlot.h"

namespace rk31 {

namespace {

struct ValueRow {
    const char* box;
    const char* label;
    const char* caption;
};

constexpr std::array<ValueRow, 7> kValueRows{{
    {"high", "Label7", "Clamp High [%VDD]"},
    {"low", "Label6", "Clamp Low [%VDD]"},
    {"dpdisp", "Label5", "DP [deg]"},
    {"A", "Label4", "Point A [deg:%VDD]"},
    {"B", "Label3", "Point B [deg:%VDD]"},
    {"C", "Label2", "Point C [deg:%VDD]"},
    {"D", "Label1", "Point D [deg:%VDD]"},
}};

constexpr std::int16_t kUnusedAngle = 500;
constexpr std::int16_t kCountBits = 0x0F;

QString pointText(const std::array<std::int16_t, 8>& points, int point) {
    const auto angle = points[static_cast<std::size_t>(point)];
    const auto level = points[static_cast<std::size_t>(point + 4)];
    return QString::number(angle) + u':' + QString::number(level);
}

}  // namespace

frmLinearGraph::frmLinearGraph(const MeasureSeams& seams, const QString& source, QWidget* parent)
    : QDialog(parent),
      m_session(seams.ctx.session),
      m_prompts(seams.ctx.prompts),
      m_source(source.isEmpty() ? QStringLiteral("Linear Graph")
                                : QStringLiteral("Linear Graph of window \"%1\"").arg(source)) {
    setObjectName(QStringLiteral("frmLinearGraph"));
    setWindowTitle(QStringLiteral("Linear Graph"));

    auto* values = new QGridLayout;
    auto* part1Head = new QLabel(QStringLiteral("Part#1"), this);
    part1Head->setObjectName(QStringLiteral("Label8"));
    m_part2Head = new QLabel(QStringLiteral("Part#2"), this);
    m_part2Head->setObjectName(QStringLiteral("Labelpart2"));
    values->addWidget(part1Head, 0, 1, Qt::AlignHCenter);
    values->addWidget(m_part2Head, 0, 2, Qt::AlignHCenter);

    const int boxWidth = fontMetrics().horizontalAdvance(QStringLiteral("Not Used__")) + 12;
    for (int row = 0; row < kRows; ++row) {
        const ValueRow& valueRow = kValueRows[static_cast<std::size_t>(row)];
        auto* label = new QLabel(QString::fromLatin1(valueRow.caption), this);
        label->setObjectName(QString::fromLatin1(valueRow.label));
        values->addWidget(label, row + 1, 0);
        for (int column = 0; column < 2; ++column) {
            auto* box = new QLineEdit(this);
            box->setObjectName(
                QStringLiteral("%1_%2").arg(QLatin1String(valueRow.box)).arg(column));
            box->setReadOnly(true);
            // Read-only values are read by their labels, not visited with the tab key.
            box->setFocusPolicy(Qt::ClickFocus);
            box->setAlignment(Qt::AlignHCenter);
            box->setFixedWidth(boxWidth);
            values->addWidget(box, row + 1, column + 1);
            m_boxes[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = box;
        }
        label->setBuddy(m_boxes[static_cast<std::size_t>(row)][0]);
        m_boxes[static_cast<std::size_t>(row)][1]->setAccessibleName(
            QStringLiteral("Part#2 ") + QString::fromLatin1(valueRow.caption));
    }
    values->setRowStretch(kRows + 1, 1);
    values->setVerticalSpacing(10);

    m_plot = new TransferCurvePlot(m_session.CurveTable, m_session.rounded, this);
    m_plot->setObjectName(QStringLiteral("Picture1"));
    m_plot->setMarkedPoints(4);
    m_plot->setAccessibleName(windowTitle());

    auto* exportButton = new QPushButton(QStringLiteral("E&xport\u2026"), this);
    exportButton->setObjectName(QStringLiteral("export"));
    exportButton->setAutoDefault(false);
    exportButton->setToolTip(
        QStringLiteral("Saves the curve as a picture (PNG, SVG) or as its rows (CSV)"));
    connect(exportButton, &QPushButton::clicked, this,
            [this] { ExportCurveCommand(*m_plot, m_source, m_lastExport, m_prompts); });
    values->addWidget(exportButton, kRows + 2, 0, 1, 3, Qt::AlignLeft);

    m_measure = new MeasurePanel(seams, *m_plot, this);
    auto* picture = new QVBoxLayout;
    picture->addWidget(m_plot, 1);
    picture->addWidget(m_measure);

    auto* layout = new QHBoxLayout(this);
    layout->addLayout(values);
    layout->addSpacing(8);
    layout->addLayout(picture, 1);
}

void frmLinearGraph::Init(std::int16_t part, std::int16_t count, std::int16_t part2,
                          std::int16_t count2) {
    if (count2 == 0 && part2 == 0) {
        m_firstPart = part;
        m_firstCount = static_cast<std::int16_t>(count & kCountBits);
        m_secondCount = 0;
    } else {
        m_firstPart = 0;
        m_firstCount = static_cast<std::int16_t>(count & kCountBits);
        m_secondCount = static_cast<std::int16_t>(count2 & kCountBits);
    }
}

void frmLinearGraph::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!m_loaded && !event->spontaneous()) {
        m_loaded = true;
        Load();
    }
}

void frmLinearGraph::Load() {
    const bool bothParts = m_secondCount != 0;
    fillColumn(0, m_firstPart);
    if (bothParts) {
        fillColumn(1, 1);
    }
    m_part2Head->setVisible(bothParts);
    for (auto& row : m_boxes) {
        row[1]->setVisible(bothParts);
    }
    m_plot->setShownParts(bothParts ? BothParts() : SinglePart(m_firstPart));

    const QStringList messages = bothParts
                                     ? CalLinearGraph(0, m_firstCount, 1, m_secondCount,
                                                      m_session.rounded, m_session.CurveTable)
                                     : CalLinearGraph(m_firstPart, m_firstCount, 0, 0,
                                                      m_session.rounded, m_session.CurveTable);
    m_measure->refresh();
    m_plot->update();
    // A message box opened while the window is still being shown leaves it at the toolkit's
    // smallest size; the messages follow as soon as the window stands at its own.
    if (!messages.isEmpty()) {
        QTimer::singleShot(0, this, [this, messages] { ShowMessages(m_prompts, messages); });
    }
}

void frmLinearGraph::fillColumn(int column, std::int16_t part) {
    if (part < 0 || part > 1) {
        return;
    }
    const RoundedImages& rounded = m_session.rounded;
    const auto p = static_cast<std::size_t>(part);
    const auto& points = rounded.RoundedPoints[p];
    const std::array<QString, kRows> texts{
        QString::number(rounded.RoundedClampHigh[p]),
        QString::number(rounded.RoundedClampLow[p]),
        QString::number(rounded.RoundedDP[p]),
        pointText(points, 0),
        pointText(points, 1),
        points[2] == kUnusedAngle ? QStringLiteral("Not Used") : pointText(points, 2),
        points[3] == kUnusedAngle ? QStringLiteral("Not Used") : pointText(points, 3),
    };
    for (int row = 0; row < kRows; ++row) {
        m_boxes[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)]->setText(
            texts[static_cast<std::size_t>(row)]);
    }
}

}  // namespace rk31
