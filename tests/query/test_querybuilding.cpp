#include "querydesk.h"
#include "support/answers.h"
#include "support/captions.h"
#include "support/sampleserverprocess.h"
#include "support/table.h"

using testsupport::Table;

/// Putting a query together: what the lists offer, what a choice does to the texts, the boxes for numbers.
class TestQueryBuilding : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void begins();
    void captions();
    void picksColumns_data();
    void picksColumns();
    void picksTables_data();
    void picksTables();
    void picksConditions();
    void picksOperators();
    void refillsLists();
    void keepsNothingOfAClosedDatabase();
    void picksOnlyInTheOpenList();
    void resets();
    void numberBoxes_data();
    void numberBoxes();
    void damagedSettings();
    void tabFollowsTheReadingDirection();

  private:
    testsupport::RunningSampleServer m_server;
};

namespace {

const QString Clerk = QStringLiteral("uid=clerk;pwd=clerk");
const QString Workshop = QStringLiteral("Workshop");
const QString Mechanic = QStringLiteral("Mechanic");

}  // namespace

void TestQueryBuilding::begins() {
    const testsupport::Answers noBoxes;
    const QueryDesk desk(m_server.serverText());
    QVERIFY(desk.entries("cbDatabase").contains(Workshop));
    QVERIFY(!desk.entries("cbDatabase").contains(QStringLiteral("master")));
    for (const char* list : {"cbDatabase", "cbTable", "cbColumn", "cbConditionTable", "cbConditionColumn",
                             "cbConditionOperator"})
        QCOMPARE(desk.list(list).currentIndex(), -1);
    QCOMPARE(desk.text("txtColumns"), QStringLiteral("SELECT *"));
    QCOMPARE(desk.text("txtTables"), QString());
    QCOMPARE(desk.text("txtWhereClause"), QString());
    QCOMPARE(desk.number("txtMaxRows").text(), QStringLiteral("50"));
    QCOMPARE(desk.number("txtTimeout").text(), QStringLiteral("15"));
    QCOMPARE(desk.page(), 0);
    QCOMPARE(desk.window->focusWidget(), &desk.list("cbDatabase"));
    QCOMPARE(desk.entries("cbConditionOperator").join(u'|'),
             QStringLiteral("= (equals)|> (greater than)|< (less than)|<= (less than or equal to)|"
                            ">= (greater than or equal to)|!= (not equal to)|<> (not equal to)|"
                            "!< (not less than)|!> (not greater than)|LIKE |BETWEEN |AND |OR |NOT "));
}

void TestQueryBuilding::captions() {
    const QueryDesk desk(m_server.serverText());
    const QStringList shown = testsupport::captionsOf(*desk.window);
    for (const char* caption :
         {"fmeSelectionSource:  Column Selection Source (Required) ",
          "frmConditionSource:  Condition Source (Optional) ", "fmeQueryString:  Query (Editable) ",
          "lblDataBase: Database", "lblTable: Table ", "lblColumn: Column ", "lblConditionTable: Table ",
          "lblConditionColumn: Column ", "lblConditionOperator: Operator ", "lblColumns: Columns",
          "lblTables: Tables", "lblQuery: Conditions ",
          "Label1: Waring: Setting the maximum number of rows returned to 0 (zero) means all rows will be "
          "returned.  This  may cause the system to take a long time to response to a complex query.",
          "Label2: Warning: Setting the query timeout to 0 (zero) forces the system to wait for the response "
          "from the server indefinately."})
        QVERIFY2(shown.contains(QString::fromLatin1(caption)), caption);
}

void TestQueryBuilding::picksColumns_data() {
    const Table<QString, QString, QString> row("before", "column", "after");
    row("first", "SELECT *", "Name", "SELECT [Mechanic].[Name]");
    row("into an empty box", "", "Name", "SELECT [Mechanic].[Name]");
    row("further", "SELECT [a].[b]", "Name", "SELECT [a].[b], [Mechanic].[Name]");
    row("all of another case are not replaced", "select *", "Name", "select *, [Mechanic].[Name]");
    row("the same again", "SELECT [Mechanic].[Name]", "Name", "SELECT [Mechanic].[Name], [Mechanic].[Name]");
    row("all", "SELECT [a].[b]", "(All Columns)", "SELECT *");
}

void TestQueryBuilding::picksColumns() {
    QFETCH(QString, before);
    QFETCH(QString, column);
    const QueryDesk desk(m_server.serverText());
    QVERIFY(desk.pick("cbDatabase", Workshop));
    QVERIFY(desk.pick("cbTable", Mechanic));
    QCOMPARE(desk.entries("cbColumn").join(u'|'),
             QStringLiteral("(All Columns)|MechanicId|Name|BossId|HiredOn|HourlyRate|Photo"));
    desk.write("txtColumns", before);
    QVERIFY(desk.pick("cbColumn", column));
    QTEST(desk.text("txtColumns"), "after");
}

void TestQueryBuilding::picksTables_data() {
    const testsupport::Table<QString, QStringList, QString> row("database", "tables", "after");
    row("the same twice", "Workshop", {Mechanic, Mechanic}, "FROM [Mechanic]");
    row("two", "Workshop", {Mechanic, QStringLiteral("Customer")}, "FROM [Mechanic], [Customer]");
    row("a name with brackets", "Odd Names", {QStringLiteral("a]b")}, "FROM [a]b]");
    row("a name with a quote", "Odd Names", {QStringLiteral("quoted \"name\"")}, "FROM [quoted \"name\"]");
    row("owned by others", "Odd Names", {QStringLiteral("to do")}, "FROM [to do]");
}

void TestQueryBuilding::picksTables() {
    QFETCH(QString, database);
    QFETCH(QStringList, tables);
    const testsupport::Answers noBoxes;
    for (const char* list : {"cbTable", "cbConditionTable"}) {
        const QueryDesk desk(m_server.serverText());
        QVERIFY(desk.pick("cbDatabase", database));
        for (const QString& table : tables)
            QVERIFY(desk.pick(list, table));
        QTEST(desk.text("txtTables"), "after");
    }
}

void TestQueryBuilding::picksConditions() {
    const QueryDesk desk(m_server.serverText());
    QVERIFY(desk.pick("cbDatabase", Workshop));
    QVERIFY(desk.pick("cbTable", Mechanic));
    QVERIFY(desk.pick("cbConditionTable", QStringLiteral("LoyaltyCard")));
    QCOMPARE(desk.entries("cbConditionColumn").join(u'|'), QStringLiteral("CardNo|CustomerId|Points"));
    QCOMPARE(desk.entries("cbColumn").value(1), QStringLiteral("MechanicId"));
    QVERIFY(desk.pick("cbConditionColumn", QStringLiteral("Points")));
    QVERIFY(desk.pick("cbConditionOperator", QStringLiteral("BETWEEN ")));
    QVERIFY(desk.pick("cbConditionColumn", QStringLiteral("CustomerId")));
    QCOMPARE(desk.text("txtWhereClause"),
             QStringLiteral("WHERE [LoyaltyCard].[Points] BETWEEN [LoyaltyCard].[CustomerId]"));
    // A pick can be taken back, what stood there at first cannot.
    desk.find<QPlainTextEdit>("txtColumns").undo();
    QCOMPARE(desk.text("txtColumns"), QStringLiteral("SELECT *"));
    desk.find<QPlainTextEdit>("txtWhereClause").undo();
    QCOMPARE(desk.text("txtWhereClause"), QStringLiteral("WHERE [LoyaltyCard].[Points] BETWEEN "));
}

void TestQueryBuilding::picksOperators() {
    const QueryDesk desk(m_server.serverText());
    QString expected = QStringLiteral("x");
    desk.write("txtWhereClause", expected);
    for (const QString& entry : desk.entries("cbConditionOperator")) {
        for (int twice = 0; twice < 2; ++twice)
            QVERIFY(desk.pick("cbConditionOperator", entry));
        const QString sign = entry.left(entry.indexOf(u' '));
        expected += QStringLiteral(" %1  %1 ").arg(sign);
    }
    QCOMPARE(desk.text("txtWhereClause"), expected);
}

void TestQueryBuilding::refillsLists() {
    const QueryDesk desk(m_server.serverText());
    QVERIFY(desk.pick("cbDatabase", Workshop));
    QVERIFY(desk.pick("cbTable", Mechanic));
    QVERIFY(desk.pick("cbConditionTable", Mechanic));
    QVERIFY(desk.pick("cbColumn", QStringLiteral("Name")));
    QVERIFY(desk.pick("cbTable", QStringLiteral("LoyaltyCard")));
    QCOMPARE(desk.list("cbColumn").currentIndex(), -1);
    QCOMPARE(desk.entries("cbColumn").join(u'|'), QStringLiteral("(All Columns)|CardNo|CustomerId|Points"));

    QVERIFY(desk.pick("cbDatabase", QStringLiteral("Payroll")));
    const QStringList tables{QStringLiteral("Employee"), QStringLiteral("Wage")};
    for (const char* list : {"cbTable", "cbConditionTable"}) {
        QCOMPARE(desk.entries(list), tables);
        QCOMPARE(desk.list(list).currentIndex(), -1);
    }
    QCOMPARE(desk.entries("cbColumn"), QStringList());
    QCOMPARE(desk.entries("cbConditionColumn"), QStringList());
    // What is written is the user's.
    QCOMPARE(desk.text("txtColumns"), QStringLiteral("SELECT [Mechanic].[Name]"));
    QCOMPARE(desk.text("txtTables"), QStringLiteral("FROM [Mechanic], [LoyaltyCard]"));
}

void TestQueryBuilding::keepsNothingOfAClosedDatabase() {
    testsupport::Answers answers;
    const QueryDesk desk(m_server.serverText(), Clerk);
    QVERIFY(desk.pick("cbDatabase", Workshop));
    QVERIFY(desk.pick("cbTable", Mechanic));
    QVERIFY(desk.pick("cbDatabase", QStringLiteral("Payroll")));
    QVERIFY(answers.takeBox().text.startsWith(QStringLiteral("You don't have permission")));
    for (const char* list : {"cbTable", "cbColumn", "cbConditionTable", "cbConditionColumn"})
        QCOMPARE(desk.entries(list), QStringList());
}

void TestQueryBuilding::picksOnlyInTheOpenList() {
    const QueryDesk desk(m_server.serverText());
    QVERIFY(desk.pick("cbDatabase", Workshop));
    QComboBox& box = desk.list("cbTable");
    QWheelEvent wheel(QPointF(5, 5), box.mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -120), Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&box, &wheel);
    QCOMPARE(box.currentIndex(), -1);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_End}) {
        QTest::keyClick(&box, key);
        QTRY_VERIFY(box.view()->isVisible());
        QTest::keyClick(box.view(), Qt::Key_Escape);
        QTRY_VERIFY(!box.view()->isVisible());
    }
    QCOMPARE(desk.text("txtTables"), QString());

    QTest::keyClicks(&box, QStringLiteral("m"));
    QTest::keyClick(box.view(), Qt::Key_Return);
    QCOMPARE(desk.text("txtTables"), QStringLiteral("FROM [Mechanic]"));
}

void TestQueryBuilding::resets() {
    const QueryDesk desk(m_server.serverText());
    QVERIFY(desk.pick("cbDatabase", Workshop));
    QVERIFY(desk.pick("cbTable", Mechanic));
    QVERIFY(desk.pick("cbColumn", QStringLiteral("Name")));
    QVERIFY(desk.pick("cbConditionTable", Mechanic));
    QVERIFY(desk.pick("cbConditionColumn", QStringLiteral("Name")));
    QVERIFY(desk.pick("cbConditionOperator", QStringLiteral("LIKE ")));
    desk.find<QTabWidget>("tsQuery").setCurrentIndex(1);
    desk.press("cmdReset");
    QCOMPARE(desk.page(), 0);
    QCOMPARE(desk.text("txtColumns"), QStringLiteral("SELECT *"));
    QCOMPARE(desk.text("txtTables") + desk.text("txtWhereClause"), QString());
    for (const char* list :
         {"cbTable", "cbColumn", "cbConditionTable", "cbConditionColumn", "cbConditionOperator"})
        QCOMPARE(desk.list(list).currentIndex(), -1);
    for (const char* list : {"cbColumn", "cbConditionColumn"})
        QCOMPARE(desk.entries(list), QStringList());
    QCOMPARE(desk.list("cbDatabase").currentText(), Workshop);
    QVERIFY(desk.pick("cbTable", Mechanic));
}

void TestQueryBuilding::numberBoxes_data() {
    const Table<QString, QString, QString> row("typed", "shown", "saved");
    row("number", "120", "120", "120");
    row("zero", "0", "0", "0");
    row("largest", "2147483647", "2147483647", "2147483647");
    row("emptied", "", "", "7");
    row("letter at first", "x", "7", "7");
    row("sign", "-", "7", "7");
    row("letter later", "12x", "12", "12");
    row("fraction", "3.", "3", "3");
    row("too large", "2147483648", "214748364", "214748364");
}

void TestQueryBuilding::numberBoxes() {
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    testsupport::Answers answers;
    for (const auto& [name, key] :
         {std::pair("txtMaxRows", "QueryMaxRows"), {"txtTimeout", "QueryTimeOut"}}) {
        QueryDesk desk(m_server.serverText());
        desk.state.saveSetting(QString::fromLatin1(key), QStringLiteral("7"));
        desk.open();
        QLineEdit& box = desk.number(name);
        QCOMPARE(box.text(), QStringLiteral("7"));
        box.setFocus();
        box.selectAll();
        QTest::keyClick(&box, Qt::Key_Delete);
        QTest::keyClicks(&box, typed);
        QCOMPARE(box.text(), shown);
        QTEST(desk.state.setting(QString::fromLatin1(key), {}), "saved");
        if (shown == typed) continue;
        const auto refusal = answers.takeBox();
        QCOMPARE(refusal.text, QStringLiteral("Please enter numeric data"));
        QCOMPARE(refusal.icon, desktop::MsgBoxIcon::Exclamation);
    }
}

void TestQueryBuilding::damagedSettings() {
    QueryDesk desk(m_server.serverText());
    desk.state.saveSetting(QStringLiteral("QueryMaxRows"), QStringLiteral("many"));
    desk.state.saveSetting(QStringLiteral("QueryTimeOut"), QStringLiteral("-1"));
    desk.open();
    QCOMPARE(desk.number("txtMaxRows").text(), QStringLiteral("50"));
    QCOMPARE(desk.number("txtTimeout").text(), QStringLiteral("15"));
}

void TestQueryBuilding::tabFollowsTheReadingDirection() {
    const QueryDesk desk(m_server.serverText());
    QVERIFY(QTest::qWaitForWindowActive(desk.window.get()));
    QStringList passed;
    for (int i = 0; i < 14; ++i) {
        passed += desk.window->focusWidget()->objectName();
        QTest::keyClick(desk.window->focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(passed.join(u' '),
             QStringLiteral("cbDatabase cbTable cbColumn cbConditionTable cbConditionColumn "
                            "cbConditionOperator txtColumns txtTables txtWhereClause txtMaxRows txtTimeout "
                            "cmdExecute cmdReset cmdClose"));
}

QTEST_MAIN(TestQueryBuilding)
#include "test_querybuilding.moc"
