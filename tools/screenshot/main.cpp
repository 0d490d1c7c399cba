#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QPixmap>
#include <QTextStream>
#include <cstdio>

#include "Scenes.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "shell/DeviceSession.h"
#include "sim/bench/SimulationBench.h"

namespace {

// Nobody answers in a batch run: messages go to standard error, questions answer No, file
// dialogs are cancelled and modal dialogs are closed at once.
class PrintingPrompts : public rk31::Prompts {
  public:
    explicit PrintingPrompts(rk31::screenshot::SceneContext& context) : m_context(context) {}
    void message(const QString& text) override { print(QStringLiteral("message: ") + text); }
    bool question(const QString& text) override {
        print(QStringLiteral("question (answered No): ") + text);
        return false;
    }
    QString openFileName(const QString&, const QString&) override { return {}; }
    QString saveFileName(const QString&, const QString&) override { return {}; }
    void runModal(QDialog& dialog) override {
        if (m_context.dialogScripts.empty()) {
            dialog.close();
            return;
        }
        const auto script = std::move(m_context.dialogScripts.front());
        m_context.dialogScripts.pop_front();
        dialog.show();
        script(dialog);
        dialog.close();
    }

  private:
    rk31::screenshot::SceneContext& m_context;
    static void print(const QString& text) { std::fprintf(stderr, "%s\n", qPrintable(text)); }
};

class NoPause : public rk31::Pause {
  public:
    void sleep(int) override {}
};

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    // --screen=WxH: the screen the windows must fit (logical pixels, as a window manager offers
    // them); a window that needs more is drawn at the screen's size, scrolling, and named.
    QSize screen;
    for (auto it = args.begin(); it != args.end();) {
        if (it->startsWith(QStringLiteral("--screen="))) {
            const QStringList wh = it->mid(9).split(u'x');
            screen = QSize(wh.value(0).toInt(), wh.value(1).toInt());
            it = args.erase(it);
        } else {
            ++it;
        }
    }
    if (args.isEmpty()) {
        std::fprintf(stderr,
                     "usage: rk31_screenshot [--screen=WxH] <outdir> [scene...]\nscenes:");
        for (const auto& scene : rk31::screenshot::AllScenes()) {
            std::fprintf(stderr, " %s", qPrintable(scene.name));
        }
        std::fprintf(stderr, "\n");
        return 2;
    }
    const QDir outdir(args.first());
    if (!QDir().mkpath(outdir.path())) {
        std::fprintf(stderr, "cannot create %s\n", qPrintable(outdir.path()));
        return 1;
    }
    const QStringList wanted = args.mid(1);

    rk31::screenshot::SceneContext context{rk31::sim::InstallSimulation({}), {}};
    PrintingPrompts prompts(context);
    NoPause pause;
    rk31::InstallServices({&prompts, &pause, context.simulation.ports.get()});

    int failures = 0;
    for (const auto& scene : rk31::screenshot::AllScenes()) {
        if (!wanted.isEmpty() && !wanted.contains(scene.name)) {
            continue;
        }
        rk31::DeviceSession::instance().resetToFreshProcess();
        context.simulation = rk31::sim::InstallSimulation({});
        context.dialogScripts.clear();
        rk31::InstallServices({&prompts, &pause, context.simulation.ports.get()});
        // As in the program: the main windows carry the simulated programmer's badge.
        const rk31::sim::SimulationBench bench(context.simulation);
        const auto widget = scene.build(context);
        widget->show();
        // Windows open at their natural size, as they do on a desktop.
        QSize size = widget->sizeHint().expandedTo(widget->minimumSizeHint());
        if (screen.isValid() &&
            (size.width() > screen.width() || size.height() > screen.height())) {
            std::fprintf(stderr, "%s: %dx%d does not fit %dx%d\n", qPrintable(scene.name),
                         size.width(), size.height(), screen.width(), screen.height());
            size = size.boundedTo(screen);
        }
        widget->resize(size);
        QApplication::processEvents();
        const QString file = outdir.filePath(scene.name + QStringLiteral(".png"));
        if (widget->grab().save(file)) {
            std::printf("%s\n", qPrintable(file));
        } else {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
            ++failures;
        }
    }
    return failures == 0 ? 0 : 1;
}
