// rk31prog: the batch programmer. Programs, verifies, checks or plots one settings file from the
// command line through the main windows' own procedures, chip after chip, for production lines.
#include <unistd.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QThread>
#include <csignal>
#include <cstdio>

#include "device/Application.h"
#include "domain/Prompts.h"
#include "procedures/batch/BatchRun.h"
#include "procedures/batch/Report.h"

namespace {

volatile std::sig_atomic_t g_interrupted = 0;
// Set once a line could not be written to standard output: whoever read it is gone.
bool g_outClosed = false;

extern "C" void onInterrupt(int /*signal*/) {
    g_interrupted = 1;
}

class SleepingPause : public rk31::Pause {
  public:
    void sleep(int milliseconds) override {
        QThread::msleep(static_cast<unsigned long>(milliseconds));
    }
};

bool writeLine(std::FILE* stream, const QString& text) {
    const QByteArray bytes = text.toLocal8Bit() + '\n';
    return std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream) ==
               static_cast<std::size_t>(bytes.size()) &&
           std::fflush(stream) == 0;
}

void out(const QString& text) {
    if (!g_outClosed && !writeLine(stdout, text)) {
        g_outClosed = true;
    }
}

void err(const QString& text) {
    writeLine(stderr, text);
}

// Without a feeder the operator changes the chip and presses Enter; the end of input or Ctrl-C
// ends the run.
bool askForNextChip() {
    err(QStringLiteral("Put the next chip in the socket and press Enter (Ctrl-D ends the run)"));
    char line[256];
    return std::fgets(line, sizeof line, stdin) != nullptr && g_interrupted == 0;
}

void catchInterrupt() {
    struct sigaction action {};
    action.sa_handler = onInterrupt;
    sigemptyset(&action.sa_mask);
    // No SA_RESTART: a wait for Enter ends at Ctrl-C.
    action.sa_flags = 0;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    // A closed standard output is noticed at the next line and never kills a chip in the middle.
    std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral(RK31_VERSION));
    catchInterrupt();
    const rk31::ParsedArguments parsed = rk31::ParseBatchArguments(app.arguments().mid(1));
    if (!parsed.options) {
        err(QStringLiteral("rk31prog: ") + parsed.error);
        if (parsed.json) {
            out(QString::fromUtf8(QJsonDocument(QJsonObject{{"exit", rk31::kExitBadInput},
                                                            {"stage", "arguments"},
                                                            {"cause", parsed.error}})
                                      .toJson(QJsonDocument::Compact)));
        } else {
            err(rk31::BatchUsage());
        }
        return rk31::kExitBadInput;
    }
    const rk31::BatchOptions& options = *parsed.options;
    switch (options.command) {
        case rk31::BatchCommand::Help:
            out(rk31::BatchUsage());
            return rk31::kExitOk;
        case rk31::BatchCommand::Version:
            out(QStringLiteral("rk31prog ") + QCoreApplication::applicationVersion());
            return rk31::kExitOk;
        case rk31::BatchCommand::Report: {
            const rk31::RecordReport report = rk31::ReportOnRecords(options.settings, options.json);
            for (const QString& line : report.lines) {
                report.read ? out(line) : err(QStringLiteral("rk31prog: ") + line);
            }
            return report.read ? rk31::kExitOk : rk31::kExitBadInput;
        }
        default:
            break;
    }
    rk31::StartSettings settings = rk31::StartSettings::FromEnvironment();
    if (!options.log.isEmpty()) {
        settings.deviceLog = options.log;
    }
    rk31::BatchOutput output{err, out, isatty(fileno(stdout)) != 0};
    output.interrupted = [] { return g_interrupted != 0; };
    output.closed = [] { return g_outClosed; };
    output.nextChip = askForNextChip;
    rk31::BatchPrompts prompts(output);
    SleepingPause pause;
    rk31::Application application(settings, prompts, pause);
    rk31::BatchRunner runner(options, output, application, prompts);
    return runner.run();
}
