#include "device/Application.h"

#include <QSettings>
#include <QStandardPaths>
#include <QtGlobal>
#include <cstdio>

#include "device/DriverCatalog.h"
#include "device/LoggingDevice.h"
#include "rk31/DeviceDriver.h"
#include "rk31/DeviceError.h"

namespace rk31 {

namespace {

// The driver's sink as a shared one; the driver owns it and outlives every device object.
std::shared_ptr<DeviceTrafficSink> borrowed(DeviceTrafficSink* sink) {
    return std::shared_ptr<DeviceTrafficSink>(sink, [](DeviceTrafficSink*) {});
}

}  // namespace

StartSettings StartSettings::FromEnvironment() {
    StartSettings settings;
    settings.driver = qEnvironmentVariable("RK31_DRIVER");
    settings.driverPath = qEnvironmentVariable("RK31_DRIVER_PATH").split(u':', Qt::SkipEmptyParts);
    settings.deviceLog = qEnvironmentVariable("RK31_DEVICE_LOG");
    settings.openBench = qEnvironmentVariable("RK31_BENCH") == u"1";
    settings.preferencesFile =
        qEnvironmentVariableIsSet("RK31_PREFERENCES")
            ? qEnvironmentVariable("RK31_PREFERENCES")
            : QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                  QStringLiteral("/rk31gui/preferences.ini");
    return settings;
}

Application::Application(StartSettings settings, Prompts& prompts, Pause& pause)
    : Application(std::move(settings), prompts, pause, nullptr) {
    m_catalog = std::make_unique<DriverCatalog>(
        DriverCatalog::DefaultFolders(m_settings.driverPath), m_settings.driver);
    m_driver = m_catalog->driverFor(QString::fromLatin1(kDeviceProgId));
}

Application::Application(StartSettings settings, Prompts& prompts, Pause& pause,
                         DeviceDriver* driver)
    : m_settings(std::move(settings)),
      m_prompts(prompts),
      m_pause(pause),
      m_driver(driver),
      m_session([this] { return createDevice(); }) {}

Application::~Application() = default;

PortProber& Application::ports() {
    PortProber* ports = m_driver ? m_driver->ports() : nullptr;
    return ports ? *ports : m_noPorts;
}

DeviceBench* Application::bench() {
    return m_driver ? m_driver->bench() : nullptr;
}

MagnetFixture* Application::fixture() {
    return m_driver ? m_driver->fixture() : nullptr;
}

ChipFeeder* Application::feeder() {
    return m_driver ? m_driver->feeder() : nullptr;
}

void Application::watchTraffic(std::shared_ptr<DeviceTrafficSink> sink) {
    m_watchers.push_back(std::move(sink));
}

std::shared_ptr<QZ7734Device> Application::createDevice() {
    const QString progId = QString::fromLatin1(kDeviceProgId);
    if (m_driver == nullptr) {
        throw DeviceError(
            NoDriverMessage(progId, m_catalog ? m_catalog->folders() : QStringList()));
    }
    std::shared_ptr<QZ7734Device> device = m_driver->create(progId);
    // No object, no log file: a component that cannot be created leaves nothing behind.
    if (!device) {
        return nullptr;
    }
    std::vector<std::shared_ptr<DeviceTrafficSink>> sinks = m_watchers;
    // Opened afresh for every created object: a log that was deleted or moved while the program
    // runs is then created again at the next connect.
    if (!m_settings.deviceLog.isEmpty()) {
        auto log = std::make_shared<DeviceLog>(m_settings.deviceLog, [this](const QString& why) {
            if (m_logFailure.isEmpty()) {
                m_logFailure = why;
                std::fprintf(stderr, "device log %s\n", qPrintable(why));
            }
        });
        if (log->isOpen()) {
            sinks.push_back(std::move(log));
        }
    }
    if (DeviceTrafficSink* traffic = m_driver->traffic()) {
        sinks.push_back(borrowed(traffic));
    }
    std::shared_ptr<DeviceTrafficSink> sink;
    if (!sinks.empty()) {
        sink = sinks.size() == 1 ? sinks.front() : std::make_shared<TrafficTee>(std::move(sinks));
    }
    return WrapWithLog(std::move(device), std::move(sink), m_session.calls());
}

QSettings* Application::preferences() {
    if (!m_preferences && !m_settings.preferencesFile.isEmpty()) {
        m_preferences =
            std::make_unique<QSettings>(m_settings.preferencesFile, QSettings::IniFormat);
    }
    return m_preferences.get();
}

}  // namespace rk31
