#include "platform/desktop/doevents.h"
#include "platform/desktop/failures.h"
#include "platform/desktop/msgbox.h"
#include "platform/desktop/settingsstore.h"
#include "shell/core/appstate.h"
#include "shell/program.h"
#include "support/table.h"

#include <QApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <csignal>

#ifdef Q_OS_UNIX

namespace {

const QString AsProgram = QStringLiteral("--as-program");

/// What the program is at when the signal comes.
void keepBusy(const QString& with) {
    if (with == QStringLiteral("message")) desktop::MsgBox(with, desktop::MsgBoxIcon::Information);
    if (with == QStringLiteral("failure")) {
        desktop::guard([] { throw platform::RuntimeError(13, QStringLiteral("Type mismatch")); });
    }
    // As a comparison does.
    while (with == QStringLiteral("work") && QApplication::activeWindow() != nullptr)
        desktop::DoEvents();
}

/// The whole program, which says when it is busy.
int runProgram(int argc, char** argv) {
    const QString with = QString::fromLatin1(argv[2]);
    return tw::runProgram(argc, argv, [with] {
        QTimer::singleShot(0, qApp, [with] {
            QTimer::singleShot(0, qApp, [] {
                std::puts("busy");
                std::fflush(stdout);
            });
            keepBusy(with);
        });
    });
}

}  // namespace

class ProgramSignalsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void endsInOrder_data();
    void endsInOrder();
};

void ProgramSignalsTest::endsInOrder_data() {
    const testsupport::Table<int, QString, int> row("signal", "with", "exitCode");
    row("terminated while idle", SIGTERM, "nothing", 0);
    row("interrupted at a message", SIGINT, "message", 0);
    row("hung up on at work", SIGHUP, "work", 0);
    row("terminated at a failure", SIGTERM, "failure", 1);
}

void ProgramSignalsTest::endsInOrder() {
    QFETCH(int, signal);
    QFETCH(QString, with);
    const QTemporaryDir home;
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home.path());
    program.setProcessEnvironment(environment);
    program.start(QCoreApplication::applicationFilePath(), {AsProgram, with});
    QVERIFY(program.waitForReadyRead());
    QCOMPARE(::kill(pid_t(program.processId()), signal), 0);
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QTEST(program.exitCode(), "exitCode");
    const desktop::SettingsStore settings(home.filePath(QStringLiteral("Tablewright/settings.json")));
    for (const char* key : {"MainTop", "MouseHotTracking"}) {  // of those written, the first and the last
        QCOMPARE(settings.GetSetting(tw::ApplicationTitle, tw::SettingsSection, QLatin1String(key), {}),
                 QStringLiteral("0"));
    }
}

int main(int argc, char** argv) {
    if (argc == 3 && AsProgram == QLatin1String(argv[1])) return runProgram(argc, argv);
    QCoreApplication application(argc, argv);
    ProgramSignalsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_programsignals.moc"

#else

int main() {
    return 0;
}

#endif
