#include "ui/plots/CurveExport.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgGenerator>

#include "domain/AtomicSave.h"
#include "domain/Prompts.h"

namespace rk31 {

namespace {

// A picture that pastes into a report at a readable size whatever the window's size.
constexpr QSize kPictureSize{1200, 620};

// The drawn segments of the shown parts, then their measured points, with CRLF line ends.
QByteArray curveCsv(const TransferCurvePlot& plot) {
    const std::vector<int> parts = ShownPartIndexes(plot.shownParts());
    // The segment rows stay first and as they were; the measured rows carry a word where the
    // segment number stands, so a reader of the segments alone can stop at the first of them.
    const QStringList lines =
        CurveCsvLines(plot.curves(), parts) + MeasuredCsvLines(parts, plot.readings());
    return lines.join(QStringLiteral("\r\n")).toUtf8() + "\r\n";
}

}  // namespace

QByteArray CurvePicture(const QString& format, QSize size, const ShownParts& parts,
                        int markedPoints, const CurveTables& curves, const RoundedImages& rounded,
                        const PartReadings& readings) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (format == u"svg") {
        QSvgGenerator svg;
        svg.setOutputDevice(&buffer);
        svg.setSize(size);
        svg.setViewBox(QRect(QPoint(0, 0), size));
        svg.setTitle(QStringLiteral("Transfer curve"));
        QPainter painter(&svg);
        PaintTransferCurves(painter, size, parts, markedPoints, curves, rounded, readings);
        painter.end();
        return bytes;
    }
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    PaintTransferCurves(painter, size, parts, markedPoints, curves, rounded, readings);
    painter.end();
    image.save(&buffer, "PNG");
    return bytes;
}

void ExportCurveCommand(const TransferCurvePlot& plot, QString& lastName, Prompts& prompts) {
    const QString chosen = prompts.saveFileName(
        QStringLiteral("Export the curve as PNG, SVG or CSV"), lastName,
        {QStringLiteral("PNG picture (*.png)"), QStringLiteral("SVG drawing (*.svg)"),
         QStringLiteral("CSV table (*.csv)")});
    if (chosen.isEmpty()) {
        return;
    }
    lastName = chosen;
    const QString format = QFileInfo(chosen).suffix().toLower();
    QByteArray bytes;
    if (format == u"csv") {
        bytes = curveCsv(plot);
    } else if (format == u"png" || format == u"svg") {
        bytes = CurvePicture(format, kPictureSize, plot.shownParts(), plot.markedPoints(),
                             plot.curves(), plot.rounded(), plot.readings());
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
