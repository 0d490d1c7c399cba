#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "device/DeviceFactory.h"
#include "rk31/DeviceError.h"
#include "sim/SimulatedProgrammer.h"

namespace rk31 {
namespace {

// Sets RK31_DEVICE_LOG for one scope.
struct LogVariable {
    explicit LogVariable(const QString& path) { qputenv("RK31_DEVICE_LOG", path.toUtf8()); }
    ~LogVariable() { qunsetenv("RK31_DEVICE_LOG"); }
};

// The log's lines without their time stamps.
std::string LoggedCalls(const QString& path) {
    QFile file(path);
    file.open(QIODevice::ReadOnly | QIODevice::Text);
    static const QRegularExpression stamp(
        QStringLiteral(R"(^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}\S* )"),
        QRegularExpression::MultilineOption);
    return QString::fromUtf8(file.readAll()).remove(stamp).trimmed().toStdString();
}

std::shared_ptr<QZ7734Device> Create(const char* progId = kDeviceProgId) {
    return DeviceFactory::Create(QString::fromLatin1(progId));
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

TEST(DeviceLog, LogsTheObjectsCreatedWhileTheVariableIsSet) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("device.log"));
    const auto sim = sim::InstallSimulation({});
    const auto logged = [&] {
        LogVariable variable(path);
        return Create();
    }();
    RunShortSession(*Create());
    EXPECT_EQ(LoggedCalls(path), "");
    RunShortSession(*logged);
    EXPECT_EQ(LoggedCalls(path), kShortSessionLog);

    // The log is opened afresh for every object: one deleted in between is created again, and
    // an object of any ProgID is logged.
    ASSERT_TRUE(QFile::remove(path));
    LogVariable variable(path);
    DeviceFactory::Register(QStringLiteral("Bench.OtherDevice"),
                            [box = sim.box] { return sim::CreateSimulatedDevice(box); });
    RunShortSession(*Create("Bench.OtherDevice"));
    EXPECT_EQ(LoggedCalls(path), kShortSessionLog);
}

TEST(DeviceLog, NoObjectNoLogAndNoLogStillAWorkingObject) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("none.log"));
    LogVariable variable(path);
    DeviceFactory::Register(QStringLiteral("Bench.Broken"), [] { return nullptr; });
    EXPECT_FALSE(Create("Bench.Broken"));
    DeviceFactory::Unregister(QStringLiteral("Bench.Broken"));
    EXPECT_THROW(Create("Bench.Broken"), DeviceError) << "nothing registered, no driver";
    EXPECT_FALSE(QFile::exists(path));

    LogVariable unwritable(dir.filePath(QStringLiteral("missing/folder/device.log")));
    const auto sim = sim::InstallSimulation({});
    RunShortSession(*Create());
    EXPECT_EQ(sim.box->trace.size(), 6);
}

}  // namespace
}  // namespace rk31
