#include "platform/ado/error.h"
#include "platform/desktop/datacontrol.h"
#include "support/answers.h"
#include "support/sampleserverprocess.h"
#include "support/table.h"

#include <QTest>

#include <memory>
#include <optional>

using desktop::DataControl;

/// The data control over the real driver and wire.
class DataControlTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void results_data();
    void results();
    void failures_data();
    void failures();
    void cellKinds();
    void sessionsAreNotShared_data();
    void sessionsAreNotShared();
    void timeOuts_data();
    void timeOuts();
    void goesWhileItsFailureIsTold();

  private:
    std::unique_ptr<DataControl> makeControl() const;

    testsupport::RunningSampleServer m_server;
};

namespace {

const QString ThreeRows = QStringLiteral("select 1 as n union all select 2 union all select 3");

/// The columns' names and every row, cells between bars, a line each.
QStringList shown(DataControl& control) {
    const controls::GridRows& rows = control.rows();
    QStringList lines;
    for (int row = -1; row < rows.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < rows.columnCount(); ++column) {
            cells += row < 0 ? rows.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString()
                             : rows.index(row, column).data().toString();
        }
        lines += cells.join(u'|');
    }
    return lines;
}

void run(DataControl& control, const QString& statement, qint32 most = 0) {
    control.setRecordSource(statement);
    control.setMaxRecords(most);
    control.Refresh();
}

/// The number of the failure that a statement ends with.
std::optional<qint32> failureOf(DataControl& control, const QString& statement) {
    try {
        run(control, statement);
    } catch (const ado::Error& error) {
        return error.number();
    }
    return std::nullopt;
}

}  // namespace

std::unique_ptr<DataControl> DataControlTest::makeControl() const {
    auto control = std::make_unique<DataControl>();
    control->setConnectionString(m_server.connectionString() + QStringLiteral(";database=TypeSamples"));
    return control;
}

void DataControlTest::results_data() {
    const testsupport::Table<QString, int, QStringList> row("statement", "most", "lines");
    const QStringList three{"n", "1", "2", "3"};
    row("no limit", ThreeRows, 0, three);
    row("smaller limit", ThreeRows, 2, three.mid(0, 3));
    row("equal limit", ThreeRows, 3, three);
    row("larger limit", ThreeRows, 4, three);
    row("largest limit", ThreeRows, 2147483647, three);
    row("null and empty", "select null as a, '' as b", 0, {"a|b", "NULL|"});
    row("unnamed and repeated names", "select 1, 2 as a, 3 as A", 0, {"|a|A", "1|2|3"});
    row("no rows", "select 1 as a where 1 = 0", 0, {"a"});
    row("no columns", "set nocount on", 0, {QString()});
    row("first of several results", "set nocount on select 1 as a select 2 as b", 0, {"a", "1"});
}

void DataControlTest::results() {
    QFETCH(QString, statement);
    QFETCH(int, most);
    QFETCH(QStringList, lines);
    const auto control = makeControl();
    run(*control, QStringLiteral("select 'earlier' as e, 2 as f"));
    run(*control, statement, most);
    QCOMPARE(shown(*control), lines);
    QCOMPARE(control->recordCount(), int(lines.size()) - 1);
}

void DataControlTest::failures_data() {
    const testsupport::Table<QString, int, QString> row("statement", "number", "words");
    row("syntax", "SELECTX", ado::numbers::StatementError, "SELECTX");
    row("no such table", "select * from Nowhere", ado::numbers::ObjectNotFound, "Nowhere");
    row("in a later result", "select 1 select * from Nowhere", ado::numbers::ObjectNotFound, "Nowhere");
    row("among the rows", QStringLiteral("select 6 / (3 - n) from (%1) as t").arg(ThreeRows),
        ado::numbers::StatementError, "zero");
}

void DataControlTest::failures() {
    QFETCH(QString, statement);
    QFETCH(QString, words);
    testsupport::Answers answers;
    const auto control = makeControl();
    run(*control, ThreeRows);
    const QStringList before = shown(*control);
    QTEST(failureOf(*control, statement).value_or(0), "number");
    const auto box = answers.takeBox();
    QVERIFY2(box.text.contains(words), qUtf8Printable(box.text));
    QCOMPARE(shown(*control), before);
}

void DataControlTest::cellKinds() {
    const auto control = makeControl();
    run(*control, QStringLiteral("select AnInt, AMoney, AFloat, AReal, AChar, ABit, ADateTime, AGuid, AStamp "
                                 "from AllTypes where Id in (1, 2) order by Id"));
    const controls::GridRows& rows = control->rows();
    QString sides;
    QString markers;
    for (int column = 0; column < rows.columnCount(); ++column) {
        const int alignment = rows.index(1, column).data(Qt::TextAlignmentRole).toInt();
        QCOMPARE(rows.headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt(), alignment);
        sides += alignment & Qt::AlignRight ? u'>' : u'<';
        for (const int row : {0, 1}) {
            const bool marked = rows.index(row, column).data(controls::MarkerRole).toBool();
            markers += marked ? u'#' : u'-';
        }
    }
    QCOMPARE(sides, QStringLiteral(">>>><<<<<"));
    QCOMPARE(markers, QStringLiteral("#-#-#-#-#-#-#-#-##"));
    QCOMPARE(rows.index(1, 8).data().toString(), QStringLiteral("<Binary>"));
}

void DataControlTest::sessionsAreNotShared_data() {
    const testsupport::Table<QString, int> row("statement", "most");
    row("limit of rows", "select 1 set rowcount 1", 0);
    row("limit of its own", ThreeRows, 1);
    row("another database", "select 1 use master", 0);
    row("no rows at all", "select 1 set fmtonly on", 0);
    row("open transaction", "select 1 begin tran", 0);
}

void DataControlTest::sessionsAreNotShared() {
    QFETCH(QString, statement);
    QFETCH(int, most);
    const auto control = makeControl();
    run(*control, statement, most);
    run(*control, QStringLiteral("select db_name() as d, @@trancount as t union all select 'x', 0"));
    QCOMPARE(shown(*control), (QStringList{"d|t", "TypeSamples|0", "x|0"}));
}

void DataControlTest::timeOuts_data() {
    const testsupport::Table<QString, int, bool> row("statement", "seconds", "inTime");
    const QString briefly = QStringLiteral("select 1 as n waitfor delay '0:0:0.2'");
    row("reached before the rows", QStringLiteral("waitfor delay '0:0:5' ") + ThreeRows, 1, false);
    row("not reached", briefly, 30, true);
    row("none", briefly, 0, true);
    row("longest", briefly, 2147483647, true);
}

void DataControlTest::timeOuts() {
    QFETCH(QString, statement);
    QFETCH(int, seconds);
    QFETCH(bool, inTime);
    testsupport::Answers answers;
    const auto control = makeControl();
    control->setCommandTimeout(seconds);
    QCOMPARE(failureOf(*control, statement).value_or(0), inTime ? 0 : ado::numbers::TimeOut);
    if (!inTime) QVERIFY(answers.takeBox().text.contains(QStringLiteral("imeout")));
    run(*control, ThreeRows);
    QCOMPARE(control->recordCount(), 3);
}

void DataControlTest::goesWhileItsFailureIsTold() {
    testsupport::Answers answers;
    auto control = makeControl();
    answers.whileOpen([&](const auto&) { control.reset(); });
    QCOMPARE(failureOf(*control, QStringLiteral("SELECTX")).value_or(0), ado::numbers::StatementError);
    answers.takeBox();
}

QTEST_GUILESS_MAIN(DataControlTest)
#include "test_datacontrol.moc"
