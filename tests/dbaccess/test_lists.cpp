#include "dbaccess/dbconnection.h"
#include "platform/ado/connection.h"
#include "platform/controls/keyedtexts.h"
#include "platform/controls/listitems.h"
#include "support/answers.h"
#include "support/sampleserverprocess.h"

#include <QTest>

using controls::KeyedTexts;
using controls::ListItems;

/// The lists of columns, rows and database details over the real driver and wire.
class TestLists : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void columns_data();
    void columns();
    void foreignKeysOfOneColumn();
    void rows_data();
    void rows();
    void details_data();
    void details();
    void markersLeaveListsEmpty_data();
    void markersLeaveListsEmpty();
    void reportsFailure_data();
    void reportsFailure();

  private:
    tw::DBConnection connectionOf(const QString& user) const;

    testsupport::SampleServerProcess m_server;
};

namespace {

const QString Listing = QStringLiteral("Listing");

QString headersOf(const ListItems& list) {
    QStringList headers;
    for (int column = 0; column < list.headerCount(); ++column)
        headers += list.header(column);
    return headers.join(u'|');
}

/// One text per item: its texts up to the last that is not empty, joined by bars, and its picture if any.
QStringList itemsOf(const ListItems& list, int columns) {
    QStringList items;
    for (int item = 0; item < list.count(); ++item) {
        QString text = list.text(item);
        for (int column = 1; column < columns; ++column)
            text += u'|' + list.subItem(item, column);
        while (text.endsWith(u'|'))
            text.chop(1);
        if (list.icon(item) != 0) text += QStringLiteral(" #%1").arg(list.icon(item));
        items += text;
    }
    return items;
}

}  // namespace

void TestLists::initTestCase() {
    QVERIFY2(m_server.start({QStringLiteral("--script"), QFINDTESTDATA("browsing.sql")}),
             qUtf8Printable(m_server.errorText()));
}

tw::DBConnection TestLists::connectionOf(const QString& user) const {
    tw::DBConnection connection;
    const QString password = user == QStringLiteral("sa") ? QString() : user;
    connection.setConnectionString(QStringLiteral("driver={SQL Server};server=") + m_server.serverText() +
                                   QStringLiteral(";uid=") + user + QStringLiteral(";pwd=") + password);
    return connection;
}

void TestLists::columns_data() {
    QTest::addColumn<QString>("table");
    QTest::addColumn<QStringList>("items");

    QTest::newRow("key over two columns") << "Region" << QStringList{"Land|Char(2) #5", "Code|Smallint #5"};
    QTest::newRow("identity") << "Person" << QStringList{"Id|Integer #5"};
    QTest::newRow("foreign keys: of one over two columns the first")
        << "Deal"
        << QStringList{"CustID|Integer||Yes", "Land|Char(2)|Yes|Yes", "Code|Smallint|Yes",
                       "Amount|Money|Yes"};
    QTest::newRow("types") << "Kinds" << QStringList{"a|Char(10)|Yes", "b|Varchar(8000)",
                                                     "c|nChar(2)|Yes", "d|nVarChar(100)|Yes",
                                                     "e|nText|Yes",    "f|Text|Yes",
                                                     "g|Integer",      "h|Datetime|Yes",
                                                     "i|Decimal|Yes",  "j|Uniqueidentifier|Yes",
                                                     "k|Image|Yes",    "l|Bit"};
    QTest::newRow("unknown table") << "Gone" << QStringList{"<No Column Defined>"};
}

void TestLists::columns() {
    QFETCH(QString, table);
    ListItems list;
    list.addItem(u"left over");
    const testsupport::Answers answers;
    connectionOf(QStringLiteral("sa")).FillLvTblDef(list, Listing, table);
    QTEST(itemsOf(list, 4), "items");
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
}

void TestLists::rows_data() {
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("table");
    QTest::addColumn<int>("most");
    QTest::addColumn<QString>("headers");
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<QString>("caption");

    const QString kinds = QStringLiteral("a|b|c|d|e|f|g|h|i|j|k|l");
    const QString first =
        QStringLiteral("<NULL>||x||<NULL>|long|-1|1999-12-31 23:59:59.500|12.50|<NULL>|<UNPRINTABLE>|True");
    const QString second =
        QStringLiteral("a         |b|<NULL>|d|e|<NULL>|0|2000-01-01 00:00:00|0.00|<NULL>|<NULL>|False");
    QTest::newRow("all rows") << "sa"
                              << "Kinds" << 0 << kinds << QStringList{first, second}
                              << "Table: Kinds.  Total rows: 2.  Selected rows: 2";
    QTest::newRow("limit") << "sa"
                           << "Kinds" << 1 << kinds << QStringList{first}
                           << "Table: Kinds.  Total rows: 2.  Selected rows: 1";
    QTest::newRow("no rows") << "sa"
                             << "Nothing" << 50 << "a|b" << QStringList{"<No Data>"}
                             << "Table: Nothing.  Total rows: 0.  Selected rows: 0";
    QTest::newRow("another owner's table") << "sa"
                                           << "Notes" << 50 << "Text" << QStringList{"hers"}
                                           << "Table: Notes.  Total rows: 1.  Selected rows: 1";
    QTest::newRow("one's own table") << "maria"
                                     << "Notes" << 50 << "Text" << QStringList{"hers"}
                                     << "Table: Notes.  Total rows: 1.  Selected rows: 1";
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
    QTEST(headersOf(list), "headers");
    QTEST(itemsOf(list, list.headerCount()), "items");
}

void TestLists::details_data() {
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("database");
    QTest::addColumn<int>("headers");
    QTest::addColumn<QStringList>("items");

    QTest::newRow("groups side by side")
        << "sa"
        << "Listing" << 11
        << QStringList{
               "Deal|CK_Deal_Amount|(Amount > 0)|Company|PK_Company|Id|FK_Deal_Person|Deal|CustID|Person|Id",
               "|||Deal|IX_Deal_Place|Land|FK_Deal_Company|Deal|CustID|Company|Id",
               "|||||Code|FK_Deal_Region|Deal|Land|Region|Land",
               "|||Person|PK_Person|Id|FK_Deal_Region|Deal|Code|Region|Code",
               "|||Region|PK_Region|Land",
               "|||||Code"};
    QTest::newRow("more checks than index columns")
        << "sa"
        << "Checks" << 11
        << QStringList{"Form|CK_Form_1|(a > 1)|Form|IX_Form|a", "Form|CK_Form_2|(a > 2)|||b",
                       "Form|CK_Form_3|(a > 3)", "Form|CK_Form_4|(a > 4)", "Form|CK_Form_5|(a > b)"};
    QTest::newRow("nothing") << "sa"
                             << "Bare" << 11 << QStringList{};
    QTest::newRow("closed") << "clerk"
                            << "Payroll" << 0 << QStringList{"<No Permission>"};
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
    QTEST(list.headerCount(), "headers");
    QTEST(itemsOf(list, 11), "items");
}

void TestLists::markersLeaveListsEmpty_data() {
    QTest::addColumn<QString>("database");
    QTest::addColumn<QString>("table");
    QTest::newRow("no connection") << "<No Connection>"
                                   << "Kinds";
    QTest::newRow("no permission") << "Listing"
                                   << "<No Permission>";
}

void TestLists::markersLeaveListsEmpty() {
    QFETCH(QString, database);
    QFETCH(QString, table);
    tw::DBConnection unreachable;
    ListItems list;
    list.addItem(u"left over");
    const testsupport::Answers answers;
    unreachable.FillLvTblDef(list, database, table);
    QCOMPARE(list.count(), 0);
    list.addItem(u"left over");
    QCOMPARE(unreachable.FillLvTblData(list, database, table, 50), QString());
    QCOMPARE(list.count(), 0);
}

void TestLists::reportsFailure_data() {
    QTest::addColumn<QString>("table");
    QTest::addColumn<QStringList>("procedures");
    QTest::addColumn<QString>("beginning");
    const QString notSent = QStringLiteral("Error: -2147217900.\r\nSyntax error: the name \"%1\" holds ");
    QTest::newRow("a quote in the name") << "It's" << QStringList{"FillLvTblDef", "FillLvTblData"} << notSent;
    QTest::newRow("a bracket that would end the name")
        << "Kinds] where 1=0 --" << QStringList{"FillLvTblData"} << notSent;
    QTest::newRow("a table that is gone")
        << "Gone" << QStringList{"FillLvTblData"} << QStringLiteral("Error: -2147217865.");
}

void TestLists::reportsFailure() {
    QFETCH(QString, table);
    QFETCH(QStringList, procedures);
    QFETCH(QString, beginning);
    if (beginning.contains(QStringLiteral("%1"))) beginning = beginning.arg(table);
    tw::DBConnection connection = connectionOf(QStringLiteral("sa"));
    ListItems list;
    testsupport::Answers answers;
    connection.FillLvTblDef(list, Listing, table);
    connection.FillLvTblData(list, Listing, table, 50);
    for (const QString& procedure : procedures) {
        const QString text = answers.takeBox().text;
        QVERIFY2(text.startsWith(beginning) && text.contains(QStringLiteral("subroutine ") + procedure +
                                                             QStringLiteral(" of module DBConnection.cls.")),
                 qUtf8Printable(text));
    }
}

QTEST_GUILESS_MAIN(TestLists)
#include "test_lists.moc"
