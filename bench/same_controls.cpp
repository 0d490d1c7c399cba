// The toolkit's floor for one main window: the same buttons, boxes, labels, check boxes, lists,
// frames and painted areas, with their texts, in rows as the window has them, and no logic.
// Reads the list control_dump wrote.
//
//   same_controls CONTROLS_FILE
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QTextStream>
#include <QToolButton>
#include <QVBoxLayout>
#include <cstdio>
#include <vector>

namespace {

struct Line {
    int depth = 0;
    QString kind;
    int row = 0;
    QString text;
};

QWidget* make(const Line& line, QWidget* parent) {
    if (line.kind == u"button") {
        return new QPushButton(line.text, parent);
    }
    if (line.kind == u"tool") {
        return new QToolButton(parent);
    }
    if (line.kind == u"check") {
        return new QCheckBox(line.text, parent);
    }
    if (line.kind == u"radio") {
        return new QRadioButton(line.text, parent);
    }
    if (line.kind == u"edit") {
        return new QLineEdit(line.text, parent);
    }
    if (line.kind == u"label") {
        return new QLabel(line.text, parent);
    }
    if (line.kind == u"combo") {
        auto* combo = new QComboBox(parent);
        combo->addItems(line.text.split(u'|'));
        return combo;
    }
    if (line.kind == u"progress") {
        return new QProgressBar(parent);
    }
    if (line.kind == u"frame") {
        return new QGroupBox(line.text, parent);
    }
    auto* area = new QWidget(parent);
    if (line.kind == u"area") {
        const QStringList wh = line.text.split(u'x');
        area->setMinimumSize(wh.value(0).toInt(), wh.value(1).toInt());
    }
    return area;
}

// Builds the children of `parent` from lines[at..] at `depth`, a row of widgets per shared top
// edge; returns the first line past them.
std::size_t build(const std::vector<Line>& lines, std::size_t at, int depth, QWidget* parent) {
    auto* column = new QVBoxLayout(parent);
    QHBoxLayout* row = nullptr;
    int rowTop = -1;
    while (at < lines.size() && lines[at].depth == depth) {
        const Line& line = lines[at++];
        QWidget* w = make(line, parent);
        if (!row || line.row != rowTop) {
            row = new QHBoxLayout;
            column->addLayout(row);
            rowTop = line.row;
        }
        row->addWidget(w);
        if (at < lines.size() && lines[at].depth > depth) {
            at = build(lines, at, depth + 1, w);
        }
    }
    return at;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QFile file(app.arguments().value(1));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        std::fprintf(stderr, "usage: same_controls CONTROLS_FILE\n");
        return 2;
    }
    std::vector<Line> lines;
    QTextStream in(&file);
    while (!in.atEnd()) {
        const QStringList f = in.readLine().split(u'\t');
        if (f.size() >= 3) {
            lines.push_back({f[0].toInt(), f[1], f[2].toInt(), f.value(3)});
        }
    }
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* scroll = new QScrollArea(&window);
    auto* content = new QWidget(scroll);
    build(lines, 0, 0, content);
    scroll->setWidget(content);
    scroll->setWidgetResizable(true);
    layout->addWidget(scroll);
    window.resize(content->sizeHint());
    window.show();
    return app.exec();
}
