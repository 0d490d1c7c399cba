#include "ui/plots/CurveExport.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QLocale>
#include <QPainter>
#include <QSvgGenerator>
#include <algorithm>

#include "domain/AtomicSave.h"
#include "domain/Prompts.h"

namespace rk31 {

namespace {

// A picture that pastes into a report at a readable size whatever the window's size.
constexpr QSize kPictureSize{1200, 620};

const QStringList kExportFilters{
    QStringLiteral("PNG picture (*.png)"), QStringLiteral("SVG drawing (*.svg)"),
    QStringLiteral("CSV table (*.csv)"),
    QStringLiteral("CSV table with the level at every degree (*.csv)")};
constexpr int kDegreeTableFilter = 3;

// The drawn segments of the shown parts, then their measured points, then (when asked) the
// level at every degree, with CRLF line ends.
QByteArray curveCsv(const TransferCurvePlot& plot, bool everyDegree) {
    const std::vector<int> parts = ShownPartIndexes(plot.shownParts());
    // The segment rows stay first and as they were; the rows after them carry a word where the
    // segment number stands, so a reader of the segments alone can stop at the first of them.
    QStringList lines =
        CurveCsvLines(plot.curves(), parts) + MeasuredCsvLines(parts, plot.readings());
    if (everyDegree) {
        lines += CurveDegreeCsvLines(plot.curves(), parts);
    }
    return lines.join(QStringLiteral("\r\n")).toUtf8() + "\r\n";
}

QString number(double value) {
    return QLocale::c().toString(value, 'f', 0);
}

// The title lines, then the plot in the room left below them.
void paintTitled(QPainter& painter, QSize size, const QStringList& title, const ShownParts& parts,
                 int markedPoints, const CurveTables& curves, const RoundedImages& rounded,
                 const PartReadings& readings) {
    painter.fillRect(QRect(QPoint(0, 0), size), Qt::white);
    int top = 0;
    if (!title.isEmpty()) {
        QFont font = painter.font();
        font.setPixelSize(std::max(12, size.height() / 40));
        painter.setFont(font);
        painter.setPen(Qt::black);
        const QFontMetrics metrics(font);
        top = metrics.height() / 2;
        for (const QString& line : title) {
            painter.drawText(
                QRect(metrics.height(), top, size.width() - 2 * metrics.height(), metrics.height()),
                Qt::AlignLeft | Qt::AlignVCenter, line);
            top += metrics.height();
        }
        top += metrics.height() / 2;
    }
    painter.save();
    painter.translate(0, top);
    PaintTransferCurves(painter, QSizeF(size.width(), size.height() - top), parts, markedPoints,
                        curves, rounded, readings);
    painter.restore();
}

}  // namespace

QStringList CurveTitleLines(const QString& source, const QDateTime& at, const ShownParts& parts,
                            int markedPoints, const RoundedImages& rounded) {
    QStringList lines{QStringLiteral("Transfer curve \u00B7 %1 \u00B7 %2")
                          .arg(source, at.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")))};
    for (const ShownPart& shown : parts) {
        if (shown.part < 0 || shown.part > 1) {
            continue;
        }
        const auto index = static_cast<std::size_t>(shown.part);
        const auto& points = rounded.RoundedPoints[index];
        QStringList given;
        for (int p = 0; p < std::clamp(markedPoints, 0, 4); ++p) {
            given << QStringLiteral("(%1\u00B0, %2 %VDD)")
                         .arg(number(points[static_cast<std::size_t>(p)]),
                              number(points[static_cast<std::size_t>(p + 4)]));
        }
        lines << QStringLiteral("Part#%1: points %2 \u00B7 DP %3\u00B0 \u00B7 clamps %4 to %5 %VDD")
                     .arg(shown.part + 1)
                     .arg(given.join(QStringLiteral(" ")), number(rounded.RoundedDP[index]),
                          number(rounded.RoundedClampLow[index]),
                          number(rounded.RoundedClampHigh[index]));
    }
    return lines;
}

QByteArray CurvePicture(const QString& format, QSize size, const ShownParts& parts,
                        int markedPoints, const CurveTables& curves, const RoundedImages& rounded,
                        const PartReadings& readings, const QStringList& title) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (format == u"svg") {
        QSvgGenerator svg;
        svg.setOutputDevice(&buffer);
        svg.setSize(size);
        svg.setViewBox(QRect(QPoint(0, 0), size));
        svg.setTitle(title.value(0, QStringLiteral("Transfer curve")));
        svg.setDescription(title.mid(1).join(u'\n'));
        QPainter painter(&svg);
        paintTitled(painter, size, title, parts, markedPoints, curves, rounded, readings);
        painter.end();
        return bytes;
    }
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    paintTitled(painter, size, title, parts, markedPoints, curves, rounded, readings);
    painter.end();
    image.save(&buffer, "PNG");
    return bytes;
}

void ExportCurveCommand(const TransferCurvePlot& plot, const QString& source, QString& lastName,
                        Prompts& prompts) {
    int filter = 0;
    const QString chosen = prompts.saveFileName(
        QStringLiteral("Export the curve as PNG, SVG or CSV"), lastName, kExportFilters, &filter);
    if (chosen.isEmpty()) {
        return;
    }
    lastName = chosen;
    const QString format = QFileInfo(chosen).suffix().toLower();
    QByteArray bytes;
    if (format == u"csv") {
        bytes = curveCsv(plot, filter == kDegreeTableFilter);
    } else if (format == u"png" || format == u"svg") {
        bytes =
            CurvePicture(format, kPictureSize, plot.shownParts(), plot.markedPoints(),
                         plot.curves(), plot.rounded(), plot.readings(),
                         CurveTitleLines(source, QDateTime::currentDateTime(), plot.shownParts(),
                                         plot.markedPoints(), plot.rounded()));
    } else {
        prompts.message(
            QStringLiteral("Choose a file name ending in .png, .svg or .csv to "
                           "export the curve."));
        return;
    }
    QString why;
    if (!SaveFileAtomically(chosen, bytes, &why)) {
        prompts.message(SaveFailedMessage(chosen, why));
    }
}

}  // namespace rk31
