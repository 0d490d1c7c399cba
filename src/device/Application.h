#pragma once

#include <QString>
#include <QStringList>

class QSettings;
#include <memory>
#include <vector>

#include "device/DeviceSession.h"
#include "device/NoPorts.h"

namespace rk31 {

class ChipFeeder;
class DeviceBench;
class DeviceDriver;
class DeviceTrafficSink;
class DriverCatalog;
class MagnetFixture;
class Pause;
class PortProber;
class Prompts;

inline constexpr const char* kDeviceProgId = "QZ7734Module.QZ7734Device";

// What the program takes from its environment, read once at start and never written.
struct StartSettings {
    QString driver;          // RK31_DRIVER: the driver to prefer
    QStringList driverPath;  // RK31_DRIVER_PATH: further driver folders
    QString deviceLog;       // RK31_DEVICE_LOG: the file the device calls go to
    bool openBench = false;  // RK31_BENCH=1: the driver's bench opens with the main window
    // RK31_PREFERENCES: where the windows remember the settings folder, the last port and their
    // places between starts (by default in the user's configuration folder); empty: nowhere.
    QString preferencesFile;

    static StartSettings FromEnvironment();
};

// The one application object, made in main and handed down to every window and dialog: the
// session record, the programmer driver and what it offers (ports, bench), the device log, and
// the seams through which the program asks the user and pauses.
class Application {
  public:
    // The driver for the device ProgID from the catalog over the settings' folders. Without one
    // the program still runs, and Connect says what is missing.
    Application(StartSettings settings, Prompts& prompts, Pause& pause);
    // On `driver` (not owned, may be nullptr), without looking for others.
    Application(StartSettings settings, Prompts& prompts, Pause& pause, DeviceDriver* driver);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    DeviceSession& session() { return m_session; }
    Prompts& prompts() { return m_prompts; }
    Pause& pause() { return m_pause; }
    const StartSettings& settings() const { return m_settings; }
    // Whether a driver serves the device at all.
    bool hasDriver() const { return m_driver != nullptr; }
    // The ports the port dialog probes: the driver's, or none.
    PortProber& ports();
    // The driver's window of its own, or nullptr. Only programs with windows ask for it.
    DeviceBench* bench();
    // The station's magnet fixture and chip feeder, where the driver offers them, or nullptr.
    MagnetFixture* fixture();
    ChipFeeder* feeder();

    // A further listener to every call of the device objects created from now on.
    void watchTraffic(std::shared_ptr<DeviceTrafficSink> sink);
    // What the windows remember between starts, or nullptr when nothing is to be remembered.
    QSettings* preferences();

    // Why the device log could not be opened or written (the first failure), or empty.
    const QString& deviceLogFailure() const { return m_logFailure; }

    // A new device-access object from the driver whose every call goes to the device log and to
    // the driver's own traffic view; nullptr when the driver yields none; a DeviceError naming the
    // searched folders when there is no driver.
    std::shared_ptr<QZ7734Device> createDevice();

  private:
    StartSettings m_settings;
    Prompts& m_prompts;
    Pause& m_pause;
    std::unique_ptr<DriverCatalog> m_catalog;
    DeviceDriver* m_driver = nullptr;
    NoPorts m_noPorts;
    std::vector<std::shared_ptr<DeviceTrafficSink>> m_watchers;
    QString m_logFailure;
    std::unique_ptr<QSettings> m_preferences;
    DeviceSession m_session;
};

}  // namespace rk31
