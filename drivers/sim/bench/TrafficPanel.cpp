#include "sim/bench/TrafficPanel.h"

#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QVBoxLayout>

#include "sim/bench/BenchControls.h"
#include "sim/bench/TrafficModel.h"

namespace rk31::sim {

namespace {

const QString kHint =
    QStringLiteral("Every call the program makes to the programmer appears here.");

QString missedText(std::size_t missed) {
    return (missed == 1 ? QStringLiteral("1 earlier call was dropped")
                        : QStringLiteral("%1 earlier calls were dropped").arg(missed)) +
           QStringLiteral(
               ": the bench keeps the newest %1 calls; a device log (RK31_DEVICE_LOG) "
               "keeps every call.")
               .arg(TrafficModel::kCapacity);
}

}  // namespace

TrafficPanel::TrafficPanel(std::shared_ptr<TrafficRecorder> traffic, QWidget* parent)
    : QGroupBox(QStringLiteral("Device traffic"), parent), m_traffic(std::move(traffic)) {
    setObjectName(QStringLiteral("traffic"));
    m_model = new TrafficModel(this);
    m_filtered = new QSortFilterProxyModel(this);
    m_filtered->setSourceModel(m_model);
    m_filtered->setFilterKeyColumn(-1);
    m_filtered->setFilterCaseSensitivity(Qt::CaseInsensitive);

    m_filter = new QLineEdit(this);
    m_filter->setObjectName(QStringLiteral("trafficFilter"));
    m_filter->setPlaceholderText(QStringLiteral("operation, argument or value"));
    m_filter->setClearButtonEnabled(true);
    connect(m_filter, &QLineEdit::textChanged, m_filtered,
            &QSortFilterProxyModel::setFilterFixedString);
    auto* filterLabel = BuddyLabel(QStringLiteral("&Filter"), m_filter, this);

    m_pause = BenchButton(QStringLiteral("&Pause"), QStringLiteral("trafficPause"), this);
    m_pause->setCheckable(true);
    connect(m_pause, &QPushButton::toggled, this, [this](bool paused) {
        m_pause->setText(paused ? QStringLiteral("&Resume") : QStringLiteral("&Pause"));
    });
    auto* clearButton = BenchButton(QStringLiteral("C&lear"), QStringLiteral("trafficClear"), this);
    connect(clearButton, &QPushButton::clicked, this, &TrafficPanel::clear);
    auto* save = BenchButton(QStringLiteral("Sa&ve\u2026"), QStringLiteral("trafficSave"), this);
    connect(save, &QPushButton::clicked, this, &TrafficPanel::chooseFileAndSave);

    m_view = new QTableView(this);
    m_view->setObjectName(QStringLiteral("trafficView"));
    m_view->setAccessibleName(QStringLiteral("Device calls"));
    m_view->setModel(m_filtered);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setWordWrap(false);
    m_view->verticalHeader()->hide();
    m_view->verticalHeader()->setDefaultSectionSize(m_view->fontMetrics().height() + 4);
    m_view->horizontalHeader()->setStretchLastSection(true);
    m_view->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    const QFontMetrics metrics = m_view->fontMetrics();
    m_view->setColumnWidth(TrafficModel::Time,
                           metrics.horizontalAdvance(QStringLiteral("00:00:00.000  ")));
    m_view->setColumnWidth(TrafficModel::Operation,
                           metrics.horizontalAdvance(QStringLiteral("WriteBufferToDevice  ")));
    m_view->setColumnWidth(TrafficModel::Arguments,
                           metrics.horizontalAdvance(QStringLiteral("0, 14, Single:200.5, 1  ")));

    m_missed = new QLabel(this);
    m_missed->setObjectName(QStringLiteral("trafficMissed"));
    m_missed->setWordWrap(true);
    m_missed->setStyleSheet(QStringLiteral("color: #b00020;"));
    m_missed->hide();

    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("trafficStatus"));
    m_status->setWordWrap(true);
    m_status->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_status->setText(kHint);

    auto* bar = new QHBoxLayout;
    bar->addWidget(filterLabel);
    bar->addWidget(m_filter, 1);
    bar->addWidget(m_pause);
    bar->addWidget(clearButton);
    bar->addWidget(save);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(bar);
    layout->addWidget(m_missed);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_status);
}

void TrafficPanel::refresh() {
    if (m_pause->isChecked()) {
        return;
    }
    const std::size_t dropped = m_traffic->dropped();
    auto calls = m_traffic->take();
    if (calls.empty() && dropped == 0) {
        return;
    }
    // Newest at the bottom: a view scrolled to the end follows the traffic, one scrolled up to
    // read stays where it is.
    const QScrollBar* scroll = m_view->verticalScrollBar();
    const bool following = scroll->value() == scroll->maximum();
    m_model->append(std::move(calls), dropped);
    showMissed();
    if (following) {
        m_view->scrollToBottom();
    }
}

void TrafficPanel::showMissed() {
    const std::size_t missed = m_model->missed();
    m_missed->setVisible(missed > 0);
    ShowText(m_missed, missed > 0 ? missedText(missed) : QString());
}

QStringList TrafficPanel::shownLines() const {
    QStringList lines;
    for (int row = 0; row < m_filtered->rowCount(); ++row) {
        const int source = m_filtered->mapToSource(m_filtered->index(row, 0)).row();
        lines.append(DeviceLogLine(m_model->call(source)));
    }
    return lines;
}

bool TrafficPanel::saveTo(const QString& path) {
    const QStringList lines = shownLines();
    QByteArray bytes;
    for (const QString& line : lines) {
        bytes += line.toUtf8() + '\n';
    }
    // Written whole or not at all: a file already there keeps what it held.
    QSaveFile file(path);
    const bool saved = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() &&
                       file.flush() && file.commit();
    if (!saved) {
        m_status->setText(QStringLiteral("Could not write %1: the traffic was not saved, and a "
                                         "file already there is unchanged.")
                              .arg(QDir::toNativeSeparators(path)));
        m_status->setStyleSheet(QStringLiteral("color: #b00020;"));
        return false;
    }
    m_status->setText(QStringLiteral("Saved %1 calls to %2.")
                          .arg(lines.size())
                          .arg(QDir::toNativeSeparators(path)));
    m_status->setStyleSheet(QString());
    return true;
}

void TrafficPanel::chooseFileAndSave() {
    const QString path = QFileDialog::getSaveFileName(
        this, QStringLiteral("Save device traffic"),
        m_lastFile.isEmpty() ? QStringLiteral("device-traffic.log") : m_lastFile,
        QStringLiteral("Log files (*.log *.txt);;All files (*)"));
    if (path.isEmpty()) {
        return;
    }
    m_lastFile = path;
    saveTo(path);
}

void TrafficPanel::clear() {
    m_traffic->take();
    m_model->clear();
    showMissed();
    m_status->setText(kHint);
    m_status->setStyleSheet(QString());
}

}  // namespace rk31::sim
