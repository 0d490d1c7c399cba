// Choosing and loading programmer drivers: the simulated programmer as the fallback, RK31_DRIVER,
// and one line on standard error for every driver that cannot serve.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "device/Application.h"
#include "device/DriverCatalog.h"
#include "rk31/DeviceDriver.h"
#include "rk31/DeviceError.h"
#include "support/ScriptedPrompts.h"

namespace rk31 {
namespace {

const QString kProgId = QString::fromLatin1(kDeviceProgId);
const QString kSimFolder = QStringLiteral(RK31_SIM_DRIVER_DIR);
const QString kTestFolder = QStringLiteral(RK31_TEST_DRIVER_DIR);

TEST(DriverCatalog, ChoosesByNameThenAnyButTheSimulatorThenTheSimulator) {
    const struct {
        const char* name;
        QStringList folders;
        const char* wanted;
        QString chosen;
        QStringList reported;  // parts of the standard error lines, in order
    } cases[] = {
        // clang-format off
        {"simulator alone", {kSimFolder}, nullptr, "sim", {}},
        {"another driver wins over the simulator", {kSimFolder, kTestFolder}, nullptr, "example",
         {"emptydriver", "provides nothing (its metadata names no ProgID)", "olddriver",
          "has the wrong interface version (\"org.rk31gui.DeviceDriver/0\", this program needs \"org.rk31gui.DeviceDriver/4\")"}},
        {"RK31_DRIVER picks the serial driver", {kSimFolder}, "serial", "serial", {}},
        {"RK31_DRIVER picks the simulator", {kTestFolder, kSimFolder}, "sim", "sim", {"emptydriver", "olddriver"}},
        {"RK31_DRIVER names none", {kSimFolder}, "nonesuch", "sim",
         {"RK31_DRIVER: no driver named nonesuch provides QZ7734Module.QZ7734Device"}},
        {"no folder", {}, nullptr, "", {}},
        // clang-format on
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        DriverCatalog catalog(c.folders, QString::fromLatin1(c.wanted));
        testing::internal::CaptureStderr();
        DeviceDriver* driver = catalog.driverFor(kProgId);
        const QString err = QString::fromStdString(testing::internal::GetCapturedStderr());
        EXPECT_EQ(catalog.chosenName(), c.chosen);
        EXPECT_EQ(driver != nullptr, !c.chosen.isEmpty());
        qsizetype from = 0;
        for (const QString& part : c.reported) {
            const qsizetype at = err.indexOf(part, from);
            EXPECT_GE(at, 0) << qPrintable(part) << " not in order in:\n" << qPrintable(err);
            from = at < 0 ? from : at;
        }
        if (c.reported.isEmpty()) {
            EXPECT_TRUE(err.isEmpty()) << qPrintable(err);
        }
        EXPECT_EQ(catalog.driverFor(kProgId), driver) << "chosen once";
    }
}

TEST(DriverCatalog, ALibraryThatCannotLoadIsReportedAndSkipped) {
    QTemporaryDir dir;
    QFile junk(dir.filePath(QStringLiteral("libjunk.so")));
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write("not a library");
    junk.close();
    DriverCatalog catalog({dir.path(), kSimFolder}, {});
    testing::internal::CaptureStderr();
    EXPECT_NE(catalog.driverFor(kProgId), nullptr);
    const QString err = QString::fromStdString(testing::internal::GetCapturedStderr());
    EXPECT_TRUE(err.startsWith(QStringLiteral("rk31: driver ") + junk.fileName() +
                               QStringLiteral(": cannot be loaded (")))
        << qPrintable(err);
    EXPECT_TRUE(err.endsWith(QStringLiteral("; trying the next driver\n"))) << qPrintable(err);
    EXPECT_EQ(err.count(u'\n'), 1);
    EXPECT_EQ(catalog.chosenName(), QStringLiteral("sim"));
}

TEST(DriverCatalog, DevicesOfALoadedDriverWorkAndTheirErrorsAreTheProgramsErrors) {
    DriverCatalog sim({kSimFolder}, {});
    auto device = sim.driverFor(kProgId)->create(kProgId);
    ASSERT_TRUE(device);
    std::int32_t failed = 0;
    device->OpenChannel(QVariant(1), failed);
    EXPECT_EQ(failed, 0);
    EXPECT_NE(sim.driverFor(kProgId)->ports(), nullptr);
    EXPECT_EQ(sim.driverFor(kProgId)->bench(), nullptr) << "no windows in this program";

    DriverCatalog example({kTestFolder}, {});
    testing::internal::CaptureStderr();
    auto noBox = example.driverFor(kProgId)->create(kProgId);
    testing::internal::GetCapturedStderr();
    try {
        noBox->OpenChannel(QVariant(4), failed);
        ADD_FAILURE() << "no error";
    } catch (const DeviceError& e) {
        EXPECT_EQ(e.description(), QStringLiteral("example driver: no box on COM4"));
    }
}

TEST(DriverCatalog, WithoutAnyDriverTheProgramRunsAndConnectSaysWhatIsMissing) {
    test::ScriptedPrompts prompts;
    test::RecordingPause pause;
    Application app(StartSettings{}, prompts, pause);
    EXPECT_EQ(app.bench(), nullptr);
    EXPECT_NE(app.ports().open(1), 0) << "no driver, no port";
    try {
        app.session().ConnectProgrammer(1, prompts);
        ADD_FAILURE() << "no error";
    } catch (const DeviceError& e) {
        EXPECT_EQ(e.description(),
                  QStringLiteral("No device driver provides QZ7734Module.QZ7734Device! Searched: "
                                 "no folder"));
    }
    EXPECT_FALSE(app.session().hasDevice());
}

}  // namespace
}  // namespace rk31
