#include "support/sampleserverprocess.h"
#include "support/table.h"
#include "wireclient.h"

#include <QFile>
#include <QHostAddress>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

using testsupport::SampleServerProcess;

namespace {

constexpr int kPatienceMilliseconds = 20000;

/// Runs the program to its end, which it is expected to come to by itself.
struct Run {
    explicit Run(const QStringList& arguments) {
        QProcess process;
        process.start(SampleServerProcess::program(), arguments);
        process.waitForFinished(kPatienceMilliseconds);
        exitCode = process.state() == QProcess::NotRunning ? process.exitCode() : -1;
        errors = QString::fromLocal8Bit(process.readAllStandardError());
    }
    int exitCode = -1;
    QString errors;
};

QString firstNumber(const SampleServerProcess& server, const char* query) {
    WireClient client(server.port());
    client.logIn({.password = QString()});
    return client.runBatch(QString::fromUtf8(query)).text;
}

}  // namespace

/// The server as a program of its own, over its real engine.
class TestProgram : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void refusesOptions_data();
    void refusesOptions();
    void tellsWhereScriptFails();
    void runsScripts_data();
    void runsScripts();
    void makesDatabases();
    void countsLogins();
    void takesNextFreePort();
    void endsOnSignal();

  private:
    QString write(const QByteArray& script);

    QTemporaryDir m_folder;
};

QString TestProgram::write(const QByteArray& script) {
    QFile file(m_folder.filePath(QStringLiteral("script.sql")));
    if (!file.open(QIODevice::WriteOnly) || file.write(script) != script.size()) qFatal("no script");
    return file.fileName();
}

void TestProgram::refusesOptions_data() {
    const testsupport::TextTable<QString> row("arguments", "named");  // what the error must name
    row("--prot 1", "prot");
    row("--port", "port");
    row("--port x", "x");
    row("--port 65536", "65536");
    row("file.sql", "file.sql");
    row("--large 3", "--large");
    row("--large 3,0", "3,0");
    row("--large 3,4,x", "3,4,x");
    row("--large 1,1 --large 1,1 --large 1,1", "2 times");
    row("--many 3,4,5", "3,4,5");
    row("--many -1,1", "-1,1");
    row("--details 3,4", "--details");
    row("--idle-minutes 0", "--idle-minutes");
}

void TestProgram::refusesOptions() {
    QFETCH(QString, arguments);
    QFETCH(QString, named);
    const Run run(arguments.split(u' '));
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.errors.contains(named), qPrintable(run.errors));
}

void TestProgram::tellsWhereScriptFails() {
    const QString file = write("CREATE DATABASE A\nGO\nUSE A\nGO\n\nCREATE TABLE T (a nosuchtype)\nGO\n");
    const Run run({QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--script"), file});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.errors.startsWith(file + QStringLiteral(":6: error 2715: ")), qPrintable(run.errors));

    const QString foreign = write("PRINT 'a'\nGO\nCREATE VIEW v AS SELECT 1\n");
    const Run strict({QStringLiteral("--strict"), QStringLiteral("--script"), foreign});
    QCOMPARE(strict.exitCode, 1);
    QVERIFY2(strict.errors.contains(QStringLiteral(":3: passed over: CREATE VIEW v")),
             qPrintable(strict.errors));

    const Run missing({QStringLiteral("--script"), m_folder.filePath(QStringLiteral("none.sql"))});
    QCOMPARE(missing.exitCode, 1);
    QVERIFY2(missing.errors.contains(QStringLiteral("none.sql")), qPrintable(missing.errors));
}

void TestProgram::runsScripts_data() {
    const testsupport::Table<QByteArray> row("bytes");
    const QString script = QStringLiteral(
        "CREATE DATABASE A\nGO\nUSE A\nGO\nCREATE TABLE \u00dcbung (a int)\nGO\n"
        "INSERT INTO \u00dcbung VALUES (42)\nGO\n");
    row("UTF-8", script.toUtf8());
    row("UTF-8 with mark", "\xef\xbb\xbf" + script.toUtf8());
    row("UTF-16", "\xff\xfe" + utf16(script));
    row("code page", script.toLatin1());
}

void TestProgram::runsScripts() {
    QFETCH(QByteArray, bytes);
    SampleServerProcess server;
    QVERIFY2(server.start({QStringLiteral("--no-sample-data"), QStringLiteral("--script"), write(bytes)}),
             qPrintable(server.errorText()));
    QCOMPARE(firstNumber(server, "SELECT a FROM A..\u00dcbung"), QStringLiteral("42"));
    QCOMPARE(server.stop(), 0);
}

void TestProgram::makesDatabases() {
    const char* databases = "SELECT COUNT(*) FROM master..sysdatabases";
    SampleServerProcess plain;
    QVERIFY2(plain.start({QStringLiteral("--no-sample-data")}), qPrintable(plain.errorText()));
    const int own = firstNumber(plain, databases).toInt();

    SampleServerProcess server;
    QVERIFY2(
        server.start({QStringLiteral("--no-sample-data"), QStringLiteral("--large"), QStringLiteral("2,3,4"),
                      QStringLiteral("--large"), QStringLiteral("5,3"), QStringLiteral("--many"),
                      QStringLiteral("3,2"), QStringLiteral("--details"), QStringLiteral("25,90,12")}),
        qPrintable(server.errorText()));
    QCOMPARE(firstNumber(server, databases).toInt(), own + 2 + 3 + 1);
    const char* tables = "SELECT COUNT(*) FROM Large..sysobjects WHERE xtype = 'U'";
    QCOMPARE(firstNumber(server, tables), QStringLiteral("2"));
    const char* otherTables = "SELECT COUNT(*) FROM Large2..sysobjects WHERE xtype = 'U'";
    QCOMPARE(firstNumber(server, otherTables), QStringLiteral("5"));
    const char* checks = "SELECT COUNT(*) FROM Details..sysobjects WHERE xtype = 'C'";
    QCOMPARE(firstNumber(server, checks), QStringLiteral("25"));
    const char* indexRows =
        "SELECT COUNT(*) FROM Details..sysindexkeys AS k, Details..sysobjects AS t "
        "WHERE k.id = t.id AND t.xtype = 'U'";
    QCOMPARE(firstNumber(server, indexRows), QStringLiteral("90"));
    const char* foreignKeys = "SELECT COUNT(*) FROM Details..sysforeignkeys";
    QCOMPARE(firstNumber(server, foreignKeys), QStringLiteral("12"));
}

void TestProgram::countsLogins() {
    SampleServerProcess server;
    QVERIFY2(server.start({QStringLiteral("--no-sample-data")}), qPrintable(server.errorText()));
    const char* query = "SELECT @@CONNECTIONS";
    const int before = firstNumber(server, query).toInt();
    WireClient refused(server.port());
    QCOMPARE(refused.logIn({.password = QStringLiteral("wrong")}).messages, QList<int>{18456});
    QCOMPARE(firstNumber(server, query).toInt(), before + 1);
}

void TestProgram::takesNextFreePort() {
    QTcpServer taken;
    QVERIFY(taken.listen(QHostAddress::LocalHost));
    const QString port = QString::number(taken.serverPort());
    const QStringList arguments{QStringLiteral("--no-sample-data"), QStringLiteral("--port"), port};
    const Run refused(arguments);
    QCOMPARE(refused.exitCode, 1);
    QVERIFY2(refused.errors.contains(port), qPrintable(refused.errors));

    SampleServerProcess server;
    QVERIFY2(server.start(arguments + QStringList{QStringLiteral("--next-free-port")}),
             qPrintable(server.errorText()));
    QVERIFY(server.port() > taken.serverPort());
}

void TestProgram::endsOnSignal() {
#ifdef Q_OS_WIN
    QSKIP("A console program gets no signal from another one.");
#endif
    QProcess process;
    process.start(SampleServerProcess::program(),
                  {QStringLiteral("--no-sample-data"), QStringLiteral("--port"), QStringLiteral("0")});
    QVERIFY(process.waitForReadyRead(kPatienceMilliseconds));
    const QByteArray line = process.readLine().trimmed();
    WireClient client(line.mid(line.lastIndexOf(',') + 1).toUShort());
    client.logIn({.password = QString()});
    process.terminate();
    QVERIFY(process.waitForFinished(kPatienceMilliseconds));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    QVERIFY(client.waitForEnd());
}

QTEST_GUILESS_MAIN(TestProgram)
#include "test_program.moc"
