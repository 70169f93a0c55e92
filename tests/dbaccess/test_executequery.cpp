#include "dbaccess/dbconnection.h"
#include "support/answers.h"
#include "support/sampleserverprocess.h"

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
const QStringList OddDatabases{QStringLiteral("plain"),  QStringLiteral("a;Port=1"),
                               QStringLiteral("a=b,c"),  QStringLiteral(" blank"),
                               QStringLiteral("blank "), QStringLiteral("{a"),
                               QStringLiteral("a}b"),    QStringLiteral("a};Driver=none;{b")};

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
    connection.setConnectionString(QStringLiteral("driver={SQL Server};server=") + m_server.serverText() +
                                   QStringLiteral(";uid=sa;pwd="));
    return connection;
}

void TestExecuteQuery::handsOutRows_data() {
    QTest::addColumn<QString>("query");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QString>("database");
    QTest::newRow("no rows") << QStringLiteral("select 1 where 1 = 0") << QStringList{}
                             << QStringLiteral("Workshop");
    for (const QString& name : OddDatabases)
        QTest::addRow("rows, in %s", qUtf8Printable(name))
            << QStringLiteral("select db_name() union all select 'second'") << QStringList{name, "second"}
            << name;
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
    QTest::addColumn<QString>("database");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("head");
    QTest::newRow("unknown database") << QStringLiteral("Nowhere") << QStringLiteral("select 1")
                                      << QStringLiteral("Error: -2147467259.\r\n");
    QTest::newRow("a database that cannot be asked for")
        << QStringLiteral("\u0416};b") << QStringLiteral("select 1")
        << QStringLiteral("Error: -2147467259.\r\nThe driver cannot");
    QTest::newRow("a name that would be cut")
        << QStringLiteral("Workshop") + QChar(0) << QStringLiteral("select 1")
        << QStringLiteral("Error: -2147467259.\r\nA connection string cannot");
    QTest::newRow("wrong statement") << QStringLiteral("Workshop") << QStringLiteral("SELECTX")
                                     << QStringLiteral("Error: -2147217900.\r\n");
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
