// Writes the controls of a main window as a plain list, for same_controls to rebuild without a
// line of the program's logic: one line per widget below the window's content, in creation
// order, "<depth>\t<kind>\t<row>\t<text>", where row is the widget's top edge inside its
// parent once the window is laid out (widgets on one row share it).
//
//   control_dump SWITCH > controls.txt
#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <algorithm>
#include <cstdio>
#include <utility>

#include "device/Application.h"
#include "sim/SimulatedProgrammer.h"
#include "ui/kit/QtPrompts.h"
#include "ui/windows/Startup.h"

namespace {

QString oneLine(QString text) {
    return text.replace(u'\t', u' ').replace(u'\n', u' ');
}

QString describe(const QWidget& w) {
    if (const auto* b = qobject_cast<const QPushButton*>(&w)) {
        return QStringLiteral("button\t") + oneLine(b->text());
    }
    if (const auto* b = qobject_cast<const QToolButton*>(&w)) {
        return QStringLiteral("tool\t") + oneLine(b->text());
    }
    if (const auto* b = qobject_cast<const QCheckBox*>(&w)) {
        return QStringLiteral("check\t") + oneLine(b->text());
    }
    if (const auto* b = qobject_cast<const QRadioButton*>(&w)) {
        return QStringLiteral("radio\t") + oneLine(b->text());
    }
    if (const auto* e = qobject_cast<const QLineEdit*>(&w)) {
        return QStringLiteral("edit\t") + oneLine(e->text());
    }
    if (const auto* l = qobject_cast<const QLabel*>(&w)) {
        return QStringLiteral("label\t") + oneLine(l->text());
    }
    if (const auto* c = qobject_cast<const QComboBox*>(&w)) {
        QStringList items;
        for (int i = 0; i < c->count(); ++i) {
            items << oneLine(c->itemText(i));
        }
        return QStringLiteral("combo\t") + items.join(u'|');
    }
    if (qobject_cast<const QProgressBar*>(&w)) {
        return QStringLiteral("progress\t");
    }
    if (const auto* g = qobject_cast<const QGroupBox*>(&w)) {
        return QStringLiteral("frame\t") + oneLine(g->title());
    }
    if (w.findChildren<QWidget*>(Qt::FindDirectChildrenOnly).isEmpty()) {
        // A picture the program paints itself: an empty area of its size.
        const QSize size = w.size();
        return QStringLiteral("area\t%1x%2").arg(size.width()).arg(size.height());
    }
    return QStringLiteral("box\t");
}

void dump(const QWidget& parent, int depth) {
    // In reading order, so that the rows come out as the window shows them.
    QList<QWidget*> children = parent.findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    std::stable_sort(children.begin(), children.end(), [](const QWidget* a, const QWidget* b) {
        return std::pair(a->y(), a->x()) < std::pair(b->y(), b->x());
    });
    for (const QWidget* child : children) {
        if (child->isHidden()) {
            continue;
        }
        std::printf(
            "%d\t%s\n", depth,
            qPrintable(describe(*child).replace(u'\t', QStringLiteral("\t%1\t").arg(child->y()))));
        const bool container = qobject_cast<const QGroupBox*>(child) ||
                               describe(*child).startsWith(QStringLiteral("box"));
        if (container) {
            dump(*child, depth + 1);
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    rk31::QtPrompts prompts;
    rk31::QtPause pause;
    // The program finds the simulated programmer when no other driver is installed, and its
    // windows then carry the badge that opens the simulator's bench: so does this window.
    rk31::sim::SimulatedProgrammer programmer({});
    rk31::Application application(rk31::StartSettings{}, prompts, pause, &programmer);
    const auto window =
        rk31::CreateMainWindow(rk31::VariantForCommandLine(app.arguments().value(1)), application);
    if (!window) {
        std::fprintf(stderr, "usage: control_dump /0../6\n");
        return 2;
    }
    window->show();
    window->resize(window->sizeHint());
    QApplication::processEvents();
    const QWidget* content = window->findChild<QWidget*>(QStringLiteral("content"));
    dump(content ? *content : *window, 0);
    return 0;
}
