// Measuring the programmed chip in the Linear Graph and beside the point windows' plot, on the
// simulated programmer: the calls each reading makes, the state the chip is left in, the result
// line, the marks on the plot, what Export writes, and every way a measurement stops early.
#include <QProgressDialog>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>
#include <numeric>

#include "device/DeviceSession.h"
#include "device/PlotMeasurement.h"
#include "sim/SimulatedBox.h"
#include "ui/PointHarness.h"
#include "ui/plots/TransferCurvePlot.h"
#include "ui/plots/frmLinearGraph.h"
#include "ui/windows/MainForm2Parts.h"

using namespace rk31;
using namespace rk31::test;

namespace {

// The calls that read `part` `count` times, the part found in `before` ("off", "ADC" or "OWI")
// and returned there afterwards.
QStringList readings(int part, int count, const QString& before) {
    QStringList calls;
    if (before == "off") {
        calls << "PowerOnChip(#)"
              << "EnterOWIMode(#)";
    } else if (before == "ADC") {
        calls << "EnterOWIMode(#)";
    }
    for (int i = 0; i < count; ++i) {
        if (i > 0) {
            calls << "EnterOWIMode(#)";
        }
        calls << "ReadAngle(#)"
              << "ExitOWIMode(#)"
              << "EnterADCMode(#)"
              << "MeasureOutput(#, 1)";
    }
    if (before == "off") {
        calls << "PowerOffChip(#)"
              << "EnterADCMode(#)"
              << "SelectOutputChannel(#)";
    } else if (before == "OWI") {
        calls << "EnterOWIMode(#)";
    }
    calls.replaceInStrings("#", QString::number(part));
    return calls;
}

// Once a sweep has taken `count` readings, runs `act` (on the progress dialog it finds).
void whenSweepReaches(QWidget* root, int count, std::function<void(QProgressDialog&)> act) {
    auto* timer = new QTimer(root);
    QObject::connect(timer, &QTimer::timeout, timer, [root, count, timer, act = std::move(act)] {
        for (auto* progress : root->window()->findChildren<QProgressDialog*>()) {
            if (progress->value() >= count) {
                timer->stop();
                act(*progress);
                return;
            }
        }
    });
    timer->start(0);
}

// What the Linear Graph of "/1" showed after Measure.
struct GraphSeen {
    QString result;
    PartReadings readings;
    QImage picture;
    std::vector<QPointF> pixels;  // where each reading of Part#1 is drawn
    bool progressLeft = false;    // a progress dialog still open after the command
};

}  // namespace

class MeasureTest : public QObject {
    Q_OBJECT
    std::unique_ptr<Bench> bench;

    // "/1" with Part#1 programmed 100:20 200:80, clamps 10 and 90, DP 300, left in OWI mode.
    std::unique_ptr<MainForm2Parts2Src> programmedTwoPartWindow(const QString& sim = {}) {
        bench = std::make_unique<Bench>(sim::ParseSimConfig(sim, nullptr));
        auto window = openConnected<MainForm2Parts2Src>(*bench, true);
        QWidget* w = window.get();
        for (const auto& [name, index, text] : {std::tuple{"Angle", 0, "100"},
                                                {"Level", 0, "20"},
                                                {"Angle", 1, "200"},
                                                {"Level", 1, "80"},
                                                {"clamplow", 0, "10"},
                                                {"clamphigh", 0, "90"},
                                                {"DP", 0, "300"}}) {
            typeInto(w, name, index, text);
        }
        click(w, "btnconfigsolver", 0);
        bench->clearTrace();
        return window;
    }

    // Opens the Linear Graph of Part#1, sets the step, runs `during` once the sweep is under way
    // and clicks Measure.
    GraphSeen measureInLinearGraph(QWidget* w, int step,
                                   const std::function<void(QDialog&)>& during = {}) {
        GraphSeen seen;
        bench->prompts.dialogScripts.push_back([&](QDialog& dialog) {
            bench->clearTrace();
            find<QSpinBox>(&dialog, "measureStep")->setValue(step);
            if (during) {
                during(dialog);
            }
            click(&dialog, "measure");
            seen.progressLeft = !dialog.findChildren<QProgressDialog*>().isEmpty() &&
                                dialog.findChild<QProgressDialog*>()->isVisible();
            seen.result = textOf(&dialog, "measureResult");
            auto* plot = find<TransferCurvePlot>(&dialog, "Picture1");
            seen.readings = plot->readings();
            seen.picture = plot->grab().toImage();
            for (const AngleReading& r : seen.readings[0]) {
                seen.pixels.push_back(
                    PlotCanvas::PlotTransform(plot->size()).map(QPointF(r.angle, r.measured)) *
                    plot->devicePixelRatioF());
            }
        });
        click(w, "lineargraph", 0);
        return seen;
    }

  private slots:
    void cleanup() { bench.reset(); }

    void linearGraphMeasuresTheProgrammedChip_data() {
        QTest::addColumn<QString>("levelB");  // typed after programming, before the graph
        QTest::addColumn<int>("step");
        QTest::addColumn<QString>("result");
        // clang-format off
        QTest::newRow("as programmed") << "80" << 30
            << "Part#1, 12 points: largest deviation 0.01 %VDD at 0.00 deg (within tolerance)";
        QTest::newRow("another level B drawn") << "60" << 10
            << "Part#1, 36 points: largest deviation 22.01 %VDD at 220.00 deg (outside the tolerance)";
        // clang-format on
    }
    void linearGraphMeasuresTheProgrammedChip() {
        QFETCH(QString, levelB);
        QFETCH(int, step);
        const auto window = programmedTwoPartWindow();
        typeInto(window.get(), "Level", 1, levelB);
        const GraphSeen seen = measureInLinearGraph(window.get(), step);
        QTEST(seen.result, "result");
        const int count = 360 / step;
        QCOMPARE(bench->trace(), readings(0, count, "OWI"));
        QCOMPARE(bench->session().ChipState[0], OwiMode);
        QVERIFY(bench->prompts.messages.isEmpty());
        QVERIFY(!seen.progressLeft);
        // The sensed angles, a whole turn, each marked in Part#1's colour.
        QCOMPARE(seen.readings[0].size(), std::size_t(count));
        QVERIFY(seen.readings[1].empty());
        for (int i = 0; i < count; ++i) {
            QCOMPARE(seen.readings[0][static_cast<std::size_t>(i)].angle, double(i * step));
            QCOMPARE(seen.picture.pixelColor(seen.pixels[static_cast<std::size_t>(i)].toPoint()),
                     kFirstCurveColour);
        }
    }

    // Both parts in one sweep: the progress counts on through the second part, and each part
    // is read at every angle.
    void aSweepOfBothPartsCountsOn() {
        const auto window = programmedTwoPartWindow();
        std::vector<std::size_t> done;
        const PartReadings taken = SweepParts(window->context(), {0, 1}, *bench->app.fixture(), 30,
                                              [&done](const SweepProgress& at) {
                                                  done.push_back(at.done);
                                                  return at.total == 24;
                                              });
        std::vector<std::size_t> expected(24);
        std::iota(expected.begin(), expected.end(), 0);
        QCOMPARE(done, expected);
        QCOMPARE(taken[0].size(), std::size_t{12});
        QCOMPARE(taken[1].size(), std::size_t{12});
    }

    void linearGraphStopsEarly_data() {
        QTest::addColumn<QString>("sim");
        QTest::addColumn<QString>("during");  // what happens once two readings are taken
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QStringList>("trace");
        QTest::addColumn<int>("kept");  // readings on the plot
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("powerCaption");
        // clang-format off
        QTest::newRow("fixture cannot turn") << "fixture_fail=1" << ""
            << QStringList{"The magnet fixture cannot reach 0.00 deg!"} << QStringList() << 0 << int(OwiMode) << "Power Off";
        QTest::newRow("cancelled") << "" << "cancel" << QStringList() << readings(0, 2, "OWI") << 2 << int(OwiMode) << "Power Off";
        // The channel is gone before the third reading's first call: reported, the chip
        // recorded where the second reading left it.
        QTest::newRow("programmer gone") << "" << "close channel"
            << QStringList{"Programmer is not connected!"} << readings(0, 2, "") + QStringList{"EnterOWIMode(0)"}
            << 0 << int(AdcMode) << "Power Off";
        // clang-format on
    }
    void linearGraphStopsEarly() {
        QFETCH(QString, sim);
        QFETCH(QString, during);
        const auto window = programmedTwoPartWindow(sim);
        const GraphSeen seen = measureInLinearGraph(window.get(), 10, [&](QDialog& dialog) {
            if (during.isEmpty()) {
                return;
            }
            whenSweepReaches(&dialog, 2, [this, during](QProgressDialog& progress) {
                if (during == "cancel") {
                    progress.cancel();
                } else {
                    bench->session().device().CloseChannel(-1);
                }
            });
        });
        QTEST(bench->prompts.messages, "messages");
        QStringList trace = bench->trace();
        trace.removeAll("CloseChannel(-1)");
        QTEST(trace, "trace");
        QTEST(int(seen.readings[0].size()), "kept");
        QTEST(int(bench->session().ChipState[0]), "state");
        QTEST(textOf(window.get(), "PowerOn", 0), "powerCaption");
        QVERIFY(!seen.progressLeft);
    }
};

QTEST_MAIN(MeasureTest)
#include "MeasureTest.moc"
