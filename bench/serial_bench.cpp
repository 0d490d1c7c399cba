// The serial line's cost: one Program action of Part#1 in the "/1" window, and one chip of
// rk31prog (Part#1 programmed and verified), each over a pseudo-terminal with rk31-boxsim behind
// it at 115,200 and 1,000,000 baud, beside the same on the simulated programmer in the process.
// Figures: time, device calls per second, and the protocol's bytes per call beside the bytes of
// the calls' own values. The box answers without latency; the line's time is what rk31-boxsim
// gives the bytes at the chosen speed.
//
//   serial_bench BOXSIM RK31PROG [PROGRAMS]      (default 20 Program actions per line)
#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdio>
#include <numeric>
#include <stdexcept>

#include "BenchWindow.h"
#include "Report.h"
#include "domain/SettingsFile.h"
#include "serial/SerialProgrammer.h"
#include "ui/windows/Startup.h"

using namespace rk31;
using namespace rk31::bench;

namespace {

// A two-part settings file whose parts go from 10 % at 20 degrees to 90 % at 200 degrees.
QString settingsText() {
    const QStringList part = {"5.000",  "CCW",   "260.00", "95.00", "5.00", "20.00", "10.00",
                              "200.00", "90.00", "",       "",      "",     "",      "",
                              "",       "1.00",  "0",      "0",     "0",    "0"};
    const QStringList values = part + part;
    QString text;
    qsizetype next = 0;
    for (const SettingsLine& line : TwoPartLayout()) {
        text += line.label + (line.kind == ValueKind::Header ? QString() : values.value(next++)) +
                QStringLiteral("\r\n");
    }
    return text;
}

// The serial driver, counting what goes over the line.
class CountingSerial : public DeviceDriver {
  public:
    explicit CountingSerial(serial::SerialSettings settings)
        : m_settings(std::move(settings)),
          m_ports(std::make_shared<serial::SerialPorts>(m_settings)) {}
    std::shared_ptr<QZ7734Device> create(const QString&) override {
        return serial::CreateSerialDevice(m_settings, m_ports, counts);
    }
    PortProber* ports() override { return m_ports.get(); }
    std::shared_ptr<serial::SerialLine::Counts> counts =
        std::make_shared<serial::SerialLine::Counts>();

  private:
    serial::SerialSettings m_settings;
    std::shared_ptr<serial::SerialPorts> m_ports;
};

class FilePrompts : public BenchPrompts {
  public:
    QString openFileName(const QString&, const QString&) override { return file; }
    QString file;
};

QAbstractButton& button(QWidget& root, const QString& name) {
    auto* found = root.findChild<QAbstractButton*>(name);
    if (found == nullptr || !found->isEnabled()) {
        throw std::runtime_error("no usable button " + name.toStdString());
    }
    return *found;
}

struct Line {
    QString label;
    int baud;  // 0: the simulated programmer in the process
};

// rk31-boxsim at a speed; its link is COM1.
class Box {
  public:
    Box(const QString& program, int baud) {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("RK31_SIM"), QStringLiteral("latency=0"));
        m_process.setProcessEnvironment(env);
        m_process.start(
            program, {QStringLiteral("--baud=%1").arg(baud), QStringLiteral("--link=") + link()});
        if (!m_process.waitForReadyRead(30000)) {
            throw std::runtime_error("rk31-boxsim did not start");
        }
    }
    ~Box() {
        m_process.kill();
        m_process.waitForFinished(10000);
    }
    QString link() const { return m_dir.filePath(QStringLiteral("box")); }

  private:
    QTemporaryDir m_dir;
    QProcess m_process;
};

// Program actions in the window: milliseconds each; `counts` (when given) keeps what went over
// the line during them.
std::vector<double> programs(DeviceDriver& driver, const QString& settings, int actions,
                             serial::SerialLine::Counts* counts = nullptr,
                             const serial::SerialLine::Counts* line = nullptr) {
    FilePrompts prompts;
    prompts.file = settings;
    BenchPause pause;
    Application app(StartSettings{}, prompts, pause, &driver);
    auto window = CreateMainWindow(1, app);
    prompts.dialogScripts.push_back([](QDialog& dialog) {
        auto* port = dialog.findChild<QComboBox*>(QStringLiteral("Port"));
        port->setCurrentIndex(port->findText(QStringLiteral("COM1")));
        dialog.findChild<QAbstractButton*>(QStringLiteral("connect"))->click();
    });
    button(*window, QStringLiteral("mOpen")).click();
    button(*window, QStringLiteral("connect")).click();
    button(*window, QStringLiteral("PartEnable_0")).click();
    button(*window, QStringLiteral("PowerOn_0")).click();
    std::vector<double> ms;
    QElapsedTimer clock;
    const serial::SerialLine::Counts before = line ? *line : serial::SerialLine::Counts{};
    for (int i = 0; i < actions; ++i) {
        clock.start();
        button(*window, QStringLiteral("btnconfigsolver_0")).click();
        ms.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
    }
    if (counts && line) {
        counts->requests = line->requests - before.requests;
        counts->bytesOut = line->bytesOut - before.bytesOut;
        counts->bytesIn = line->bytesIn - before.bytesIn;
    }
    if (!prompts.messages.isEmpty()) {
        throw std::runtime_error("a message: " + prompts.messages.join(" | ").toStdString());
    }
    return ms;
}

// One chip of rk31prog: milliseconds and the number of device calls.
std::pair<double, int> chip(const QString& rk31prog, const QString& settings, const QString& log,
                            const QStringList& environment) {
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const QString& entry : environment) {
        env.insert(entry.section(u'=', 0, 0), entry.section(u'=', 1));
    }
    process.setProcessEnvironment(env);
    QFile::remove(log);
    QElapsedTimer clock;
    clock.start();
    process.start(rk31prog,
                  {QStringLiteral("program"), settings, QStringLiteral("--port"),
                   QStringLiteral("1"), QStringLiteral("--part"), QStringLiteral("1"),
                   QStringLiteral("--verify"), QStringLiteral("--log"), log, QStringLiteral("-q")});
    if (!process.waitForFinished(300000) || process.exitCode() != 0) {
        throw std::runtime_error("rk31prog failed: " +
                                 process.readAllStandardError().toStdString());
    }
    const double ms = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    QFile file(log);
    file.open(QIODevice::ReadOnly);
    return {ms, static_cast<int>(file.readAll().count('\n'))};
}

}  // namespace

int main(int argc, char** argv) {
    QApplication qapp(argc, argv);
    if (argc < 3) {
        std::fprintf(stderr, "usage: serial_bench BOXSIM RK31PROG [PROGRAMS]\n");
        return 2;
    }
    const QString boxsim = QString::fromLocal8Bit(argv[1]);
    const QString rk31prog = QString::fromLocal8Bit(argv[2]);
    const int actions = argc > 3 ? std::max(1, std::atoi(argv[3])) : 20;
    try {
        QTemporaryDir dir;
        const QString settings = dir.filePath(QStringLiteral("chip.txt"));
        QFile file(settings);
        file.open(QIODevice::WriteOnly);
        file.write(settingsText().toUtf8());
        file.close();
        const Line lines[] = {{QStringLiteral("in-process simulator"), 0},
                              {QStringLiteral("115,200 baud"), 115200},
                              {QStringLiteral("1,000,000 baud"), 1000000}};
        for (const Line& line : lines) {
            std::vector<double> ms;
            std::pair<double, int> oneChip;
            std::shared_ptr<serial::SerialLine::Counts> counts;
            const QString log = dir.filePath(QStringLiteral("chip.log"));
            if (line.baud == 0) {
                sim::SimConfig config;
                config.fixture = false;
                sim::SimulatedProgrammer programmer(config);
                ms = programs(programmer, settings, actions);
                oneChip = chip(rk31prog, settings, log,
                               {QStringLiteral("RK31_SIM=latency=0;fixture=0"),
                                QStringLiteral("RK31_DRIVER=sim")});
            } else {
                Box box(boxsim, line.baud);
                serial::SerialSettings serialSettings;
                serialSettings.ports = {box.link()};
                serialSettings.scanDevices = false;
                serialSettings.baud = line.baud;
                CountingSerial driver(serialSettings);
                counts = std::make_shared<serial::SerialLine::Counts>();
                ms = programs(driver, settings, actions, counts.get(), driver.counts.get());
                oneChip = chip(rk31prog, settings, log,
                               {QStringLiteral("RK31_DRIVER=serial"),
                                QStringLiteral("RK31_SERIAL_PORTS=") + box.link(),
                                QStringLiteral("RK31_SERIAL_BAUD=%1").arg(line.baud)});
            }
            const Summary s = Summarize(ms);
            std::printf("%s\n", qPrintable(line.label));
            PrintDetail(QStringLiteral("Program action: median %1 ms, 95th percentile %2 ms "
                                       "(%3 actions)")
                            .arg(s.median, 0, 'f', 1)
                            .arg(s.p95, 0, 'f', 1)
                            .arg(actions));
            PrintDetail(QStringLiteral("rk31prog, one chip programmed and verified: %1 ms, %2 "
                                       "device calls, %3 calls/s (process start included)")
                            .arg(oneChip.first, 0, 'f', 0)
                            .arg(oneChip.second)
                            .arg(oneChip.second * 1000.0 / oneChip.first, 0, 'f', 0));
            if (counts && counts->requests > 0) {
                // Each exchange carries two frames of six bytes around its values, and a status.
                const qint64 overhead = counts->requests * (2 * 6 + 1);
                const qint64 values = counts->bytesOut + counts->bytesIn - overhead;
                PrintDetail(
                    QStringLiteral("Program actions on the line: %1 exchanges, %2 calls/s; per "
                                   "call %3 bytes of protocol beside %4 bytes of values")
                        .arg(counts->requests)
                        .arg(static_cast<double>(counts->requests) * 1000.0 /
                                 std::accumulate(ms.begin(), ms.end(), 0.0),
                             0, 'f', 0)
                        .arg(static_cast<double>(overhead) / static_cast<double>(counts->requests),
                             0, 'f', 1)
                        .arg(static_cast<double>(values) / static_cast<double>(counts->requests), 0,
                             'f', 1));
            }
        }
    } catch (const std::exception& e) {
        std::fprintf(stderr, "serial_bench: %s\n", e.what());
        return 1;
    }
    return 0;
}
