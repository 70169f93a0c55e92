#include "dbaccess/catalog.h"
#include "dbaccess/dbconnection.h"
#include "dbaccess/patience.h"
#include "support/table.h"

#include <QTest>

using tw::DBConnection;

class TestDBConnection : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void textHelpers_data();
    void textHelpers();
    void namesServer_data();
    void namesServer();
    void leavesOut_data();
    void leavesOut();
    void patience_data();
    void patience();
};

void TestDBConnection::textHelpers_data() {
    const testsupport::Table<QString, QString, QString, bool> row("text", "capitalized", "baseName", "blank");
    row("empty", "", "", "", false);
    row("one letter", "a", "A", "a", false);
    row("type", "nvarchar", "Nvarchar", "nvarchar", false);
    row("only the first letter changes", "mIxed", "MIxed", "mixed", false);
    row("two words", "Int Identity", "Int Identity", "int", true);
    row("blank in front", " a", " a", "", true);
    row("a tab is no blank", "a\tb", "A\tb", "a\tb", false);
}

void TestDBConnection::textHelpers() {
    QFETCH(QString, text);
    QTEST(DBConnection::Capitialize(text), "capitalized");
    QTEST(DBConnection::GetTypeBaseName(text), "baseName");
    QTEST(DBConnection::HasBlank(text), "blank");
}

void TestDBConnection::namesServer_data() {
    const testsupport::Table<QString, QString> row("connectionString", "name");
    row("this machine", "SERVER=(local);WSID=MYPC", "MYPC(local)");
    row("this machine by name", "SERVER=mypc;WSID=MYPC", "mypc(local)");
    row("another machine", "SERVER=DB1;WSID=MYPC", "DB1");
    row("with the driver's name in front", "driver={SQL Server};server=db1,1433;uid=sa;pwd=x;wsid=mypc",
        "db1,1433");
    row("last item of quoted properties", "x=\"Server=mypc;WSID=MYPC\"", "mypc(local)");
    row("workstation first", "WSID=MYPC;SERVER=(local)", "MYPC(local)");
    row("(local) in another case is a name", "SERVER=(LOCAL);WSID=MYPC", "(LOCAL)");
    row("empty server", "SERVER=;WSID=MYPC", "");
    row("no workstation", "SERVER=DB1", "stored");
    row("no server", "DSN=Sales;WSID=MYPC", "stored");
    row("nothing", "", "stored");
}

void TestDBConnection::namesServer() {
    QFETCH(QString, connectionString);
    ado::Connection opened;
    opened.setConnectionString(connectionString);
    DBConnection connection;
    connection.setServer(QStringLiteral("stored"));
    QTEST(connection.GetServerName(opened), "name");
}

void TestDBConnection::leavesOut_data() {
    const testsupport::Table<QString, bool, bool> row("name", "systemDatabase", "hiddenTable");
    row("system database", "tempdb", true, false);
    row("system database in another case", "Master", false, false);
    row("begins like one", "model2", false, false);
    row("diagram table", "dtproperties", false, true);
    row("diagram table in another case", "DTproperties", false, false);
    row("sys alone", "sys", false, true);
    row("begins with sys", "sysdiagrams_copy", false, true);
    row("begins with Sys", "Systems", false, false);
    row("shorter than sys", "sy", false, false);
}

void TestDBConnection::leavesOut() {
    QFETCH(QString, name);
    QTEST(tw::catalog::isSystemDatabase(name), "systemDatabase");
    QTEST(tw::catalog::isHiddenTable(name), "hiddenTable");
}

void TestDBConnection::patience_data() {
    const testsupport::Table<QList<qint32>, bool> row("failures", "over");
    const qint32 timeOut = ado::numbers::TimeOut;
    row("one slow database", {0, timeOut}, false);
    row("two in a row", {timeOut, timeOut}, true);
    row("two apart", {timeOut, 0, timeOut}, false);
    row("a refusal between", {timeOut, ado::numbers::Unspecified, timeOut}, false);
}

void TestDBConnection::patience() {
    QFETCH(QList<qint32>, failures);
    tw::Patience patience;
    for (const qint32 failure : failures)
        patience.note(failure);
    QTEST(patience.isOver(), "over");
}

QTEST_GUILESS_MAIN(TestDBConnection)
#include "test_dbconnection.moc"
