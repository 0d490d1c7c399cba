#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QSize>
#include <QString>
#include <QStringList>

#include "ui/plots/TransferCurvePlot.h"

namespace rk31 {

class Prompts;

// What an exported picture says about itself above the plot: where it comes from and when,
// then per drawn part the points its curve was drawn from, DP and clamps (as the plot rounded
// them).
QStringList CurveTitleLines(const QString& source, const QDateTime& at, const ShownParts& parts,
                            int markedPoints, const RoundedImages& rounded);

// The plot as a picture: "png" or "svg", at `size` pixels, with the measured points marked and
// `title` lines above it.
QByteArray CurvePicture(const QString& format, QSize size, const ShownParts& parts,
                        int markedPoints, const CurveTables& curves, const RoundedImages& rounded,
                        const PartReadings& readings = {}, const QStringList& title = {});

// The Export… command of a plot: asks for a file name (starting from and updating `lastName`)
// and writes the plot as PNG or SVG with a title block naming `source`, or as CSV (the segment
// rows, the measured points after them as MeasuredCsvLines words them, and with the filter that
// asks for it the level at every whole degree). A name with another ending, or a file that
// cannot be written, is reported; a failed write leaves an existing file whole.
void ExportCurveCommand(const TransferCurvePlot& plot, const QString& source, QString& lastName,
                        Prompts& prompts);

}  // namespace rk31
