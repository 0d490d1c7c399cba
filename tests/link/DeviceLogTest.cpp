#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtGlobal>

#include "core/DeviceError.h"
#include "link/DeviceFactory.h"
#include "sim/SimulatedProgrammer.h"

namespace rk31 {
namespace {

// Sets RK31_DEVICE_LOG for one test and removes it afterwards.
class LogVariable {
  public:
    explicit LogVariable(const QString& path) { qputenv("RK31_DEVICE_LOG", path.toUtf8()); }
    ~LogVariable() { qunsetenv("RK31_DEVICE_LOG"); }
};

// The log's lines without their time stamps; a line without a stamp is kept whole so that the
// comparison shows it.
std::string LoggedCalls(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return "<no log>";
    }
    static const QRegularExpression stamp(
        QStringLiteral(R"(^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}\S* )"));
    QStringList lines;
    for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
        const auto match = stamp.match(line);
        lines << (match.hasMatch() ? line.mid(match.capturedLength()) : line);
    }
    return lines.join(u'\n').toStdString();
}

void RunShortSession(QZ7734Device& device) {
    std::int32_t out = 0;
    device.OpenChannel(QVariant(std::int32_t{3}), out);
    device.PowerOnChip(0, out);
    device.EnterOWIMode(0, out);
    std::shared_ptr<MemoryAccess> memory;
    device.GetMemoryAccess(memory);
    memory->ReadMemory(0, 0x48, out);
    memory->SetSolverParameter(0, 1, 10.0f, 1, out);
    std::shared_ptr<SolverAccess> solver;
    device.GetSolverAccess(solver);
    solver->WriteBufferToDevice(0, out);
    float angle = 0;
    EXPECT_THROW(device.ReadAngle(1, angle), DeviceError);
    device.CloseChannel(-1);
}

constexpr const char* kShortSessionLog =
    "OpenChannel(3) -> failed=0\n"
    "PowerOnChip(0) -> status=0\n"
    "EnterOWIMode(0) -> result=0\n"
    "GetMemoryAccess()\n"
    "ReadMemory(0, 48) -> data=35\n"
    "SetSolverParameter(0, 1, Single:10, 1) -> failed=0\n"
    "GetSolverAccess()\n"
    "WriteBufferToDevice(0) -> code=0\n"
    "ReadAngle(1) !! Part#2 cannot report its angle: it is not in OWI mode!\n"
    "CloseChannel(-1)";

TEST(DeviceLog, RecordsASessionsCallsInOrder) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("device.log"));
    LogVariable variable(path);
    const auto sim = sim::InstallSimulation({});

    const auto device = DeviceFactory::Create(QString::fromLatin1(kDeviceProgId));
    ASSERT_TRUE(device);
    RunShortSession(*device);

    EXPECT_EQ(LoggedCalls(path), kShortSessionLog);
    // The wrapped object saw the same calls.
    EXPECT_EQ(sim.box->trace.size(), 10);
}

TEST(DeviceLog, WrapsWhateverTheFactoryCreates) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("other.log"));
    LogVariable variable(path);
    auto box = std::make_shared<sim::SimulatedBox>();
    const QString progId = QStringLiteral("Bench.OtherDevice");
    DeviceFactory::Register(progId, [box] { return sim::CreateSimulatedDevice(box); });
    const auto device = DeviceFactory::Create(progId);
    DeviceFactory::Unregister(progId);
    ASSERT_TRUE(device);

    RunShortSession(*device);
    EXPECT_EQ(LoggedCalls(path), kShortSessionLog);
}

TEST(DeviceLog, NoObjectNoLog) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("none.log"));
    LogVariable variable(path);
    const QString progId = QStringLiteral("Bench.Broken");
    DeviceFactory::Register(progId, [] { return std::shared_ptr<QZ7734Device>(); });
    EXPECT_FALSE(DeviceFactory::Create(progId));
    DeviceFactory::Unregister(progId);
    EXPECT_FALSE(DeviceFactory::Create(progId));
    EXPECT_FALSE(QFile::exists(path));
}

TEST(DeviceLog, LogDeletedBetweenConnectsIsCreatedAgain) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("device.log"));
    LogVariable variable(path);
    sim::InstallSimulation({});

    auto first = DeviceFactory::Create(QString::fromLatin1(kDeviceProgId));
    RunShortSession(*first);
    first.reset();
    ASSERT_TRUE(QFile::remove(path));

    auto second = DeviceFactory::Create(QString::fromLatin1(kDeviceProgId));
    RunShortSession(*second);
    EXPECT_EQ(LoggedCalls(path), kShortSessionLog);
}

TEST(DeviceLog, UnwritableLogLeavesTheDeviceWorking) {
    QTemporaryDir dir;
    LogVariable variable(dir.filePath(QStringLiteral("missing/folder/device.log")));
    const auto sim = sim::InstallSimulation({});
    const auto device = DeviceFactory::Create(QString::fromLatin1(kDeviceProgId));
    ASSERT_TRUE(device);
    RunShortSession(*device);
    EXPECT_EQ(sim.box->trace.size(), 10);
}

TEST(DeviceLog, OnlyObjectsCreatedWhileTheVariableIsSetAreLogged) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("device.log"));
    sim::InstallSimulation({});
    std::shared_ptr<QZ7734Device> logged;
    {
        LogVariable variable(path);
        logged = DeviceFactory::Create(QString::fromLatin1(kDeviceProgId));
    }
    const auto unlogged = DeviceFactory::Create(QString::fromLatin1(kDeviceProgId));
    RunShortSession(*unlogged);
    EXPECT_EQ(LoggedCalls(path), "");
    RunShortSession(*logged);
    EXPECT_EQ(LoggedCalls(path), kShortSessionLog);
}

}  // namespace
}  // namespace rk31
