#include "dbaccess/catalog.h"
#include "dbaccess/dbconnection.h"

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
};

void TestDBConnection::textHelpers_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("capitalized");
    QTest::addColumn<QString>("baseName");
    QTest::addColumn<bool>("blank");
    QTest::newRow("empty") << ""
                           << ""
                           << "" << false;
    QTest::newRow("one letter") << "a"
                                << "A"
                                << "a" << false;
    QTest::newRow("type") << "nvarchar"
                          << "Nvarchar"
                          << "nvarchar" << false;
    QTest::newRow("only the first letter changes") << "mIxed"
                                                   << "MIxed"
                                                   << "mixed" << false;
    QTest::newRow("two words") << "Int Identity"
                               << "Int Identity"
                               << "int" << true;
    QTest::newRow("blank in front") << " a"
                                    << " a"
                                    << "" << true;
    QTest::newRow("a tab is no blank") << "a\tb"
                                       << "A\tb"
                                       << "a\tb" << false;
}

void TestDBConnection::textHelpers() {
    QFETCH(QString, text);
    QTEST(DBConnection::Capitialize(text), "capitalized");
    QTEST(DBConnection::GetTypeBaseName(text), "baseName");
    QTEST(DBConnection::HasBlank(text), "blank");
}

void TestDBConnection::namesServer_data() {
    QTest::addColumn<QString>("connectionString");
    QTest::addColumn<QString>("name");
    QTest::newRow("this machine") << "SERVER=(local);WSID=MYPC"
                                  << "MYPC(local)";
    QTest::newRow("this machine by name") << "SERVER=mypc;WSID=MYPC"
                                          << "mypc(local)";
    QTest::newRow("another machine") << "SERVER=DB1;WSID=MYPC"
                                     << "DB1";
    QTest::newRow("with the driver's name in front")
        << "driver={SQL Server};server=db1,1433;uid=sa;pwd=x;wsid=mypc"
        << "db1,1433";
    QTest::newRow("last item of quoted properties") << "x=\"Server=mypc;WSID=MYPC\""
                                                    << "mypc(local)";
    QTest::newRow("workstation first") << "WSID=MYPC;SERVER=(local)"
                                       << "MYPC(local)";
    QTest::newRow("(local) in another case is a name") << "SERVER=(LOCAL);WSID=MYPC"
                                                       << "(LOCAL)";
    QTest::newRow("empty server") << "SERVER=;WSID=MYPC"
                                  << "";
    QTest::newRow("no workstation") << "SERVER=DB1"
                                    << "stored";
    QTest::newRow("no server") << "DSN=Sales;WSID=MYPC"
                               << "stored";
    QTest::newRow("nothing") << ""
                             << "stored";
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
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("systemDatabase");
    QTest::addColumn<bool>("hiddenTable");
    QTest::newRow("system database") << "tempdb" << true << false;
    QTest::newRow("system database in another case") << "Master" << false << false;
    QTest::newRow("begins like one") << "model2" << false << false;
    QTest::newRow("diagram table") << "dtproperties" << false << true;
    QTest::newRow("diagram table in another case") << "DTproperties" << false << false;
    QTest::newRow("sys alone") << "sys" << false << true;
    QTest::newRow("begins with sys") << "sysdiagrams_copy" << false << true;
    QTest::newRow("begins with Sys") << "Systems" << false << false;
    QTest::newRow("shorter than sys") << "sy" << false << false;
}

void TestDBConnection::leavesOut() {
    QFETCH(QString, name);
    QTEST(tw::catalog::isSystemDatabase(name), "systemDatabase");
    QTEST(tw::catalog::isHiddenTable(name), "hiddenTable");
}

QTEST_GUILESS_MAIN(TestDBConnection)
#include "test_dbconnection.moc"
