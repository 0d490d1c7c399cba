// rk31prog: the batch programmer. Programs, checks or plots one settings file from the command
// line through the main windows' own procedures, for production lines.
#include <unistd.h>
#include <QCoreApplication>
#include <QStringList>
#include <QThread>
#include <cstdio>

#include "batch/BatchRun.h"
#include "core/Prompts.h"
#include "display/CurveExport.h"

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
    const rk31::ParsedArguments parsed = rk31::ParseBatchArguments(app.arguments().mid(1));
    if (!parsed.options) {
        writeLine(stderr, QStringLiteral("rk31prog: ") + parsed.error);
        writeLine(stderr, rk31::BatchUsage());
        return rk31::kExitBadInput;
    }
    const rk31::BatchOptions& options = *parsed.options;
    if (!options.log.isEmpty()) {
        qputenv("RK31_DEVICE_LOG", options.log.toLocal8Bit());
    }
    rk31::BatchOutput output{[](const QString& line) { writeLine(stderr, line); },
                             [](const QString& line) { writeLine(stdout, line); },
                             isatty(fileno(stdout)) != 0};
    SleepingPause pause;
    rk31::BatchRunner runner(options, output, pause);
    runner.curveCsv = [](const rk31::CurveTables& curves, const std::vector<int>& parts) {
        rk31::ShownParts shown;
        for (const int part : parts) {
            shown.push_back(rk31::SinglePart(static_cast<std::int16_t>(part)).front());
        }
        return rk31::CurveCsvLines(curves, shown);
    };
    return runner.run();
}
