#pragma once

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include "device/Application.h"
#include "serial/SerialProgrammer.h"
#include "support/LoggedCalls.h"
#include "support/ScriptedPrompts.h"
#include "support/WindowHarness.h"
#include "ui/windows/Startup.h"

namespace rk31::test {

// rk31-boxsim as a child process over RK31_SIM text and line-fault options, with its trace in a
// file and a symbolic link that always leads to its current terminal.
class Boxsim {
  public:
    explicit Boxsim(const QString& sim, const QStringList& options = {}) {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("RK31_SIM"), sim);
        env.remove(QStringLiteral("RK31_BOXSIM"));
        m_process.setProcessEnvironment(env);
        m_process.start(QStringLiteral(BOXSIM),
                        options + QStringList{QStringLiteral("--trace=") + tracePath(),
                                              QStringLiteral("--link=") + link()});
        m_path = nextPath();
    }
    ~Boxsim() {
        m_process.kill();
        m_process.waitForFinished(10000);
    }
    Boxsim(const Boxsim&) = delete;
    Boxsim& operator=(const Boxsim&) = delete;

    // The terminal the box serves now.
    const QString& path() const { return m_path; }
    // Where the link to it is.
    QString link() const { return m_dir.filePath(QStringLiteral("box")); }
    // The next terminal the box announces (after a pulled cable is plugged back).
    QString nextPath() {
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(30000)) {
                qFatal("rk31-boxsim announced no terminal: %s",
                       m_process.readAllStandardError().constData());
            }
        }
        m_path = QString::fromLocal8Bit(m_process.readLine()).trimmed();
        return m_path;
    }
    // The box's calls so far, each as the simulated programmer traces it.
    QStringList trace() const {
        QFile file(tracePath());
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
        return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    }
    QProcess& process() { return m_process; }

  private:
    QString tracePath() const { return m_dir.filePath(QStringLiteral("trace")); }

    QTemporaryDir m_dir;
    QProcess m_process;
    QString m_path;
};

// The serial driver's settings for a test: only the box's link as COM1, a timeout for a loaded
// machine.
inline serial::SerialSettings LineSettings(const QString& path, int timeoutMs = 3000) {
    serial::SerialSettings settings;
    settings.ports = {path};
    settings.scanDevices = false;
    settings.timeoutMs = timeoutMs;
    return settings;
}

// The "/1" window with `settings` loaded, connected on COM1, Part#1 enabled and powered, on
// whichever programmer `app` has.
inline std::unique_ptr<QWidget> PoweredTwoPartWindow(Application& app, ScriptedPrompts& prompts,
                                                     const QString& settings) {
    auto window = CreateMainWindow(1, app);
    prompts.fileNames.push_back(settings);
    click(window.get(), "mOpen");
    scriptPortChoice(prompts, "COM1");
    click(window.get(), "connect");
    check(window.get(), "PartEnable", 0, true);
    click(window.get(), "PowerOn", 0);
    return window;
}

// What Bench is for the simulated programmer, over the serial driver and a box behind a
// pseudo-terminal.
struct LineBench {
    explicit LineBench(const QString& sim, const QStringList& options = {},
                       const StartSettings& settings = {}, int timeoutMs = 3000)
        : box(sim, options),
          programmer(LineSettings(box.link(), timeoutMs)),
          app(settings, prompts, pause, &programmer) {}

    DeviceSession& session() { return app.session(); }
    std::unique_ptr<QWidget> window(int variant) { return CreateMainWindow(variant, app); }

    Boxsim box;
    ScriptedPrompts prompts;
    RecordingPause pause;
    serial::SerialProgrammer programmer;
    Application app;
};

inline StartSettings LogTo(const QString& path) {
    StartSettings settings;
    settings.deviceLog = path;
    return settings;
}

}  // namespace rk31::test
