// The serial driver against a box of the test's own on a pseudo-terminal: what each kind of bad
// answer becomes, which calls are asked again, a handshake with the wrong protocol, a port that
// vanishes and comes back, and the ports the port dialog offers.
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <QLabel>
#include <QSocketNotifier>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>
#include <functional>

#include "device/PortList.h"
#include "rk31/DeviceError.h"
#include "serial/SerialProgrammer.h"
#include "serial/protocol/BoxServer.h"
#include "sim/SimulatedDevice.h"
#include "support/ScriptedPrompts.h"
#include "ui/dialogs/frmComport.h"

using namespace rk31;
using box::Frame;

namespace {

// A box on a pseudo-terminal that answers as the simulated box does, unless the test spoils the
// answers: `spoil` turns a good answer into the bytes sent instead.
class ScriptedBox {
  public:
    using Spoil = std::function<QByteArray(const Frame& good)>;

    ScriptedBox() {
        char name[256] = {};
        if (openpty(&m_master, &m_slave, name, nullptr, nullptr) != 0) {
            qFatal("openpty failed");
        }
        termios raw{};
        tcgetattr(m_slave, &raw);
        cfmakeraw(&raw);
        tcsetattr(m_slave, TCSANOW, &raw);
        path = QString::fromLocal8Bit(name);
        m_notifier = std::make_unique<QSocketNotifier>(m_master, QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] { serve(); });
    }
    ~ScriptedBox() { pull(); }

    // The cable pulled: the terminal goes.
    void pull() {
        m_notifier.reset();
        for (int* fd : {&m_master, &m_slave}) {
            if (*fd >= 0) {
                ::close(*fd);
                *fd = -1;
            }
        }
    }

    QString path;
    Spoil spoil;
    QList<Frame> requests;
    std::shared_ptr<sim::SimulatedBox> dies = std::make_shared<sim::SimulatedBox>();

  private:
    void serve() {
        char buffer[512];
        const ssize_t count = read(m_master, buffer, sizeof buffer);
        if (count <= 0) {
            return;
        }
        m_reader.feed(QByteArray(buffer, static_cast<qsizetype>(count)));
        while (auto request = m_reader.next().frame) {
            requests << *request;
            const Frame good = m_server.answer(*request);
            const QByteArray bytes = spoil ? spoil(good) : box::EncodeFrame(good);
            if (!bytes.isEmpty() && write(m_master, bytes.constData(), bytes.size()) < 0) {
                qWarning("the scripted box cannot answer");
            }
        }
    }

    int m_master = -1;
    int m_slave = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
    box::FrameReader m_reader;
    box::BoxServer m_server{[this] { return sim::CreateSimulatedDevice(dies); }};
};

serial::SerialSettings settingsFor(const QStringList& ports) {
    serial::SerialSettings settings;
    settings.ports = ports;
    settings.scanDevices = false;
    settings.timeoutMs = 300;
    return settings;
}

std::shared_ptr<QZ7734Device> connected(const QString& path, std::int32_t expectFailed = 0) {
    auto device = serial::CreateSerialDevice(
        settingsFor({path}), std::make_shared<serial::SerialPorts>(settingsFor({path})));
    std::int32_t failed = -1;
    device->OpenChannel(QVariant(std::int16_t{1}), failed);
    if (failed != expectFailed) {
        qWarning("OpenChannel answered failed=%d", failed);
    }
    return device;
}

// A call and what came of it: its out-value, or the DeviceError's description.
using Call = std::function<QString(QZ7734Device&)>;

QString described(const std::function<void()>& call, const std::function<QString()>& outcome) {
    try {
        call();
    } catch (const DeviceError& error) {
        return error.description();
    }
    return outcome();
}

const Call kReadAngle = [](QZ7734Device& d) {
    float angle = 0;
    return described([&] { d.ReadAngle(0, angle); },
                     [&] { return QStringLiteral("angle=") + QString::number(angle); });
};
const Call kReadMemory = [](QZ7734Device& d) {
    std::int32_t data = 0;
    return described(
        [&] {
            std::shared_ptr<MemoryAccess> memory;
            d.GetMemoryAccess(memory);
            memory->ReadMemory(0, 0x48, data);
        },
        [&] { return QStringLiteral("data=") + QString::number(data, 16); });
};
const Call kPowerOn = [](QZ7734Device& d) {
    std::int32_t status = -1;
    return described([&] { d.PowerOnChip(0, status); },
                     [&] { return QStringLiteral("status=") + QString::number(status); });
};
const Call kProgram = [](QZ7734Device& d) {
    std::int32_t failed = -1;
    return described([&] { d.ProgramEEPROM(0, failed); },
                     [&] { return QStringLiteral("failed=") + QString::number(failed); });
};
const Call kSolverValue = [](QZ7734Device& d) {
    std::int32_t failed = -1;
    std::shared_ptr<MemoryAccess> memory;
    d.GetMemoryAccess(memory);
    return described([&] { memory->SetSolverParameter(0, 1, SolverValue{10.0f}, 1, failed); },
                     [&] { return QStringLiteral("failed=") + QString::number(failed); });
};

Frame changed(Frame frame, const std::function<void(Frame&)>& change) {
    change(frame);
    return frame;
}

const ScriptedBox::Spoil kBadCrc = [](const Frame& good) {
    QByteArray bytes = box::EncodeFrame(good);
    bytes[bytes.size() - 1] = static_cast<char>(bytes[bytes.size() - 1] ^ 0x01);
    return bytes;
};
const ScriptedBox::Spoil kWrongSequence = [](const Frame& good) {
    return box::EncodeFrame(changed(good, [](Frame& f) { ++f.sequence; }));
};
const ScriptedBox::Spoil kWrongLength = [](const Frame& good) {
    return box::EncodeFrame(changed(good, [](Frame& f) { f.payload += '\0'; }));
};
const ScriptedBox::Spoil kUnknownCommand = [](const Frame& good) {
    return box::EncodeFrame(changed(good, [](Frame& f) { f.command = 0xEE; }));
};
const ScriptedBox::Spoil kGarbage = [](const Frame&) { return QByteArray("\x01\x02 noise", 8); };
const ScriptedBox::Spoil kSilence = [](const Frame&) { return QByteArray(); };

}  // namespace

class SerialLineTest : public QObject {
    Q_OBJECT

  private slots:
    // Reads are asked three times, then fail with the cause; a write, a solver transfer and an
    // EEPROM program are sent once and reported failed.
    void badAnswers_data() {
        QTest::addColumn<Call>("call");
        QTest::addColumn<ScriptedBox::Spoil>("spoil");
        QTest::addColumn<QString>("outcome");  // %1 stands for the terminal's path
        QTest::addColumn<int>("requests");
        const auto row = [](const char* name, const Call& call, const ScriptedBox::Spoil& spoil,
                            const char* outcome, int requests) {
            QTest::newRow(name) << call << spoil << QString::fromLatin1(outcome) << requests;
        };
        row("bad CRC, read", kReadAngle, kBadCrc,
            "ReadAngle on COM1 (%1): an answer with a bad CRC", 3);
        row("wrong sequence, read", kReadAngle, kWrongSequence,
            "ReadAngle on COM1 (%1): an answer with the wrong sequence number (6, not 5)", 3);
        row("wrong length, memory read", kReadMemory, kWrongLength,
            "ReadMemory on COM1 (%1): an answer of the wrong length (5 bytes of values, not 4)", 4);
        row("unknown command, read", kReadAngle, kUnknownCommand,
            "ReadAngle on COM1 (%1): an answer with the unknown command 0xee", 3);
        row("garbage, read", kReadAngle, kGarbage,
            "ReadAngle on COM1 (%1): garbage on the line (8 bytes of noise), no whole answer "
            "within 323 ms",
            3);
        row("silence, read", kReadAngle, kSilence,
            "ReadAngle on COM1 (%1): no answer within 323 ms", 3);
        row("bad CRC, power", kPowerOn, kBadCrc,
            "PowerOnChip on COM1 (%1): an answer with a bad CRC", 1);
        row("bad CRC, solver value", kSolverValue, kBadCrc,
            "SetSolverParameter on COM1 (%1): an answer with a bad CRC", 2);
        row("silence, EEPROM", kProgram, kSilence, "failed=1", 1);
        row("wrong sequence, EEPROM", kProgram, kWrongSequence, "failed=1", 1);
    }
    void badAnswers() {
        QFETCH(Call, call);
        QFETCH(ScriptedBox::Spoil, spoil);
        QFETCH(QString, outcome);
        QFETCH(int, requests);
        ScriptedBox box;
        auto device = connected(box.path);
        QCOMPARE(box.requests.size(), 2);  // Hello, OpenChannel
        box.spoil = [&spoil](const Frame& good) {
            // The first of several requests of a call (GetMemoryAccess) is answered well.
            return good.command == (static_cast<std::uint8_t>(box::Command::GetMemoryAccess) |
                                    box::kResponseBit)
                       ? box::EncodeFrame(good)
                       : spoil(good);
        };
        QCOMPARE(call(*device), QString(outcome).replace(QStringLiteral("%1"), box.path));
        QCOMPARE(box.requests.size() - 2, requests);
    }

    // Two garbled answers to a read, then a good one: the read succeeds.
    void aReadSucceedsOnItsThirdAsking() {
        ScriptedBox box;
        box.dies->setMagnetAngle(42);
        auto device = connected(box.path);
        int spoiled = 0;
        box.spoil = [&spoiled](const Frame& good) {
            return spoiled++ < 2 ? kBadCrc(good) : box::EncodeFrame(good);
        };
        QCOMPARE(kReadAngle(*device), QStringLiteral("angle=42"));
    }

    // A call made from the event loop while another call waits (a timer's) is refused, and the
    // waiting call goes on.
    void noCallInsideAnother() {
        ScriptedBox box;
        box.dies->setMagnetAngle(42);
        auto device = connected(box.path);
        QString inside;
        // The box's answer is written from the waiting call's event loop, as a timer would run.
        box.spoil = [&](const Frame& good) {
            if (inside.isEmpty()) {
                inside = kPowerOn(*device);
            }
            return box::EncodeFrame(good);
        };
        QCOMPARE(kReadAngle(*device), QStringLiteral("angle=42"));
        QCOMPARE(inside, QStringLiteral("PowerOnChip on COM1 (%1): another call is still waiting "
                                        "for its answer")
                             .arg(box.path));
        QCOMPARE(box.requests.size(), 3);  // Hello, OpenChannel, ReadAngle
    }

    // The box's own errors arrive unchanged, and are not asked again.
    void theBoxsOwnErrorIsTheDeviceError() {
        ScriptedBox box;
        box.dies->config.channelFail = true;
        auto device = connected(box.path, 1);
        QCOMPARE(kReadAngle(*device), QStringLiteral("Programmer is not connected!"));
        QCOMPARE(box.requests.size(), 3);  // Hello, OpenChannel, ReadAngle once
    }

    // A box that speaks another protocol version, and a port with no box behind it: the channel
    // does not open.
    void handshakeFailures() {
        ScriptedBox other;
        other.spoil = [](const Frame& good) {
            Frame answer = good;
            if (good.command ==
                (static_cast<std::uint8_t>(box::Command::Hello) | box::kResponseBit)) {
                answer.payload[1] = 2;
            }
            return box::EncodeFrame(answer);
        };
        connected(other.path, 1);
        QCOMPARE(other.requests.size(), 1);  // no OpenChannel after the Hello
        ScriptedBox silent;
        silent.spoil = kSilence;
        connected(silent.path, 1);
        QCOMPARE(silent.requests.size(), 3);  // the Hello is asked three times
    }

    // The port vanishes: the next call fails, Disconnect still works, and once a port is back
    // under the same name the program connects again.
    void portVanishesAndComesBack() {
        QTemporaryDir dir;
        const QString link = dir.filePath("box");
        auto first = std::make_unique<ScriptedBox>();
        QVERIFY(QFile::link(first->path, link));
        auto device = connected(link);
        QCOMPARE(kPowerOn(*device), QStringLiteral("status=0"));
        // The device node goes with the device, as an unplugged adapter's does.
        first->pull();
        QVERIFY(QFile::remove(link));
        const QString failure = kPowerOn(*device);
        QVERIFY2(failure.contains(link) && failure.contains("lost"), qPrintable(failure));
        device->CloseChannel(-1);
        QCOMPARE(kPowerOn(*device), QStringLiteral("Programmer is not connected!"));
        ScriptedBox second;
        QVERIFY(QFile::link(second.path, link));
        std::int32_t failed = -1;
        device->OpenChannel(QVariant(std::int16_t{1}), failed);
        QCOMPARE(failed, 0);
        QCOMPARE(kPowerOn(*device), QStringLiteral("status=0"));
    }

    // COM n is the n-th path; the port dialog lists the paths that open and shows where the
    // chosen one leads.
    void portsAndTheirPaths() {
        ScriptedBox a, b;
        serial::SerialPorts ports(settingsFor({a.path, "/nonexistent/tty", b.path}));
        QCOMPARE(RefreshPortList(ports), (QStringList{"COM1", "COM3"}));
        QCOMPARE(ports.portName(3), b.path);
        QCOMPARE(ports.open(2), serial::SerialPorts::kOtherError);
        QCOMPARE(ports.open(4), serial::SerialPorts::kOtherError);
        test::ScriptedPrompts prompts;
        frmComport dialog(ports, prompts);
        auto* path = dialog.findChild<QLabel*>("PortPath");
        QCOMPARE(path->text(), a.path);
        auto* list = dialog.findChild<QComboBox*>("Port");
        list->setCurrentIndex(1);
        QCOMPARE(path->text(), b.path);
        QCOMPARE(list->toolTip(), b.path);
    }
};

QTEST_MAIN(SerialLineTest)
#include "SerialLineTest.moc"
