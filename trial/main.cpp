#include "trial/trial.h"
#include "trial/trialwindow.h"

#include <QApplication>
#include <QDir>
#include <QIcon>
#include <QMessageBox>

namespace {

void tellFailure(const QString& why) {
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Tablewright"), why);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

}  // namespace

int main(int argc, char** argv) {
    QGuiApplication::setDesktopFileName(QStringLiteral("tablewright-sample"));
    const QApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/tablewright.svg")));

    const QDir folder(QCoreApplication::applicationDirPath());
    trial::Trial trial(folder.filePath(QStringLiteral("tablewright-sample-server")),
                       folder.filePath(QStringLiteral("tablewright")));
    trial::TrialWindow window;
    QObject::connect(&trial, &trial::Trial::listening, &window, &trial::TrialWindow::showServer);
    QObject::connect(&trial, &trial::Trial::failed, &window, [&](const QString& why) {
        window.hide();
        tellFailure(why);
        if (!trial.isProgramRunning()) QCoreApplication::exit(1);
    });
    QObject::connect(&trial, &trial::Trial::ended, &window, [](int code) { QCoreApplication::exit(code); });
    trial.start();
    return QApplication::exec();
}
