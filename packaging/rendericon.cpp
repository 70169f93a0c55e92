// Renders a drawing as a square picture. Usage: tw_rendericon DRAWING SIZE PICTURE

#include <QGuiApplication>
#include <QIcon>

#include <cstdio>

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int size = arguments.value(2).toInt();
    // Without the SVG plugin there is no picture.
    const QPixmap picture = QIcon(arguments.value(1)).pixmap(QSize(size, size), 1.0);
    if (picture.size() == QSize(size, size) && picture.save(arguments.value(3), "PNG")) return 0;
    std::fprintf(stderr, "Cannot render %s; is the SVG plugin of Qt installed?\n",
                 qPrintable(arguments.value(1)));
    return 1;
}
