#include "compare/comparison.h"
#include "dbaccess/connectionpool.h"
#include "dbaccess/dbconnection.h"
#include "platform/ado/recordset.h"
#include "platform/controls/listitems.h"
#include "support/answers.h"
#include "support/sampleserverprocess.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>

using controls::ListItems;
using tw::ConnectionPool;
using tw::DBConnection;

namespace {

const QString AllTables = QStringLiteral("(All Tables)");
const tw::ComparedKinds AllKinds{true, true, true};

/// Counts what it is told.
class CountingProgress : public tw::ComparisonProgress {
  public:
    qint32 expected = -1;
    int unmatched = 0;
    int matched = 0;
    int finished = 0;
    int cancels = 0;

    void begin() override {}
    void SetNumberNeed(qint32 items) override { expected = items; }
    void InitFormLables(const QString&, const QString&) override {}
    void UpdateForm(tw::ComparedState state, const QString&) override {
        if (state == tw::ComparedState::Unmatched) ++unmatched;
        if (state == tw::ComparedState::Matched) ++matched;
        if (state == tw::ComparedState::Finished) ++finished;
    }
    void cancel() override { ++cancels; }
};

QStringList rowsOf(const ListItems& list) {
    QStringList rows;
    for (int row = 0; row < list.count(); ++row) {
        QString text = QString::number(list.icon(row)) + u' ' + list.text(row);
        for (int column = 1; column < 5; ++column)
            text += u'|' + list.subItem(row, column);
        while (text.endsWith(u'|'))
            text.chop(1);
        static const QRegularExpression madeUp(QStringLiteral("__[0-9A-F]{8}"));
        rows += text.replace(madeUp, QStringLiteral("__~"));
    }
    return rows;
}

/// The two lists that a file of expected rows tells; its head says how.
std::pair<QStringList, QStringList> expectedRows(const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) qFatal("no expectation");
    std::pair<QStringList, QStringList> lists;
    for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
        const QString mark = line.section(u' ', 0, 0);
        const QString text = line.section(u' ', 1);
        if (mark == u'#') continue;
        const QString icon = mark.startsWith(u'*') ? QString()
                             : mark == u'='        ? QStringLiteral("5 ")
                                                   : QStringLiteral("6 ");
        if (!mark.endsWith(u'>')) lists.first += icon + text;
        if (!mark.endsWith(u'<')) lists.second += icon + text;
    }
    return lists;
}

}  // namespace

/// The whole road of a comparison: engine, connection objects, pool, driver, wire and server.
class TestComparing : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void comparesWorkshops();
    void comparesOneTable();
    void logins_data();
    void logins();
    void goesOnPastFailingTable();
    void endsWithDeadServer();

  private:
    struct Run {
        ListItems results1;
        ListItems results2;
        CountingProgress progress;
        std::function<void()> yield = [] {};

        void compare(DBConnection& connection1, DBConnection& connection2, tw::ComparedKinds kinds) {
            tw::Comparison comparison({connection1, results1, {}}, {connection2, results2, {}}, kinds,
                                      progress, yield, [this] { return progress.cancels > 0; });
            comparison.run();
        }
    };

    DBConnection connection(const QString& database, const QString& table, bool pooled = true) const;

    testsupport::SampleServerProcess m_server;
    // A clock that stands still: nothing grows too old for the pool.
    std::shared_ptr<ConnectionPool> m_pool =
        std::make_shared<ConnectionPool>([] { return ConnectionPool::Clock::time_point(); });
};

void TestComparing::initTestCase() {
    QVERIFY2(m_server.start({QStringLiteral("--script"), QFINDTESTDATA("../dbaccess/browsing.sql")}),
             qUtf8Printable(m_server.errorText()));
}

DBConnection TestComparing::connection(const QString& database, const QString& table, bool pooled) const {
    DBConnection connection(pooled ? m_pool : nullptr);
    connection.setConnectionString(QStringLiteral("driver={SQL Server};server=") + m_server.serverText() +
                                   QStringLiteral(";uid=sa;pwd="));
    connection.setDatabase(database);
    connection.setTable(table);
    return connection;
}

void TestComparing::comparesWorkshops() {
    const auto [expected1, expected2] = expectedRows(QFINDTESTDATA("workshop.txt"));
    const testsupport::Answers answers;
    DBConnection connection1 = connection(QStringLiteral("Workshop"), AllTables);
    DBConnection connection2 = connection(QStringLiteral("Workshop2"), AllTables);
    Run run;
    run.compare(connection1, connection2, AllKinds);
    QCOMPARE(rowsOf(run.results1), expected1);
    QCOMPARE(rowsOf(run.results2), expected2);

    const auto marked = [](const QStringList& rows, QChar icon) {
        return std::ranges::count_if(rows, [&](const QString& row) { return row.startsWith(icon); });
    };
    QCOMPARE(run.progress.matched, marked(expected1, u'5'));
    QCOMPARE(run.progress.unmatched, marked(expected1, u'6') + marked(expected2, u'6'));
    QCOMPARE(run.progress.finished, 1);
}

void TestComparing::comparesOneTable() {
    const testsupport::Answers answers;
    DBConnection connection1 = connection(QStringLiteral("Workshop"), QStringLiteral("OpeningHours"));
    DBConnection connection2 = connection(QStringLiteral("Workshop2"), QStringLiteral("ClosedDay"));
    Run run;
    run.compare(connection1, connection2, {});
    QCOMPARE(rowsOf(run.results1),
             (QStringList{"4 Table: OpeningHours|Data type|Nullable|Foreign key", "6 Weekday|Tinyint",
                          "6 OpensAt|Char(5)|Yes", "6 ClosesAt|Char(5)|Yes"}));
    QCOMPARE(rowsOf(run.results2),
             (QStringList{"4 Table: ClosedDay|Data type|Nullable|Foreign key", "6 FirstDay|Smalldatetime",
                          "6 LastDay|Smalldatetime", "6 Reason|nVarChar(80)"}));
    QCOMPARE(run.progress.expected, 1);
}

void TestComparing::logins_data() {
    QTest::addColumn<bool>("pooled");
    QTest::addColumn<int>("expected");
    // On each side: the details take three at a time.
    QTest::newRow("with the pool") << true << 2 * 3;
    // On each side: the details, the list of tables, and eighteen tables.
    QTest::newRow("without") << false << 2 * (3 + 1 + 18);
}

void TestComparing::logins() {
    QFETCH(bool, pooled);
    const testsupport::Answers answers;
    ado::Connection probe;
    probe.Open(connection({}, {}).getConnectionString());
    const auto logins = [&] {
        ado::Recordset rows;
        rows.Open(QStringLiteral("SELECT @@CONNECTIONS AS n"), probe);
        return rows.Fields(QStringLiteral("n")).text().toString().toInt();
    };
    m_pool = std::make_shared<ConnectionPool>([] { return ConnectionPool::Clock::time_point(); });
    const int before = logins();
    DBConnection connection1 = connection(QStringLiteral("Workshop"), AllTables, pooled);
    DBConnection connection2 = connection(QStringLiteral("Workshop2"), AllTables, pooled);
    Run run;
    run.compare(connection1, connection2, AllKinds);
    QTEST(logins() - before, "expected");
}

/// "It's" breaks the statement that lists its columns, on either side.
void TestComparing::goesOnPastFailingTable() {
    testsupport::Answers answers;
    DBConnection connection1 = connection(QStringLiteral("Listing"), AllTables);
    DBConnection connection2 = connection(QStringLiteral("Listing"), AllTables);
    Run run;
    run.compare(connection1, connection2, AllKinds);
    QCOMPARE(answers.boxes(), 2);
    answers.takeBox();
    answers.takeBox();
    QCOMPARE(run.progress.unmatched, 0);
    QCOMPARE(run.progress.cancels, 0);
    QCOMPARE(run.progress.finished, 1);
    QVERIFY(rowsOf(run.results2).contains(QStringLiteral("5 CustID|Integer||Yes")));
}

/// One report, and the comparison is cancelled; in the midst of it or before it begins.
void TestComparing::endsWithDeadServer() {
    testsupport::Answers answers;
    DBConnection connection1 = connection(QStringLiteral("Workshop"), AllTables);
    DBConnection connection2 = connection(QStringLiteral("Workshop2"), AllTables);
    Run run;
    int yields = 0;
    run.yield = [&] {
        if (++yields == 300) m_server.kill();
    };
    run.compare(connection1, connection2, AllKinds);
    QCOMPARE(answers.boxes(), 1);
    QVERIFY(answers.takeBox().text.contains(QStringLiteral("FillLvTblDef")));
    QCOMPARE(run.progress.cancels, 1);
    QCOMPARE(run.progress.finished, 0);
    QVERIFY(run.progress.matched > 0);

    for (const QString& table : {AllTables, QStringLiteral("Customer")}) {
        connection1.setTable(table);
        Run late;
        late.compare(connection1, connection2, AllKinds);
        QCOMPARE(answers.boxes(), 1);
        answers.takeBox();
        QCOMPARE(late.progress.cancels, 1);
        QCOMPARE(late.progress.finished, 0);
    }
}

QTEST_GUILESS_MAIN(TestComparing)
#include "test_comparing.moc"
