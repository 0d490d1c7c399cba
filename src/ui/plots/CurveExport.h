#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>
#include <QStringList>

#include "ui/plots/TransferCurvePlot.h"

namespace rk31 {

class Prompts;

// The plot as a picture: "png" or "svg", at `size` pixels, with the measured points marked.
QByteArray CurvePicture(const QString& format, QSize size, const ShownParts& parts,
                        int markedPoints, const CurveTables& curves, const RoundedImages& rounded,
                        const PartReadings& readings = {});

// The Export… command of a plot: asks for a file name (starting from and updating `lastName`)
// and writes the plot as PNG, SVG or CSV by the name's ending, measured points included (the
// CSV's after the segment rows, as MeasuredCsvLines words them). A name
// with another ending, or a file that cannot be written, is reported; a failed write leaves an
// existing file whole.
void ExportCurveCommand(const TransferCurvePlot& plot, QString& lastName, Prompts& prompts);

}  // namespace rk31
