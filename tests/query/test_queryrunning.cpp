#include "querydesk.h"
#include "support/answers.h"
#include "support/sampleserverprocess.h"
#include "support/table.h"

using testsupport::Table;

/// Running queries over the real driver and wire.
class TestQueryRunning : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void refusals_data();
    void refusals();
    void runs_data();
    void runs();
    void savesResult();
    void longStatementsAndTexts();
    void failures_data();
    void failures();
    void timeOut();
    void enterExecutes_data();
    void enterExecutes();
    void goesWhileAMessageIsOpen_data();
    void goesWhileAMessageIsOpen();

  private:
    /// Chooses a database and writes a query.
    void compose(const QueryDesk& desk, const QString& columns, const QString& tables,
                 const QString& conditions = {}) const;

    testsupport::RunningSampleServer m_server{{QStringLiteral("--script"), QFINDTESTDATA("querying.sql")}};
};

namespace {

const QString Querying = QStringLiteral("Querying");
const QString AllOf = QStringLiteral("SELECT *");
const QString Numbers = QStringLiteral("FROM [Number]");
const QString Waiting = QStringLiteral("FROM Number waitfor delay '0:0:5'");

/// The result's rows, cells between bars.
QStringList rowsOf(const QueryDesk& desk) {
    QStringList rows;
    for (int row = 0; row < desk.result().rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < desk.result().columnCount(); ++column)
            cells += desk.cell(row, column);
        rows += cells.join(u'|');
    }
    return rows;
}

}  // namespace

void TestQueryRunning::compose(const QueryDesk& desk, const QString& columns, const QString& tables,
                               const QString& conditions) const {
    QVERIFY(desk.pick("cbDatabase", Querying));
    desk.write("txtColumns", columns);
    desk.write("txtTables", tables);
    desk.write("txtWhereClause", conditions);
}

void TestQueryRunning::refusals_data() {
    const Table<QString, QString, QString, QString, QString> row("columns", "tables", "emptied", "text",
                                                                 "focus");  // the focus stays on the button
    const char* numbers = "FROM [Number]";
    const char* select = "Sorry, only select statements are allowed.";
    const char* numeric = "Please enter numeric data";
    // Everything that is wrong later on is wrong, too: the first reason counts.
    row("no database", "", "", "txtMaxRows", "Please select a database for the query.", "cbDatabase");
    row("no table", "", "", "txtMaxRows", "Please select a table for the query.", "cbTable");
    row("no column", "", numbers, "txtMaxRows", "Please select a column for the query.", "cmdExecute");
    row("no select", "delete", numbers, "txtMaxRows", select, "cmdExecute");
    row("almost select", "SELEC", numbers, "", select, "cmdExecute");
    row("blank before select", " SELECT *", numbers, "", select, "cmdExecute");
    row("no limit of rows", "SELECT *", numbers, "txtMaxRows", numeric, "txtMaxRows");
    row("no time-out", "SELECT *", numbers, "txtTimeout", numeric, "txtTimeout");
}

void TestQueryRunning::refusals() {
    QFETCH(QString, columns);
    QFETCH(QString, tables);
    QFETCH(QString, emptied);
    testsupport::Answers answers;
    const QueryDesk desk(m_server.serverText());
    QVERIFY(QTest::qWaitForWindowActive(desk.window.get()));
    compose(desk, columns, tables);
    if (QTest::currentDataTag() == QStringLiteral("no database")) desk.list("cbDatabase").setCurrentIndex(-1);
    if (!emptied.isEmpty()) desk.window->findChild<QLineEdit*>(emptied)->clear();
    desk.press("cmdExecute");
    const auto box = answers.takeBox();
    QTEST(box.text, "text");
    QCOMPARE(box.icon, desktop::MsgBoxIcon::Exclamation);
    QCOMPARE(box.buttons, desktop::MsgBoxButtons::Ok);
    QTEST(desk.window->focusWidget()->objectName(), "focus");
    QCOMPARE(desk.page(), 0);
    QCOMPARE(desk.countLine(), QStringLiteral("Number of rows returned: 0"));
}

void TestQueryRunning::runs_data() {
    const Table<QString, QString, QString, QString, QString> row("columns", "tables", "conditions", "most",
                                                                 "rows");
    row("lower case", "select N", "from Number", "where N = 1", "50", "1");
    row("blanks behind", "SELECT N  ", "FROM [Number]", "", "50", "1 2 3 4 5");
    row("keyword as it stands", "SELECT N", "FROM Number", "WheRe N < 3", "50", "1 2");
    row("keyword put in front", "SELECT N", "FROM Number", "N < 3", "50", "1 2");
    row("keyword for what begins like it", "SELECT N", "FROM Number as wher", "wher.N = 4", "50", "4");
    row("lines", "SELECT\n N,\n Name", "FROM\n Number", "WHERE\n N = 3", "50", "3|NULL");
    row("two tables", "SELECT [Number].[N], [Other].[Letter]", "FROM [Number], [Other]",
        "[Number].[N] = [Other].[N]", "50", "1|a 2|b");
    row("limit 0", "SELECT N", "FROM Number", "", "0", "1 2 3 4 5");
    row("limit and order", "SELECT N", "FROM Number", "N > 0 order by N desc", "2", "5 4");
    row("several results", "SELECT N", "FROM Number", "N = 1 select 'other'", "50", "1");
    row("names with brackets", "SELECT [a]]b].[c]]d]", "FROM [Odd Names]..[a]]b]", "", "50", "1 2");
}

void TestQueryRunning::runs() {
    QFETCH(QString, columns);
    QFETCH(QString, tables);
    QFETCH(QString, conditions);
    QFETCH(QString, most);
    const testsupport::Answers noBoxes;
    const QueryDesk desk(m_server.serverText());
    compose(desk, columns, tables, conditions);
    desk.number("txtMaxRows").setText(most);
    desk.press("cmdExecute");
    QTEST(rowsOf(desk).join(u' '), "rows");
    QCOMPARE(desk.countLine(), QStringLiteral("Number of rows returned: %1").arg(rowsOf(desk).size()));
    QCOMPARE(desk.page(), 1);
    const QString rows = QString::number(rowsOf(desk).size());
    static const QRegularExpression seconds(QStringLiteral("^(\\d+) rows in \\d+\\.\\d\\d s$"));
    QCOMPARE(seconds.match(desk.window->status().text()).captured(1), rows);
    QVERIFY(QGuiApplication::overrideCursor() == nullptr);
    desk.press("cmdBack");
    QCOMPARE(desk.page(), 0);
    QCOMPARE(desk.text("txtColumns"), columns);
    // Enter goes on, and does not press the button that happens to be next.
    QTest::keyClick(desk.window->focusWidget(), Qt::Key_Enter);
    QCOMPARE(desk.page(), 1);
}

void TestQueryRunning::savesResult() {
    testsupport::Answers answers;
    const QueryDesk desk(m_server.serverText());
    compose(desk, QStringLiteral("SELECT TOP 1 1 AS n, NULL AS n, '' AS [a,b]"), Numbers);
    desk.press("cmdExecute");
    const QString path = desk.folder.filePath(QStringLiteral("rows.json"));
    answers.saveAs(path);
    for (QAction* action : desk.find<desktop::DataGrid>("dgrResult").actions())
        if (action->shortcut() == QKeySequence::Save) action->trigger();
    answers.takeSaveFile();
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(),
             QByteArray("{\"columns\":[\"n\",\"n\",\"a,b\"],\"rows\":[\n[\"1\",null,\"\"]]}\n"));
}

void TestQueryRunning::longStatementsAndTexts() {
    const testsupport::Answers noBoxes;
    const QueryDesk desk(m_server.serverText());
    QStringList columns;
    for (int i = 0; i < 300; ++i)
        columns += QStringLiteral("N + %1 as [column number %1]").arg(i);
    compose(desk, QStringLiteral("SELECT ") + columns.join(u','), Numbers);
    desk.press("cmdExecute");
    QCOMPARE(desk.result().columnCount(), 300);
    QCOMPARE(desk.cell(4, 299), QStringLiteral("304"));
    desk.window->grab();

    compose(desk, AllOf, QStringLiteral("FROM Long"));
    desk.press("cmdExecute");
    QCOMPARE(desk.cell(0, 0), QStringLiteral("0123456789abcdef").repeated(65536));
    desk.window->grab();
}

void TestQueryRunning::failures_data() {
    const Table<QString, QString, QString> row("columns", "tables", "words");
    row("SELECTX", "SELECTX", "FROM Number", "syntax");
    row("column", "SELECT Wage", "FROM Number", "'Wage'");
    row("name with a bracket, as picked", "SELECT *", "FROM [Odd Names]..[a]b]", "syntax");
    row("second statement", "SELECT *", "FROM Number select * from Nowhere", "Nowhere");
    row("write", "SELECT *", "FROM Number delete Number", "read-only");
}

void TestQueryRunning::failures() {
    QFETCH(QString, columns);
    QFETCH(QString, tables);
    QFETCH(QString, words);
    testsupport::Answers answers;
    const QueryDesk desk(m_server.serverText());
    compose(desk, AllOf, QStringLiteral("FROM Other"));
    desk.press("cmdExecute");
    compose(desk, columns, tables);
    answers.whileOpen([&](const auto&) { QVERIFY(QGuiApplication::overrideCursor() != nullptr); });
    desk.press("cmdExecute");
    const QString text = answers.takeBox().text;
    QVERIFY2(text.contains(words), qUtf8Printable(text));
    QCOMPARE(rowsOf(desk).join(u' '), QStringLiteral("1|a 2|b"));
    QCOMPARE(desk.countLine(), QStringLiteral("Number of rows returned: 2"));
    QCOMPARE(desk.page(), 1);
    // What is missing is asked for where it can be entered.
    desk.write("txtTables", QString());
    answers.whileOpen({});
    desk.press("cmdExecute");
    answers.takeBox();
    QCOMPARE(desk.page(), 0);
    QVERIFY(QGuiApplication::overrideCursor() == nullptr);
}

void TestQueryRunning::timeOut() {
    testsupport::Answers answers;
    const QueryDesk desk(m_server.serverText());
    compose(desk, AllOf, Waiting);
    desk.number("txtTimeout").setText(QStringLiteral("1"));
    desk.press("cmdExecute");
    QVERIFY(answers.takeBox().text.contains(QStringLiteral("imeout")));
    QCOMPARE(desk.page(), 0);
    compose(desk, QStringLiteral("SELECT N"), Numbers);
    desk.press("cmdExecute");
    QCOMPARE(desk.page(), 1);
    // Without a limit the statement is waited for.
    compose(desk, QStringLiteral("SELECT Letter"), QStringLiteral("FROM Other waitfor delay '0:0:1.5'"));
    desk.number("txtTimeout").setText(QStringLiteral("0"));
    desk.press("cmdExecute");
    QCOMPARE(rowsOf(desk).join(u' '), QStringLiteral("a b"));
}

void TestQueryRunning::enterExecutes_data() {
    const testsupport::Table<QString, bool, int> row("control", "withControl", "page");
    row("in a list", "cbTable", false, 1);
    row("in a box for a number", "txtMaxRows", false, 1);
    row("on the button", "cmdExecute", false, 1);
    row("in a text", "txtWhereClause", false, 0);
    row("in a text, with Ctrl", "txtWhereClause", true, 1);
    row("on another button", "cmdReset", false, 0);
}

void TestQueryRunning::enterExecutes() {
    QFETCH(QString, control);
    QFETCH(bool, withControl);
    const testsupport::Answers noBoxes;
    const QueryDesk desk(m_server.serverText());
    QVERIFY(QTest::qWaitForWindowActive(desk.window.get()));
    compose(desk, AllOf, Numbers);
    auto* widget = desk.window->findChild<QWidget*>(control);
    widget->setFocus();
    QTest::keyClick(widget, Qt::Key_Return, withControl ? Qt::ControlModifier : Qt::NoModifier);
    QTEST(desk.page(), "page");
    QCOMPARE(desk.text("txtWhereClause").contains(u'\n'),
             control == QStringLiteral("txtWhereClause") && !withControl);
}

void TestQueryRunning::goesWhileAMessageIsOpen_data() {
    const testsupport::Table<QString, QString> row("columns", "tables");
    row("refusal with focus", AllOf, "");
    row("failed statement", "SELECTX", Numbers);
}

void TestQueryRunning::goesWhileAMessageIsOpen() {
    QFETCH(QString, columns);
    QFETCH(QString, tables);
    testsupport::Answers answers;
    QueryDesk desk(m_server.serverText());
    compose(desk, columns, tables);
    answers.whileOpen([&](const auto&) {
        desk.window->close();
        desk.window.release()->deleteLater();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    });
    QPushButton& button = desk.find<QPushButton>("cmdExecute");
    QMetaObject::invokeMethod(&button, &QPushButton::click, Qt::QueuedConnection);
    QTRY_COMPARE(answers.boxes(), 1);
    answers.takeBox();
    QCoreApplication::processEvents();
}

QTEST_MAIN(TestQueryRunning)
#include "test_queryrunning.moc"
