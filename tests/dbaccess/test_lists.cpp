#include "dbaccess/dbconnection.h"
#include "platform/ado/connection.h"
#include "platform/controls/keyedtexts.h"
#include "platform/controls/listitems.h"
#include "support/answers.h"
#include "support/rowtexts.h"
#include "support/sampleserverprocess.h"
#include "support/table.h"

#include <QTest>

using controls::KeyedTexts;
using controls::ListItems;
using testsupport::headersOf;
using testsupport::rowsOf;

static const QString Listing = QStringLiteral("Listing");

/// The lists of columns, rows and database details over the real driver and wire.
class TestLists : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void columns_data();
    void columns();
    void foreignKeysOfOneColumn();
    void rows_data();
    void rows();
    void details_data();
    void details();
    void leavesListsEmpty_data();
    void leavesListsEmpty();

  private:
    tw::DBConnection connectionOf(const QString& user) const;

    testsupport::RunningSampleServer m_server{{QStringLiteral("--script"), QFINDTESTDATA("browsing.sql")}};
};

tw::DBConnection TestLists::connectionOf(const QString& user) const {
    tw::DBConnection connection;
    connection.setConnectionString(
        m_server.connectionString(user, user == QStringLiteral("sa") ? QString() : user));
    return connection;
}

void TestLists::columns_data() {
    const testsupport::Table<QString, QStringList> row("table", "items");

    row("key over two columns", "Region", {"5 Land|Char(2)", "5 Code|Smallint"});
    row("identity", "Person", {"5 Id|Integer"});
    row("foreign keys: of one over two columns the first", "Deal",
        {"CustID|Integer||Yes", "Land|Char(2)|Yes|Yes", "Code|Smallint|Yes", "Amount|Money|Yes"});
    row("types", "Kinds",
        {"a|Char(10)|Yes", "b|Varchar(8000)", "c|nChar(2)|Yes", "d|nVarChar(100)|Yes", "e|nText|Yes",
         "f|Text|Yes", "g|Integer", "h|Datetime|Yes", "i|Decimal|Yes", "j|Uniqueidentifier|Yes",
         "k|Image|Yes", "l|Bit"});
}

void TestLists::columns() {
    QFETCH(QString, table);
    ListItems list;
    list.addItem(u"left over");
    const testsupport::Answers answers;
    connectionOf(QStringLiteral("sa")).FillLvTblDef(list, Listing, table);
    QTEST(rowsOf(list), "items");
}

void TestLists::foreignKeysOfOneColumn() {
    ado::Connection connection;
    connection.setConnectionString(connectionOf(QStringLiteral("sa")).getConnectionString() +
                                   QStringLiteral(";Database=Listing"));
    connection.Open();
    KeyedTexts keys;
    keys.add(QStringLiteral("left over"), QStringLiteral("left over"));
    QVERIFY(tw::DBConnection().FindTableForeignKey(connection, QStringLiteral("Deal"), keys));
    QCOMPARE(keys.count(), 3);
    const QStringList referenced{keys.item(QStringLiteral("CustID")), keys.item(QStringLiteral("CustID2"))};
    QVERIFY(referenced.contains(QStringLiteral("Person.Id")) &&
            referenced.contains(QStringLiteral("Company.Id")));
    QCOMPARE(keys.item(QStringLiteral("Land")), QStringLiteral("Region.Land"));
    QVERIFY(tw::DBConnection().FindTablePrimaryKey(connection, QStringLiteral("Deal"), keys));
    QCOMPARE(keys.count(), 0);
}

void TestLists::rows_data() {
    const testsupport::Table<QString, QString, int, QString, QStringList, QString> row(
        "user", "table", "most", "headers", "items", "caption");

    const QString kinds = QStringLiteral("a|b|c|d|e|f|g|h|i|j|k|l");
    const QString first =
        QStringLiteral("<NULL>||x||<NULL>|long|-1|1999-12-31 23:59:59.500|12.50|<NULL>|<UNPRINTABLE>|True");
    const QString second =
        QStringLiteral("a         |b|<NULL>|d|e|<NULL>|0|2000-01-01 00:00:00|0.00|<NULL>|<NULL>|False");
    row("all rows", "sa", "Kinds", 0, kinds, {first, second},
        "Table: Kinds.  Total rows: 2.  Selected rows: 2");
    row("limit", "sa", "Kinds", 1, kinds, {first}, "Table: Kinds.  Total rows: 2.  Selected rows: 1");
    row("no rows", "sa", "Nothing", 50, "a|b", {"<No Data>"},
        "Table: Nothing.  Total rows: 0.  Selected rows: 0");
    row("another owner's table", "sa", "Notes", 50, "Text", {"hers"},
        "Table: Notes.  Total rows: 1.  Selected rows: 1");
    row("one's own table", "maria", "Notes", 50, "Text", {"hers"},
        "Table: Notes.  Total rows: 1.  Selected rows: 1");
}

void TestLists::rows() {
    QFETCH(QString, user);
    QFETCH(QString, table);
    QFETCH(int, most);
    ListItems list;
    list.addHeader(QStringLiteral("left over"));
    list.addItem(u"left over");
    const testsupport::Answers answers;
    QTEST(connectionOf(user).FillLvTblData(list, Listing, table, most), "caption");
    QTEST(headersOf(list).join(u'|'), "headers");
    QTEST(rowsOf(list), "items");
}

void TestLists::details_data() {
    const testsupport::Table<QString, QString, QString, QStringList> row("user", "database", "headers",
                                                                         "items");
    const QString headers = QStringLiteral(
        "Constraint Table|Constraint Name|Constraint Check|Indexed Table|Index Name|Index Column|"
        "Foreign Key Name|Foreign Table|Foreign Column|Reference Table|Reference Column");
    row("groups side by side", "sa", "Listing", headers,
        {"Deal|CK_Deal_Amount|(Amount > 0)|Company|PK_Company|Id|FK_Deal_Person|Deal|CustID|Person|Id",
         "|||Deal|IX_Deal_Place|Land|FK_Deal_Company|Deal|CustID|Company|Id",
         "|||||Code|FK_Deal_Region|Deal|Land|Region|Land",
         "|||Person|PK_Person|Id|FK_Deal_Region|Deal|Code|Region|Code", "|||Region|PK_Region|Land",
         "|||||Code"});
    row("more checks than index columns", "sa", "Checks", headers,
        {"Form|CK_Form_1|(a > 1)|Form|IX_Form|a", "Form|CK_Form_2|(a > 2)|||b", "Form|CK_Form_3|(a > 3)",
         "Form|CK_Form_4|(a > 4)", "Form|CK_Form_5|(a > b)"});
    row("nothing", "sa", "Bare", headers, {});
    row("closed", "clerk", "Payroll", "", {"<No Permission>"});
}

void TestLists::details() {
    QFETCH(QString, user);
    QFETCH(QString, database);
    ListItems list;
    list.addHeader(QStringLiteral("left over"));
    const testsupport::Answers answers;
    QCOMPARE(connectionOf(user).FillLvDBDetail(list, database),
             QStringLiteral("Constraints, Indexes and Foreign keys definitions in ") + database +
                 QStringLiteral(" database"));
    QTEST(headersOf(list).join(u'|'), "headers");
    QTEST(rowsOf(list), "items");
}

void TestLists::leavesListsEmpty_data() {
    const testsupport::Table<QString, QString, QStringList, QStringList, QString> row(
        "database", "table", "definition", "reportedBy", "beginning");
    const QString notSent = QStringLiteral("Error: -2147217900.\r\nSyntax error: the name holds ");
    const QStringList noColumn{"<No Column Defined>"};
    row("no connection", "<No Connection>", "Kinds", {}, {}, "");
    row("no permission", "Listing", "<No Permission>", {}, {}, "");
    row("a quote in the name", "Listing", "It's", {}, {"FillLvTblDef", "FillLvTblData"}, notSent.arg("It's"));
    row("a bracket that would end the name", "Listing", "Kinds] where 1=0 --", noColumn, {"FillLvTblData"},
        notSent.arg("Kinds] where 1=0 --"));
    row("a table that is gone", "Listing", "Gone", noColumn, {"FillLvTblData"}, "Error: -2147217865.");
}

void TestLists::leavesListsEmpty() {
    QFETCH(QString, database);
    QFETCH(QString, table);
    QFETCH(QStringList, reportedBy);
    QFETCH(QString, beginning);
    QFETCH(QStringList, definition);
    tw::DBConnection connection = connectionOf(QStringLiteral("sa"));
    ListItems list;
    list.addItem(u"left over");
    testsupport::Answers answers;
    connection.FillLvTblDef(list, database, table);
    QCOMPARE(rowsOf(list), definition);
    list.addItem(u"left over");
    QCOMPARE(connection.FillLvTblData(list, database, table, 50), QString());
    QCOMPARE(list.count(), 0);
    for (const QString& procedure : reportedBy) {
        const QString text = answers.takeBox().text;
        QVERIFY2(text.startsWith(beginning), qUtf8Printable(text));
        QVERIFY(text.contains(QStringLiteral("subroutine %1 of module DBConnection.cls.").arg(procedure)));
    }
}

QTEST_GUILESS_MAIN(TestLists)
#include "test_lists.moc"
