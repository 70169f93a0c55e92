// The least that a program with a main window can do until it is ready for its user.
#include "start/startwatch.h"

#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const bench::StartWatch watch;
    QMainWindow window;
    window.resize(800, 600);
    window.show();
    return QApplication::exec();
}
