#include "dbaccess/dbconnection.h"
#include "platform/controls/comboitems.h"
#include "platform/controls/nodes.h"
#include "support/answers.h"
#include "support/rowtexts.h"
#include "support/sampleserverprocess.h"
#include "support/table.h"

#include <QTest>

using controls::ComboItems;
using controls::Node;
using controls::Nodes;
using testsupport::textsOf;

/// The catalog routines over the real driver and wire.
class TestCatalog : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void fillsTree();
    void fillsTreeAgain();
    void treeKeepsRootOfUnreachableServer();
    void listsDatabases();
    void listsTables_data();
    void listsTables();
    void listsColumns();
    void reportsFailure_data();
    void reportsFailure();
    void tellsLackOfPermission_data();
    void tellsLackOfPermission();

  private:
    tw::DBConnection connectionOf(const QString& user, const QString& password) const;
    tw::DBConnection clerk() const { return connectionOf(QStringLiteral("clerk"), QStringLiteral("clerk")); }

    testsupport::RunningSampleServer m_server{{QStringLiteral("--script"), QFINDTESTDATA("keys.sql")}};
};

namespace {

QStringList childrenOf(const Nodes& tree, const char* key) {
    QStringList texts;
    for (const Node* child : tree.find(QString::fromLatin1(key))->children) {
        texts += child->text;
    }
    return texts;
}

}  // namespace

tw::DBConnection TestCatalog::connectionOf(const QString& user, const QString& password) const {
    tw::DBConnection connection;
    connection.setServer(QStringLiteral("stored"));
    connection.setConnectionString(m_server.connectionString(user, password));
    return connection;
}

void TestCatalog::fillsTree() {
    tw::DBConnection connection = clerk();
    Nodes tree;
    QVERIFY(connection.FillTvDB(tree));
    QCOMPARE(connection.getServer(), m_server.serverText());
    const Node& root = *tree.find(QStringLiteral("R"));
    QCOMPARE(root.text, m_server.serverText());
    QVERIFY(root.parent == nullptr);

    // The databases R and Stockroom1 are missing with all that is in them, since their keys are taken.
    QCOMPARE(childrenOf(tree, "R").join(u'|'),
             QStringLiteral("Archive|Odd Names|Payroll|Stock|Stockroom|TypeSamples|Workshop|Workshop2"));
    QVERIFY(tree.find(QStringLiteral("RApple")) == nullptr);
    QVERIFY(tree.find(QStringLiteral("Stockroom1Pear")) == nullptr);
    // So is the table 1 of Stockroom.
    QCOMPARE(childrenOf(tree, "Stock").join(u'|'), QStringLiteral("Article|room1"));
    QCOMPARE(childrenOf(tree, "Stockroom"), QStringList{QStringLiteral("2")});
    QCOMPARE(childrenOf(tree, "Archive"), QStringList());

    const Node* closed = tree.find(QStringLiteral("Payroll<No Permission>"));
    QVERIFY(closed != nullptr);
    QCOMPARE(childrenOf(tree, "Payroll"), QStringList{QStringLiteral("<No Permission>")});
    QCOMPARE((std::vector{root.image, closed->parent->image, closed->image, closed->selectedImage}),
             (std::vector{1, 2, 3, 3}));
}

void TestCatalog::fillsTreeAgain() {
    tw::DBConnection connection = connectionOf(QStringLiteral("sa"), {});
    Nodes tree;
    QVERIFY(connection.FillTvDB(tree));
    const int count = tree.count();
    QVERIFY(connection.FillTvDB(tree));
    QCOMPARE(tree.count(), count);
    QCOMPARE(childrenOf(tree, "Payroll").join(u'|'), QStringLiteral("Employee|Wage"));
}

void TestCatalog::treeKeepsRootOfUnreachableServer() {
    testsupport::Answers answers;
    tw::DBConnection connection = connectionOf(QStringLiteral("clerk"), QStringLiteral("wrong"));
    Nodes tree;
    tree.add(nullptr, QStringLiteral("old"), QStringLiteral("old"), 1, 1);
    QVERIFY(!connection.FillTvDB(tree));
    QVERIFY(
        answers.takeBox().text.contains(QStringLiteral("subroutine FillTvDB of module DBConnection.cls.")));
    QCOMPARE(tree.count(), 1);
    QCOMPARE(tree.find(QStringLiteral("R"))->text, QStringLiteral("Server"));
    QCOMPARE(connection.getServer(), QStringLiteral("stored"));
}

void TestCatalog::listsDatabases() {
    ComboItems combo;
    combo.addItem(QStringLiteral("old"));
    QVERIFY(clerk().FillCbDB(combo));
    QCOMPARE(textsOf(combo).join(u'|'),
             QStringLiteral("Archive|Odd Names|Payroll|R|Stock|Stockroom|Stockroom1|"
                            "TypeSamples|Workshop|Workshop2"));
}

void TestCatalog::listsTables_data() {
    const testsupport::Table<QString, QStringList, QStringList> row("database", "present", "absent");
    const auto list = [](const char* texts) {
        return QString::fromUtf8(texts).split(u'|', Qt::SkipEmptyParts);
    };
    row("both", "Stockroom", list("1|2"), {});
    row("filters and odd names", "Odd Names", list("Bob's bikes|two words|SYSTEM|a]b|中文表|Müller-Straße"),
        list("dtproperties|sysfiles1x|sysdiagrams_copy|sys|sysobjects"));
    row("none", "Archive", {}, {});
}

void TestCatalog::listsTables() {
    QFETCH(QString, database);
    QFETCH(QStringList, present);
    QFETCH(QStringList, absent);
    ComboItems combo;
    combo.addItem(QStringLiteral("old"));
    QVERIFY(clerk().FillCbTable(combo, database));
    QStringList tables = textsOf(combo);
    QVERIFY(!tables.contains(QStringLiteral("old")));
    for (const QString& table : present) {
        QVERIFY2(tables.contains(table), qUtf8Printable(table));
    }
    for (const QString& table : absent) {
        QVERIFY2(!tables.contains(table), qUtf8Printable(table));
    }
    Nodes tree;
    QVERIFY(clerk().FillTvDB(tree));
    // Two owners' tables of one name have one key, so that the tree shows one of them.
    tables.removeDuplicates();
    if (database != QStringLiteral("Stockroom")) QCOMPARE(childrenOf(tree, qUtf8Printable(database)), tables);
}

void TestCatalog::listsColumns() {
    ComboItems combo;
    clerk().FillCbColumn(combo, QStringLiteral("Odd Names"), QStringLiteral("two words"));
    QCOMPARE(textsOf(combo).join(u'|'), QStringLiteral("first name|last name"));
    clerk().FillCbColumn(combo, QStringLiteral("Odd Names"), QStringLiteral("no such table"));
    QCOMPARE(combo.count(), 0);
}

void TestCatalog::reportsFailure_data() {
    const testsupport::Table<QString, QString, QString, bool> row("procedure", "password", "head",
                                                                  "loginHint");
    for (const char* procedure : {"FillCbDB", "FillCbTable", "FillCbColumn"})
        row(procedure, procedure, "wrong", "Error: -2147217843.", true);
    row("columns, a quote in the name", "FillCbColumn", "clerk", "Error: -2147217900.", false);
}

void TestCatalog::reportsFailure() {
    QFETCH(QString, procedure);
    QFETCH(QString, password);
    QFETCH(QString, head);
    QFETCH(bool, loginHint);
    testsupport::Answers answers;
    tw::DBConnection connection = connectionOf(QStringLiteral("clerk"), password);
    ComboItems combo;
    combo.addItem(QStringLiteral("old"));
    if (procedure == QStringLiteral("FillCbDB")) QVERIFY(!connection.FillCbDB(combo));
    if (procedure == QStringLiteral("FillCbTable"))
        QVERIFY(!connection.FillCbTable(combo, QStringLiteral("Stock")));
    if (procedure == QStringLiteral("FillCbColumn")) {
        connection.FillCbColumn(
            combo, QStringLiteral("Odd Names"),
            password == QStringLiteral("clerk") ? QStringLiteral("Bob's bikes") : QStringLiteral("Bikes"));
    }
    QCOMPARE(combo.count(), 0);
    const QString text = answers.takeBox().text;
    QVERIFY2(text.startsWith(head), qUtf8Printable(text));
    QCOMPARE(text.contains(QStringLiteral("User ID and Password")), loginHint);
    QVERIFY2(text.endsWith(QStringLiteral("Debug Information: Error occured in subroutine %1 of module "
                                          "DBConnection.cls.     \r\n\r\n")
                               .arg(procedure)),
             qUtf8Printable(text));
}

void TestCatalog::tellsLackOfPermission_data() {
    const testsupport::Table<QString> row("database");
    row("closed to the login", "Payroll");
    row("unknown", "Nowhere");
}

void TestCatalog::tellsLackOfPermission() {
    QFETCH(QString, database);
    testsupport::Answers answers;
    ComboItems combo;
    QVERIFY(!clerk().FillCbTable(combo, database));
    QCOMPARE(combo.count(), 0);
    const auto box = answers.takeBox();
    QCOMPARE(box.text, QStringLiteral("You don't have permission to access this database.       \r\n"
                                      "Please contact your Database Administrator.     "));
    QCOMPARE(box.icon, desktop::MsgBoxIcon::Exclamation);
    QCOMPARE(box.title, QCoreApplication::applicationName());
}

QTEST_GUILESS_MAIN(TestCatalog)
#include "test_catalog.moc"
