#include "dbaccess/dbconnection.h"
#include "platform/controls/listitems.h"
#include "platform/controls/nodes.h"
#include "support/answers.h"
#include "support/relay.h"
#include "support/sampleserverprocess.h"
#include "support/table.h"

#include <QRegularExpression>
#include <QTest>

#include <functional>

using controls::ListItems;

/// What the lists ask for and get on the wire, and what becomes of them when the line breaks.
class TestWire : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void init() { m_relay->reset(); }
    void serverSendsNoMoreThanShown_data();
    void serverSendsNoMoreThanShown();
    void roundTrips_data();
    void roundTrips();
    void roundTripsOfTree();
    void triesOwnersInOrder_data();
    void triesOwnersInOrder();
    void treeTellsWhatIsMissing_data();
    void treeTellsWhatIsMissing();
    void lineBreaks_data();
    void lineBreaks();

  private:
    enum Routine { Definition, Rows, Details };
    /// Returns the caption.
    QString fill(Routine routine, ListItems& list);
    tw::DBConnection connection() const;

    testsupport::SampleServerProcess m_server;
    std::unique_ptr<testsupport::Relay> m_relay;
};

namespace {

const QString Large = QStringLiteral("Large");    ///< one table of many rows
const QString Large2 = QStringLiteral("Large2");  ///< many tables
const QString Table = QStringLiteral("Table0001");
/// Stands once in each row of the table, in a column of single-byte characters that is never null.
const QByteArray RowMark = QByteArrayLiteral(
    "gr\xf6\xdf"
    "er");
constexpr int RowCount = 10000;
constexpr int TurnsOfLogin = 2;

QByteArray wide(const char* text) {
    const QString characters = QString::fromLatin1(text);
    return QByteArray(reinterpret_cast<const char*>(characters.utf16()), characters.size() * 2);
}

QStringList takeProcedures(testsupport::Answers& answers) {
    static const QRegularExpression words(
        QStringLiteral("subroutine (\\w+) of module DBConnection\\.cls\\."));
    QStringList procedures;
    while (answers.boxes() > 0)
        procedures += words.match(answers.takeBox().text).captured(1);
    return procedures;
}

}  // namespace

void TestWire::initTestCase() {
    const QStringList large{QStringLiteral("--large"), QStringLiteral("1,4,%1").arg(RowCount),
                            QStringLiteral("--large"), QStringLiteral("300,4,1")};
    QVERIFY2(m_server.start(large), qUtf8Printable(m_server.errorText()));
    m_relay = std::make_unique<testsupport::Relay>(m_server.port());
}

tw::DBConnection TestWire::connection() const {
    tw::DBConnection connection;
    connection.setConnectionString(testsupport::connectionString(m_relay->serverText()));
    return connection;
}

QString TestWire::fill(Routine routine, ListItems& list) {
    switch (routine) {
        case Definition:
            connection().FillLvTblDef(list, Large, Table);
            return {};
        case Rows:
            return connection().FillLvTblData(list, Large, Table, 0);
        case Details:
            return connection().FillLvDBDetail(list, Large2);
    }
    return {};
}

void TestWire::serverSendsNoMoreThanShown_data() {
    const testsupport::Table<int, int, QStringList> row("most", "sent", "limits");
    const QStringList none;
    row("50 of them", 50, 50, {"SET ROWCOUNT 50"});
    row("one", 1, 1, {"SET ROWCOUNT 1"});
    row("more than there are", RowCount + 1, RowCount, {"SET ROWCOUNT 10001"});
    row("all", 0, RowCount, none);
}

void TestWire::serverSendsNoMoreThanShown() {
    QFETCH(int, most);
    QFETCH(int, sent);
    QFETCH(QStringList, limits);
    const testsupport::Answers answers;
    ListItems list;
    QCOMPARE(connection().FillLvTblData(list, Large, Table, most),
             QStringLiteral("Table: Table0001.  Total rows: 10000.  Selected rows: %1").arg(sent));
    QCOMPARE(list.count(), sent);
    QCOMPARE(m_relay->sent(RowMark), sent);
    QCOMPARE(m_relay->batches(),
             QStringList({"sp_columns 'Table0001'", "sp_helpuser", "Select count(*) as x from [Table0001]"}) +
                 limits + QStringList{"select * from [Table0001]"});
    QCOMPARE(m_relay->turns(), TurnsOfLogin + m_relay->batches().size());
}

void TestWire::roundTrips_data() {
    const testsupport::Table<int, int> row("routine", "turns");
    row("definition", Definition, TurnsOfLogin + 3);
    row("details", Details, 3 * TurnsOfLogin + 3);
}

/// Nothing is asked twice, however far away the server is.
void TestWire::roundTrips() {
    QFETCH(int, routine);
    const testsupport::Answers answers;
    ListItems list;
    fill(static_cast<Routine>(routine), list);
    QTEST(int(m_relay->turns()), "turns");
}

void TestWire::roundTripsOfTree() {
    const testsupport::Answers answers;
    controls::Nodes tree;
    QVERIFY(connection().FillTvDB(tree));
    const int databases = tree.rowCount(tree.index(0, 0));
    QVERIFY(databases > 1);
    QCOMPARE(m_relay->turns(), (1 + databases) * (TurnsOfLogin + 1));
}

void TestWire::triesOwnersInOrder_data() {
    const testsupport::Table<QString, QStringList, QStringList> row("table", "tried", "procedures");
    // Users in the order of sp_helpuser, which names Maria once for each of her roles.
    const QStringList none;
    row("no owner needed", "Notes", {"[Notes]"}, none);
    row("the second owner's", "Sketches", {"[Sketches]", "[dbo].[Sketches]", "[maria].[Sketches]"}, none);
    row("the last owner's", "to do", {"[to do]", "[dbo].[to do]", "[maria].[to do]", "[shop clerk].[to do]"},
        none);
    row("nobody's", "gone", {"[gone]", "[dbo].[gone]", "[maria].[gone]", "[shop clerk].[gone]"},
        {"FillLvTblData"});
    row("a bracket in the name", "a]b", none, {"FillLvTblData"});
}

void TestWire::triesOwnersInOrder() {
    QFETCH(QString, table);
    QFETCH(QStringList, tried);
    testsupport::Answers answers;
    ListItems list;
    connection().FillLvTblData(list, QStringLiteral("Odd Names"), table, 50);
    QTEST(takeProcedures(answers), "procedures");
    QStringList counted = m_relay->batches().filter(QStringLiteral("count(*)"));
    for (QString& text : counted)
        text.remove(QStringLiteral("Select count(*) as x from "));
    QCOMPARE(counted, tried);
    QVERIFY(list.headerCount() > 0);
}

void TestWire::treeTellsWhatIsMissing_data() {
    const testsupport::Table<QByteArray, QString, QString> row("mark", "above", "marker");
    row("line lost among the databases", wide("Large2"), "R", "<No Connection>");
    row("line lost among the tables", wide("Table0250"), Large2, "<No Permission>");
}

void TestWire::treeTellsWhatIsMissing() {
    QFETCH(QByteArray, mark);
    QFETCH(QString, above);
    const testsupport::Answers answers;
    m_relay->cutAt(mark, 1);
    controls::Nodes tree;
    QVERIFY(connection().FillTvDB(tree));
    const controls::Node* node = tree.find(above);
    QVERIFY(node && !node->children.empty());
    QVERIFY(node->children.size() < 250);
    QTEST(node->children.back()->text, "marker");
}

void TestWire::lineBreaks_data() {
    const testsupport::Table<int, QByteArray, int, QStringList, int, int, int> row(
        "routine", "mark", "times", "procedures", "headers", "fewest", "most");
    const QByteArray login = wide("Large");  // the new database is told at the end of the login
    row("rows, at the login", Rows, login, 1, {"FillLvTblData"}, 0, 0, 0);
    row("rows, in the columns", Rows, wide("Code4"), 1, {"FillLvTblData"}, 0, 0, 0);
    row("rows, in the owners", Rows, wide("db_owner"), 1, {"FillLvTblData"}, 4, 0, 0);
    row("rows, half-way", Rows, RowMark, RowCount / 2, {"FillLvTblData"}, 4, 1000, RowCount / 2 - 1);
    row("definition, at the login", Definition, login, 1, {"FillLvTblDef"}, 0, 0, 0);
    row("definition, in the columns", Definition, wide("Code4"), 1, {"FillLvTblDef"}, 0, 0, 0);
    // The columns have come; each look-up reports for itself.
    row("definition, in the primary key", Definition, wide("ColName"), 1,
        {"FindTablePrimaryKey", "FindTableForeignKey"}, 0, 4, 4);
    row("definition, in the foreign keys", Definition, wide("RefTableName"), 1, {"FindTableForeignKey"}, 0, 4,
        4);
    // Indistinguishable from a closed database.
    row("details, at the login", Details, login, 1, {}, 0, 1, 1);
    row("details, before any row", Details, wide("CK_Table0001"), 1, {"FillLvDBDetail"}, 0, 0, 0);
    row("details, half-way", Details, wide("FK_Table0250"), 1, {"FillLvDBDetail"}, 11, 1, 249);
}

void TestWire::lineBreaks() {
    QFETCH(int, routine);
    QFETCH(QByteArray, mark);
    QFETCH(int, times);
    QFETCH(int, fewest);
    QFETCH(int, most);
    testsupport::Answers answers;
    m_relay->cutAt(mark, times);
    ListItems list;
    list.addItem(u"left over");
    const QString caption = fill(static_cast<Routine>(routine), list);
    QTEST(takeProcedures(answers), "procedures");
    QTEST(list.headerCount(), "headers");
    QVERIFY2(list.count() >= fewest && list.count() <= most, qPrintable(QString::number(list.count())));
    QVERIFY(list.count() == 0 || list.text(0) != QStringLiteral("left over"));
    QCOMPARE(caption.isEmpty(), routine != Details);

    // The next click finds the line mended.
    m_relay->reset();
    fill(static_cast<Routine>(routine), list);
    const int whole = routine == Definition ? 4 : routine == Rows ? RowCount : 300;
    QVERIFY(list.count() >= whole);
}

QTEST_GUILESS_MAIN(TestWire)
#include "test_wire.moc"
