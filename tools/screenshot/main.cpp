#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QPixmap>
#include <QTextStream>
#include <cstdio>

#include "Scenes.h"

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
        std::fprintf(stderr, "usage: rk31_screenshot [--screen=WxH] <outdir> [scene...]\nscenes:");
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

    int failures = 0;
    for (const auto& scene : rk31::screenshot::AllScenes()) {
        if (!wanted.isEmpty() && !wanted.contains(scene.name)) {
            continue;
        }
        rk31::screenshot::SceneContext context;
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
