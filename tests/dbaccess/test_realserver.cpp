#include "dbaccess/dbconnection.h"
#include "platform/ado/error.h"
#include "platform/ado/recordset.h"
#include "platform/controls/nodes.h"
#include "support/answers.h"
#include "support/rowtexts.h"
#include "support/table.h"

#include <QTest>

using controls::ComboItems;
using controls::Node;
using controls::Nodes;

/// The data access and the catalog routines, one against the other, on any SQL Server whose connection string
/// stands in TABLEWRIGHT_TEST_CONNECTION. They change nothing.
class TestRealServer : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void init() { m_answers.emplace(); }
    void cleanup() { m_answers.reset(); }
    void treeAndListsAgree();
    void columnsOfSystemTable();
    void saysWhereItIs();
    void expressions_data();
    void expressions();
    void rowLimits();

  private:
    tw::DBConnection m_connection;
    ado::Connection m_opened;
    std::optional<testsupport::Answers> m_answers;  ///< a message box that shows is a failure
};

void TestRealServer::initTestCase() {
    const QString text = qEnvironmentVariable("TABLEWRIGHT_TEST_CONNECTION");
    if (text.isEmpty()) QSKIP("TABLEWRIGHT_TEST_CONNECTION holds no connection string");
    m_connection.setConnectionString(text);
    m_opened.Open(text);
}

void TestRealServer::treeAndListsAgree() {
    Nodes tree;
    QVERIFY(m_connection.FillTvDB(tree));
    const Node* root = tree.find(QStringLiteral("R"));
    QVERIFY(!root->text.isEmpty());
    QCOMPARE(m_connection.getServer(), root->text);

    ComboItems databases;
    QVERIFY(m_connection.FillCbDB(databases));
    const QStringList listed = testsupport::textsOf(databases);
    QVERIFY(!listed.contains(QStringLiteral("master")));

    for (const Node* database : root->children) {
        QVERIFY2(listed.contains(database->text), qUtf8Printable(database->text));
        const bool closed = !database->children.empty() &&
                            database->children.front()->text == QStringLiteral("<No Permission>");
        if (closed) continue;
        ComboItems tables;
        QVERIFY2(m_connection.FillCbTable(tables, database->text), qUtf8Printable(database->text));
        // Tables whose key is taken are missing from the tree.
        QVERIFY(tables.count() >= static_cast<int>(database->children.size()));
    }
}

void TestRealServer::columnsOfSystemTable() {
    ComboItems columns;
    m_connection.FillCbColumn(columns, QStringLiteral("master"), QStringLiteral("sysobjects"));
    const QStringList names = testsupport::textsOf(columns);
    for (const char* name : {"name", "id", "xtype"})
        QVERIFY2(names.contains(QLatin1String(name)), name);
}

void TestRealServer::saysWhereItIs() {
    QVERIFY(m_opened.ConnectionString().contains(QStringLiteral("SERVER="), Qt::CaseInsensitive));
    QVERIFY(m_opened.ConnectionString().contains(QStringLiteral("WSID="), Qt::CaseInsensitive));
}

void TestRealServer::expressions_data() {
    const testsupport::TextTable<QString> row("expression", "text");
    row("CONVERT(bit, 1)", "True");
    row("-2147483648", "-2147483648");
    row("CONVERT(decimal(28, 10), '-123456789012345678.0987654321')", "-123456789012345678.0987654321");
    row("CONVERT(money, -922337203685477.5808)", "-922337203685477.5808");
    row("CONVERT(float, 0.1)", "0.1");
    row("CONVERT(real, 0.1)", "0.1");
    row("CONVERT(datetime, '20000101 01:01:01.003')", "2000-01-01 01:01:01.003");
    row("CONVERT(char(3), 'a')", "a  ");
    row("''", "");
    row("N'\u0416\u6F22\U0001F600'", "\u0416\u6F22\U0001F600");
    row("CONVERT(uniqueidentifier, '03020100-0504-0706-0809-0a0b0c0d0eff')",
        "{03020100-0504-0706-0809-0A0B0C0D0EFF}");
    row("1 1", "error -2147217900");
    row("no_such_column FROM sysobjects", "error -2147217900");
    row("(SELECT a FROM no_such_table_anywhere)", "error -2147217865");
}

void TestRealServer::expressions() {
    QFETCH(QString, expression);
    QString text;
    try {
        ado::Recordset rows;
        rows.Open(QStringLiteral("SELECT ") + expression + QStringLiteral(" AS [a b]"), m_opened);
        text = rows.Fields(QStringLiteral("A B")).text().toString();
        rows.MoveNext();
        QVERIFY(rows.Eof());
    } catch (const ado::Error& error) {
        text = QStringLiteral("error %1").arg(error.number());
    }
    QTEST(text, "text");
}

void TestRealServer::rowLimits() {
    const auto count = [this](qint64 limit) {
        ado::Recordset rows;
        rows.setMaxRecords(limit);
        rows.Open(QStringLiteral("master..sysobjects"), m_opened, ado::CursorType::ForwardOnly,
                  ado::LockType::ReadOnly, ado::CommandType::Table);
        int seen = 0;
        for (; !rows.Eof(); rows.MoveNext())
            ++seen;
        return seen;
    };
    QCOMPARE(count(5), 5);
    QVERIFY(count(0) > 5);
}

QTEST_GUILESS_MAIN(TestRealServer)
#include "test_realserver.moc"
