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

}  // namespace

QByteArray CurvePicture(const QString& format, QSize size, const ShownParts& parts,
                        int markedPoints, const CurveTables& curves, const RoundedImages& rounded) {
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
        PaintTransferCurves(painter, size, parts, markedPoints, curves, rounded);
        painter.end();
        return bytes;
    }
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    PaintTransferCurves(painter, size, parts, markedPoints, curves, rounded);
    painter.end();
    image.save(&buffer, "PNG");
    return bytes;
}

void ExportCurveCommand(const TransferCurvePlot& plot, QString& lastName, Prompts& prompts) {
    const QString chosen =
        prompts.saveFileName(QStringLiteral("Export the curve as PNG, SVG or CSV"), lastName);
    if (chosen.isEmpty()) {
        return;
    }
    lastName = chosen;
    const QString format = QFileInfo(chosen).suffix().toLower();
    QByteArray bytes;
    if (format == u"csv") {
        bytes =
            CurveCsvLines(plot.curves(), ShownPartIndexes(plot.shownParts())).join(QStringLiteral("\r\n")).toUtf8() +
            "\r\n";
    } else if (format == u"png" || format == u"svg") {
        bytes = CurvePicture(format, kPictureSize, plot.shownParts(), plot.markedPoints(),
                             plot.curves(), plot.rounded());
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
