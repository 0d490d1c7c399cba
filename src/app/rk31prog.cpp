// rk31prog: the batch programmer. Programs, checks or plots one settings file from the command
// line through the main windows' own procedures, for production lines.
#include <unistd.h>

#include <QCoreApplication>
#include <QStringList>
#include <QThread>
#include <cstdio>

#include "device/Application.h"
#include "domain/Prompts.h"
#include "procedures/batch/BatchRun.h"

namespace {

class SleepingPause : public rk31::Pause {
  public:
    void sleep(int milliseconds) override {
        QThread::msleep(static_cast<unsigned long>(milliseconds));
    }
};

void writeLine(std::FILE* stream, const QString& text) {
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fputc('\n', stream);
    std::fflush(stream);
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral(RK31_VERSION));
    const rk31::ParsedArguments parsed = rk31::ParseBatchArguments(app.arguments().mid(1));
    if (!parsed.options) {
        writeLine(stderr, QStringLiteral("rk31prog: ") + parsed.error);
        writeLine(stderr, rk31::BatchUsage());
        return rk31::kExitBadInput;
    }
    const rk31::BatchOptions& options = *parsed.options;
    if (options.command == rk31::BatchCommand::Help) {
        writeLine(stdout, rk31::BatchUsage());
        return rk31::kExitOk;
    }
    if (options.command == rk31::BatchCommand::Version) {
        writeLine(stdout, QStringLiteral("rk31prog ") + QCoreApplication::applicationVersion());
        return rk31::kExitOk;
    }
    rk31::StartSettings settings = rk31::StartSettings::FromEnvironment();
    if (!options.log.isEmpty()) {
        settings.deviceLog = options.log;
    }
    rk31::BatchOutput output{[](const QString& line) { writeLine(stderr, line); },
                             [](const QString& line) { writeLine(stdout, line); },
                             isatty(fileno(stdout)) != 0};
    rk31::BatchPrompts prompts(output);
    SleepingPause pause;
    rk31::Application application(settings, prompts, pause);
    rk31::BatchRunner runner(options, output, application, prompts);
    return runner.run();
}
