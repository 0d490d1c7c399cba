// Every device object the program makes goes through the logging wrapper: the device log and the
// driver's own traffic view get the same calls, described once.
#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "device/Application.h"
#include "rk31/DeviceError.h"
#include "sim/SimulatedProgrammer.h"
#include "support/ScriptedPrompts.h"

namespace rk31 {
namespace {

QStringList LogLines(const QString& path) {
    QFile file(path);
    file.open(QIODevice::ReadOnly | QIODevice::Text);
    return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

// The log's lines without their time stamps.
std::string LoggedCalls(const QString& path) {
    static const QRegularExpression stamp(
        QStringLiteral(R"(^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}\S* )"));
    QStringList lines = LogLines(path);
    for (QString& line : lines) {
        line.remove(stamp);
    }
    return lines.join(u'\n').toStdString();
}

// Calls with out-values, without, and one that throws.
void RunShortSession(QZ7734Device& device) {
    std::int32_t out = 0;
    device.OpenChannel(QVariant(std::int32_t{1}), out);
    device.PowerOnChip(0, out);
    std::shared_ptr<MemoryAccess> memory;
    device.GetMemoryAccess(memory);
    memory->ReadMemory(0, 0x48, out);
    memory->SetSolverParameter(0, 1, 10.0f, 1, out);
    float angle = 0;
    EXPECT_THROW(device.ReadAngle(7, angle), DeviceError);
}

constexpr const char* kShortSessionLog =
    "OpenChannel(1) -> failed=0\n"
    "PowerOnChip(0) -> status=0\n"
    "GetMemoryAccess()\n"
    "ReadMemory(0, 48) -> data=1FF\n"
    "SetSolverParameter(0, 1, Single:10, 1) -> failed=0\n"
    "ReadAngle(7) !! Part index 7 is out of range!";

// A driver whose component cannot be created.
class NoObjectDriver : public DeviceDriver {
  public:
    std::shared_ptr<QZ7734Device> create(const QString&) override { return nullptr; }
};

StartSettings logTo(const QString& log) {
    StartSettings settings;
    settings.deviceLog = log;
    return settings;
}

struct Program {
    explicit Program(const QString& log, DeviceDriver* driver)
        : app(logTo(log), prompts, pause, driver) {}
    test::ScriptedPrompts prompts;
    test::RecordingPause pause;
    Application app;
};

TEST(DeviceLog, TheLogAndTheDriversViewGetTheSameCalls) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("device.log"));
    sim::SimulatedProgrammer programmer{sim::SimConfig{}};
    programmer.simulation().traffic->setRecording(true);
    Program run(path, &programmer);
    RunShortSession(*run.app.createDevice());
    EXPECT_EQ(LoggedCalls(path), kShortSessionLog);
    QStringList viewed;
    for (const DeviceCall& call : programmer.simulation().traffic->take()) {
        viewed << DeviceLogLine(call);
    }
    EXPECT_EQ(viewed, LogLines(path)) << "one time stamp per call, in both";

    // The log is opened afresh for every object: one deleted in between is created again.
    ASSERT_TRUE(QFile::remove(path));
    RunShortSession(*run.app.createDevice());
    EXPECT_EQ(LoggedCalls(path), kShortSessionLog);
}

TEST(DeviceLog, NoObjectNoLogAndNoLogStillAWorkingObject) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("none.log"));
    NoObjectDriver broken;
    EXPECT_FALSE(Program(path, &broken).app.createDevice());
    try {
        Program(path, nullptr).app.createDevice();
        ADD_FAILURE() << "no driver, no object";
    } catch (const DeviceError& e) {
        EXPECT_EQ(e.description(),
                  "No device driver provides QZ7734Module.QZ7734Device! Searched: no folder");
    }
    EXPECT_FALSE(QFile::exists(path));

    sim::SimulatedProgrammer programmer{sim::SimConfig{}};
    Program unwritable(dir.filePath(QStringLiteral("missing/folder/device.log")), &programmer);
    RunShortSession(*unwritable.app.createDevice());
    EXPECT_EQ(programmer.box().trace().size(), 6);
}

}  // namespace
}  // namespace rk31
