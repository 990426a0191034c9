#include <QApplication>
#include <QWidget>

// The least that a window of this toolkit costs: an empty one of the same size.
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QWidget window;
    window.setFixedSize(1024, 736);
    window.show();
    return QApplication::exec();
}
