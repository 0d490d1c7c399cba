// Exporting a plot: the CSV holds exactly the drawn rows, the pictures are real PNG and SVG,
// and a name the export cannot serve is reported without touching any file.
#include <QTemporaryDir>
#include <QtTest>

#include "domain/Curve.h"
#include "support/ScriptedPrompts.h"
#include "ui/plots/CurveExport.h"

using namespace rk31;

class CurveExportTest : public QObject {
    Q_OBJECT
    CurveTables curves{};
    RoundedImages rounded{};
  private slots:
    void csvAndPictures() {
        curves[0] = {{{83, 10}, {100, 20}, {100, 20}, {200, 80}}};
        curves[1][0] = {0, 45};
        curves[1][1] = {300, 45};
        curves[1][4] = {1, 1};  // behind the empty segment 1: not drawn, not exported
        curves[1][5] = {2, 2};
        QCOMPARE(CurveCsvLines(curves, {0, 1}),
                 QStringList({"part,segment,angle_deg,level_pct_vdd", "1,0,83,10", "1,0,100,20",
                              "1,1,100,20", "1,1,200,80", "2,0,0,45", "2,0,300,45"}));
        QCOMPARE(CurveCsvLines(curves, {1}).size(), 3);

        const QByteArray png = CurvePicture("png", {600, 300}, SinglePart(0), 2, curves, rounded);
        QVERIFY(png.startsWith("\x89PNG"));
        QCOMPARE(QImage::fromData(png).size(), QSize(600, 300));
        const QByteArray svg = CurvePicture("svg", {600, 300}, BothParts(), 2, curves, rounded, {},
                                            {"Transfer curve", "Part#1: points"});
        QVERIFY(svg.contains("<svg") && svg.contains("</svg>") && svg.contains("Part#1: points"));

        // The title block: where from and when, then per part its points, DP and clamps.
        RoundedImages shown;
        shown.RoundedPoints[1] = {20, 200, 0, 0, 10, 90, 0, 0};
        shown.RoundedDP[1] = 290;
        shown.RoundedClampLow[1] = 5;
        shown.RoundedClampHigh[1] = 95;
        QCOMPARE(CurveTitleLines("window \"/4\"", QDateTime({2026, 11, 25}, {22, 5, 9}),
                                 SinglePart(1), 2, shown),
                 QStringList({"Transfer curve \u00B7 window \"/4\" \u00B7 2026-11-25 22:05:09",
                              "Part#2: points (20\u00B0, 10 %VDD) (200\u00B0, 90 %VDD) \u00B7 "
                              "DP 290\u00B0 \u00B7 clamps 5 to 95 %VDD"}));
    }

    void exportWritesByTheNamesEnding() {
        QTemporaryDir dir;
        TransferCurvePlot plot(curves, rounded);
        test::ScriptedPrompts prompts;
        QString last;
        const auto exportTo = [&](const QString& name) {
            prompts.fileNames.push_back(dir.filePath(name));
            ExportCurveCommand(plot, "window \"/2\"", last, prompts);
            return QFileInfo(dir.filePath(name)).size();
        };
        for (const char* name : {"curve.csv", "curve.PNG", "curve.svg"}) {
            QVERIFY2(exportTo(name) > 0, name);
        }
        QVERIFY(prompts.messages.isEmpty());
        QCOMPARE(last, dir.filePath("curve.svg"));
        QCOMPARE(prompts.saveFilters,
                 QStringList({"PNG picture (*.png)", "SVG drawing (*.svg)", "CSV table (*.csv)",
                              "CSV table with the level at every degree (*.csv)"}));
        const auto csvLines = [&] {
            QFile file(dir.filePath("curve.csv"));
            file.open(QIODevice::ReadOnly);
            return QString::fromUtf8(file.readAll()).split("\r\n", Qt::SkipEmptyParts);
        };
        QCOMPARE(csvLines().size(), 5);  // the segments only
        // The last filter adds the level at every degree, after the segments.
        prompts.saveFilter = 3;
        exportTo("curve.csv");
        const QStringList lines = csvLines();
        QCOMPARE(lines.size(), 5 + 361);
        QCOMPARE(lines[5], "1,degree,0,");
        QCOMPARE(lines[5 + 83], "1,degree,83,10.00");
        QCOMPARE(lines[5 + 150], "1,degree,150,50.00");
        QCOMPARE(lines.last(), "1,degree,360,");
        prompts.saveFilter = 0;
        // A name without an ending takes the chosen filter's (the first, as scripted).
        exportTo("plain");
        QVERIFY(QImage(dir.filePath("plain.png")).width() > 0);
        QCOMPARE(last, dir.filePath("plain.png"));
        QVERIFY(prompts.messages.isEmpty());

        // Refused: an ending the export does not know, a folder that does not exist.
        exportTo("curve.txt");
        QVERIFY(!QFile::exists(dir.filePath("curve.txt")));
        exportTo("missing/curve.csv");
        QCOMPARE(prompts.messages.size(), 2);
        QCOMPARE(prompts.messages[0],
                 QStringLiteral("Choose a file name ending in .png, .svg or .csv to export the "
                                "curve."));
        QVERIFY(prompts.messages[1].startsWith(QStringLiteral("Could not save \"") +
                                               dir.filePath("missing")));
    }
};

QTEST_MAIN(CurveExportTest)
#include "CurveExportTest.moc"
