#include "dbaccess/dbconnection.h"
#include "support/answers.h"
#include "support/sampleserverprocess.h"
#include "support/table.h"

#include <QTemporaryFile>
#include <QTest>

class TestExecuteQuery : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void handsOutRows_data();
    void handsOutRows();
    void reportsBothTexts_data();
    void reportsBothTexts();

  private:
    tw::DBConnection connection() const;

    testsupport::SampleServerProcess m_server;
};

namespace {

/// Names that a connection string would take for more than a name, were they put into it as they stand.
const QStringList OddDatabases{"plain",  "a;Port=1", "a=b,c", " blank",
                               "blank ", "{a",       "a}b",   "a};Driver=none;{b"};

}  // namespace

void TestExecuteQuery::initTestCase() {
    QTemporaryFile script;
    QVERIFY(script.open());
    for (const QString& name : OddDatabases)
        script.write(QStringLiteral("CREATE DATABASE [%1]\nGO\n").arg(name).toUtf8());
    script.close();
    QVERIFY2(m_server.start({QStringLiteral("--script"), script.fileName()}),
             qUtf8Printable(m_server.errorText()));
}

tw::DBConnection TestExecuteQuery::connection() const {
    tw::DBConnection connection;
    connection.setConnectionString(m_server.connectionString());
    return connection;
}

void TestExecuteQuery::handsOutRows_data() {
    const testsupport::Table<QString, QString, QStringList> row("database", "query", "texts");
    row("no rows", "Workshop", "select 1 where 1 = 0", {});
    for (const QString& name : OddDatabases)
        row(qUtf8Printable(name), name, "select db_name() union all select 'second'", {name, "second"});
}

void TestExecuteQuery::handsOutRows() {
    QFETCH(QString, query);
    QFETCH(QString, database);
    const testsupport::Answers noBoxes;
    // The connection object goes first.
    std::optional<ado::Recordset> rows = connection().ExecuteQuery(database, query);
    QVERIFY(rows && rows->isOpen());
    QStringList texts;
    for (; !rows->Eof(); rows->MoveNext())
        texts += rows->Fields(0).text().toString();
    QTEST(texts, "texts");
}

void TestExecuteQuery::reportsBothTexts_data() {
    const testsupport::Table<QString, QString, QString> row("database", "query", "head");
    row("unknown database", "Nowhere", "select 1", "Error: -2147467259.\r\n");
    row("a database that cannot be asked for", "\u0416};b", "select 1",
        "Error: -2147467259.\r\nThe driver cannot");
    row("a name that would be cut", QStringLiteral("Workshop") + QChar(0), "select 1",
        "Error: -2147467259.\r\nA connection string cannot");
    row("wrong statement", "Workshop", "SELECTX", "Error: -2147217900.\r\n");
}

void TestExecuteQuery::reportsBothTexts() {
    QFETCH(QString, database);
    QFETCH(QString, query);
    QFETCH(QString, head);
    testsupport::Answers answers;
    QVERIFY(!connection().ExecuteQuery(database, query));
    const QString text = answers.takeBox().text;
    QVERIFY2(text.startsWith(head), qUtf8Printable(text));
    const QString tail = QStringLiteral(
        "\r\n\r\nDatabase: %1.\r\nQuery: %2\r\n\r\n"
        "Debug Information: Error occured in subroutine ExecuteQuery of "
        "module DBConnection.cls.     \r\n\r\n");
    QVERIFY2(text.endsWith(tail.arg(database, query)), qUtf8Printable(text));
}

QTEST_GUILESS_MAIN(TestExecuteQuery)
#include "test_executequery.moc"
