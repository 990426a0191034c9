#include <QApplication>
#include <QLabel>
#include <QWidget>

// The least that a window of this toolkit costs: an empty one of the same size, or, with an argument, one
// that shows this text.
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QWidget window;
    window.setFixedSize(1024, 736);
    if (argc > 1) {
        new QLabel(QString::fromLocal8Bit(argv[1]), &window);
    }
    window.show();
    return QApplication::exec();
}
