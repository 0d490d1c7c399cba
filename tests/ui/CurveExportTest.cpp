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
        const QByteArray svg = CurvePicture("svg", {600, 300}, BothParts(), 2, curves, rounded);
        QVERIFY(svg.contains("<svg") && svg.contains("</svg>"));
    }

    void exportWritesByTheNamesEnding() {
        QTemporaryDir dir;
        TransferCurvePlot plot(curves, rounded);
        test::ScriptedPrompts prompts;
        QString last;
        const auto exportTo = [&](const QString& name) {
            prompts.fileNames.push_back(dir.filePath(name));
            ExportCurveCommand(plot, last, prompts);
            return QFileInfo(dir.filePath(name)).size();
        };
        for (const char* name : {"curve.csv", "curve.PNG", "curve.svg"}) {
            QVERIFY2(exportTo(name) > 0, name);
        }
        QVERIFY(prompts.messages.isEmpty());
        QCOMPARE(last, dir.filePath("curve.svg"));
        QCOMPARE(prompts.saveFilters,
                 QStringList({"PNG picture (*.png)", "SVG drawing (*.svg)", "CSV table (*.csv)"}));
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
