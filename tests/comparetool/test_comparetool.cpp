#include "support/relay.h"
#include "support/sampleserverprocess.h"
#include "support/table.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using testsupport::Relay;

namespace {

struct Ended {
    int code;
    QString output;
    QString errors;
};

Ended run(const QStringList& arguments, const QByteArray& input = {}) {
    QProcess process;
    process.start(QStringLiteral(TW_COMPARE), arguments);
    process.write(input);
    process.closeWriteChannel();
    const bool ended = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit;
    return {ended ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

QStringList systems(const QString& server1, const QString& database1, const QString& server2,
                    const QString& database2, const QString& user = QStringLiteral("sa")) {
    const auto string = [&](const QString& server) {
        return QStringLiteral("driver={SQL Server};server=%1;uid=%2").arg(server, user);
    };
    return {"--connection1", string(server1), "--database1", database1,
            "--connection2", string(server2), "--database2", database2};
}

}  // namespace

/// The program as a script runs it, on the whole road to a server.
class TestCompareTool : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void ends_data();
    void ends();
    void endsWithoutAll_data();
    void endsWithoutAll();
    void takesPasswords();

  private:
    testsupport::RunningSampleServer m_server;
};

void TestCompareTool::ends_data() {
    const QString here = m_server.serverText();
    const auto workshops = [&](const QString& database2, const QStringList& more) {
        return systems(here, QStringLiteral("Workshop"), here, database2) + more;
    };
    const QString workshop = QStringLiteral("Workshop");
    const QString other = QStringLiteral("Workshop2");
    const testsupport::Table<QStringList, int, QString, QString> row("arguments", "code", "told", "error");
    row("equal", workshops(workshop, {"--kinds", "all"}), 0, "Complete\n", {});
    row("different", workshops(other, {"--kinds", "all"}), 1, "Matched:      115\nUnmatched:    69\n", {});
    row("columns only", workshops(other, {}), 1, "Table: Bicycle ", {});
    row("one table", workshops(other, {"--table1", "Invoice"}), 0, "Workshop2 - Invoice\n", {});
    row("page", workshops(other, {"--format", "html", "--differences-only"}), 1, "<!DOCTYPE html>", {});
    row("absent server", systems(here, workshop, QStringLiteral("127.0.0.1,1"), workshop), 2, "Not complete",
        "Not read: System 2: ");
    row("absent table", workshops(workshop, {"--table1", "Nowhere"}), 2, "Not complete",
        "Not read: System 1: Table: Nowhere");
    row("refused", systems(here, workshop, here, workshop, QStringLiteral("clerk")), 2, "Not complete",
        "Login failed for user 'clerk'");
    row("closed database", systems(here, workshop, here, QStringLiteral("Nowhere")), 2, "Not complete",
        "Not read: System 2: ");
    row("password told to all", workshops(workshop, {"--connection1", "server=x;Pwd=secret"}), 2, {},
        "does not belong on the command line");
    row("no database", {"--dsn1", "x", "--dsn2", "x"}, 2, {}, "--database1 is missing");
    row("no format", workshops(workshop, {"--format", "xls"}), 2, {}, "'xls' is no format");
    row("file in no folder", workshops(workshop, {"--output", "/nowhere/x"}), 2, {}, "cannot be written");
}

void TestCompareTool::ends() {
    QFETCH(const QStringList, arguments);
    QFETCH(const QString, told);
    QFETCH(const QString, error);
    const Ended ended = run(arguments);
    QTEST(ended.code, "code");
    QVERIFY2(ended.output.contains(told) && ended.output.isEmpty() == told.isEmpty(),
             qPrintable(ended.output));
    QVERIFY2(ended.errors.contains(error) && ended.errors.isEmpty() == error.isEmpty(),
             qPrintable(ended.errors));
    QVERIFY(!ended.errors.contains(QStringLiteral("secret")));
}

void TestCompareTool::endsWithoutAll_data() {
    const testsupport::Table<QString, int, QString> row("part", "bytes", "error");
    row("a table that may not be read", "sp_columns 'Part'", -1, "Not read: System 2: Table: Part\n");
    row("keys that may not be read", "OBJECT_ID('Part')", -1, "Not read: System 2: Table: Part\n");
    row("details that may not be read", "syscomments", -1, "Not read: System 2: indexes");
    row("a line that is cut", "sp_columns 'Part'", 100, "the line to a server was lost");
}

/// Whatever else was equal.
void TestCompareTool::endsWithoutAll() {
    QFETCH(const QString, part);
    QFETCH(const int, bytes);
    QFETCH(const QString, error);
    Relay relay(m_server.port());
    relay.setFault({part, bytes});
    const QString workshop = QStringLiteral("Workshop");
    const Ended ended = run(systems(m_server.serverText(), workshop, relay.serverText(), workshop) +
                            QStringList{"--kinds", "all", "--format", "json"});
    QCOMPARE(ended.code, 2);
    QVERIFY2(ended.errors.contains(error), qPrintable(ended.errors));
    const QJsonObject report = QJsonDocument::fromJson(ended.output.toUtf8()).object();
    QCOMPARE(report.value(QStringLiteral("complete")), QJsonValue(false));
}

/// Both from the standard input, a line each.
void TestCompareTool::takesPasswords() {
    const QString workshop = QStringLiteral("Workshop");
    const QStringList arguments =
        systems(m_server.serverText(), workshop, m_server.serverText(), workshop, QStringLiteral("clerk")) +
        QStringList{"--password-file1", "-", "--password-file2", "-"};
    QCOMPARE(run(arguments, "clerk\r\nclerk\n").code, 0);
    QCOMPARE(run(arguments, "clerk\nsecret\n").code, 2);
}

QTEST_GUILESS_MAIN(TestCompareTool)
#include "test_comparetool.moc"
