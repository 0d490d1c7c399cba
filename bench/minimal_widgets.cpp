// The toolkit's floor for start-up time and memory: an application object and one empty widget.
#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QWidget window;
    window.show();
    return app.exec();
}
