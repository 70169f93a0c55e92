// The sample server and the program beside it: what is told, and that the one ends with the other.
#include "support/sampleserverprocess.h"
#include "trial/trial.h"
#include "trial/trialwindow.h"

#include <QClipboard>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

class TestTrial : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void endsTheServerWithTheProgram();
    void tellsWhatFailed_data();
    void tellsWhatFailed();

  private:
    QString script(const QString& name, const QByteArray& commands);
    static bool answers(const QString& server);

    QTemporaryDir m_folder;
    QString m_pipe = m_folder.filePath(QStringLiteral("pipe"));
    QString m_program;  ///< ends with code 3 when something is written into the pipe
};

void TestTrial::initTestCase() {
    QCOMPARE(QProcess::execute(QStringLiteral("mkfifo"), {m_pipe}), 0);
    m_program = script(QStringLiteral("program"), "read line <" + m_pipe.toUtf8() + "; exit 3\n");
}

QString TestTrial::script(const QString& name, const QByteArray& commands) {
    QFile file(m_folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly)) return {};
    file.write("#!/bin/sh\n" + commands);
    file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    return file.fileName();
}

bool TestTrial::answers(const QString& server) {
    QTcpSocket socket;
    socket.connectToHost(server.section(u',', 0, 0), server.section(u',', 1).toUShort());
    return socket.waitForConnected();
}

void TestTrial::endsTheServerWithTheProgram() {
    trial::Trial trial(testsupport::SampleServerProcess::program(), m_program);
    trial::TrialWindow window;
    connect(&trial, &trial::Trial::listening, &window, &trial::TrialWindow::showServer);
    QSignalSpy ended(&trial, &trial::Trial::ended);
    trial.start();

    QTRY_VERIFY_WITH_TIMEOUT(window.isVisible(), 30000);
    window.findChild<QPushButton*>(QStringLiteral("cmdCopyServer"))->click();
    const QString server = QGuiApplication::clipboard()->text();
    QCOMPARE(server, window.findChild<QLineEdit*>(QStringLiteral("txtServer"))->text());
    window.findChild<QPushButton*>(QStringLiteral("cmdClose"))->click();
    QVERIFY(!window.isVisible());
    QTRY_VERIFY(trial.isProgramRunning());
    QVERIFY(answers(server));

    QFile end(m_pipe);
    QVERIFY(end.open(QIODevice::WriteOnly));
    end.close();
    QTRY_COMPARE(ended.size(), 1);
    QCOMPARE(ended.first().first().toInt(), 3);
    QVERIFY(!answers(server));
}

void TestTrial::tellsWhatFailed_data() {
    const QString server = testsupport::SampleServerProcess::program();
    const QString missing = m_folder.filePath(QStringLiteral("missing"));
    QTest::addColumn<QString>("serverProgram");
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("told");
    QTest::newRow("no server") << missing << missing << QStringLiteral("sample server did not start");
    QTest::newRow("server refuses") << script(QStringLiteral("refuse"), "echo no such port >&2; exit 1\n")
                                    << missing << QStringLiteral("no such port");
    QTest::newRow("server ends") << script(QStringLiteral("end"), "echo listening on here; exit 0\n")
                                 << m_program << QStringLiteral("sample server has ended");
    QTest::newRow("no program") << server << missing << QStringLiteral("Tablewright did not start");
}

void TestTrial::tellsWhatFailed() {
    QFETCH(QString, serverProgram);
    QFETCH(QString, program);
    QFETCH(QString, told);
    trial::Trial trial(serverProgram, program);
    QSignalSpy failed(&trial, &trial::Trial::failed);
    trial.start();
    QTRY_COMPARE_WITH_TIMEOUT(failed.size(), 1, 30000);
    QVERIFY2(failed.first().first().toString().contains(told), qPrintable(failed.first().first().toString()));
}

QTEST_MAIN(TestTrial)
#include "test_trial.moc"
