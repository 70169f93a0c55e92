#include "dbaccess/dbconnection.h"
#include "platform/controls/comboitems.h"
#include "platform/controls/nodes.h"
#include "support/answers.h"

#include <QTest>

using controls::ComboItems;
using controls::Node;
using controls::Nodes;

/// The catalog routines against any SQL Server whose connection string stands in TABLEWRIGHT_TEST_CONNECTION,
/// one routine against the other. They change nothing.
class TestCatalogOfRealServer : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void init() { m_answers.emplace(); }
    void cleanup() { m_answers.reset(); }
    void treeAndListsAgree();
    void columnsOfSystemTable();

  private:
    tw::DBConnection m_connection;
    std::optional<testsupport::Answers> m_answers;  ///< a message box that shows is a failure
};

void TestCatalogOfRealServer::initTestCase() {
    const QString text = qEnvironmentVariable("TABLEWRIGHT_TEST_CONNECTION");
    if (text.isEmpty()) QSKIP("TABLEWRIGHT_TEST_CONNECTION holds no connection string");
    m_connection.setConnectionString(text);
}

void TestCatalogOfRealServer::treeAndListsAgree() {
    Nodes tree;
    QVERIFY(m_connection.FillTvDB(tree));
    const Node* root = tree.find(QStringLiteral("R"));
    QVERIFY(!root->text.isEmpty());
    QCOMPARE(m_connection.getServer(), root->text);

    ComboItems databases;
    QVERIFY(m_connection.FillCbDB(databases));
    QStringList listed;
    for (int i = 0; i < databases.count(); ++i)
        listed += databases.text(i);
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

void TestCatalogOfRealServer::columnsOfSystemTable() {
    ComboItems columns;
    m_connection.FillCbColumn(columns, QStringLiteral("master"), QStringLiteral("sysobjects"));
    QStringList names;
    for (int i = 0; i < columns.count(); ++i)
        names += columns.text(i);
    for (const char* name : {"name", "id", "xtype"})
        QVERIFY2(names.contains(QLatin1String(name)), name);
}

QTEST_GUILESS_MAIN(TestCatalogOfRealServer)
#include "test_realserver.moc"
