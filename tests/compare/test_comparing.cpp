#include "compare/comparison.h"
#include "dbaccess/connectionpool.h"
#include "dbaccess/dbconnection.h"
#include "platform/ado/recordset.h"
#include "platform/controls/listitems.h"
#include "support/answers.h"
#include "support/relay.h"
#include "support/rowtexts.h"
#include "support/sampleserverprocess.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>

using controls::ListItems;
using testsupport::rowsOf;
using tw::ConnectionPool;
using tw::DBConnection;

namespace {

const QString AllTables = QStringLiteral("(All Tables)");
const tw::ComparedKinds AllKinds{true, true, true};

/// Counts what it is told.
class CountingProgress : public tw::ComparisonProgress {
  public:
    int unmatched = 0;
    int matched = 0;
    int finished = 0;
    int cancels = 0;

    void begin() override {}
    void SetNumberNeed(qint32) override {}
    void InitFormLables(const QString&, const QString&) override {}
    void UpdateForm(tw::ComparedState state, const QString&) override {
        if (state == tw::ComparedState::Unmatched) ++unmatched;
        if (state == tw::ComparedState::Matched) ++matched;
        if (state == tw::ComparedState::Finished) ++finished;
    }
    void cancel() override { ++cancels; }
};

/// Without the number in a name that the server made up.
QStringList plainRowsOf(const ListItems& list) {
    static const QRegularExpression madeUp(QStringLiteral("__[0-9A-F]{8}"));
    return rowsOf(list).replaceInStrings(madeUp, QStringLiteral("__~"));
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
    void comparesWorkshops();
    void goesOnPastFailingTable();
    void endsWithSilentServer();
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

    DBConnection connection(const QString& database, const QString& table) const;

    testsupport::RunningSampleServer m_server{
        {QStringLiteral("--script"), QFINDTESTDATA("../dbaccess/browsing.sql")}};
    // A clock that stands still: nothing grows too old for the pool.
    std::shared_ptr<ConnectionPool> m_pool =
        std::make_shared<ConnectionPool>([] { return ConnectionPool::Clock::time_point(); });
};

DBConnection TestComparing::connection(const QString& database, const QString& table) const {
    DBConnection connection(m_pool);
    connection.setConnectionString(m_server.connectionString());
    connection.setDatabase(database);
    connection.setTable(table);
    return connection;
}

void TestComparing::comparesWorkshops() {
    const auto [expected1, expected2] = expectedRows(QFINDTESTDATA("workshop.txt"));
    const testsupport::Answers answers;
    ado::Connection probe;
    probe.Open(m_server.connectionString());
    const auto logins = [&] {
        ado::Recordset rows;
        rows.Open(QStringLiteral("SELECT @@CONNECTIONS"), probe);
        return rows.Fields(0).toInteger();
    };
    const auto before = logins();
    DBConnection connection1 = connection(QStringLiteral("Workshop"), AllTables);
    DBConnection connection2 = connection(QStringLiteral("Workshop2"), AllTables);
    Run run;
    run.compare(connection1, connection2, AllKinds);
    QCOMPARE(plainRowsOf(run.results1), expected1);
    QCOMPARE(plainRowsOf(run.results2), expected2);
    // On each side the details take three at a time, and the tables none of their own.
    QCOMPARE(logins() - before, 2 * 3);

    const auto marked = [](const QStringList& rows, QChar icon) {
        return std::ranges::count_if(rows, [&](const QString& row) { return row.startsWith(icon); });
    };
    QCOMPARE(run.progress.matched, marked(expected1, u'5'));
    QCOMPARE(run.progress.unmatched, marked(expected1, u'6') + marked(expected2, u'6'));
    QCOMPARE(run.progress.finished, 1);
}

/// "It's" breaks the statement that lists its columns, on either side, which is told once.
void TestComparing::goesOnPastFailingTable() {
    testsupport::Answers answers;
    DBConnection connection1 = connection(QStringLiteral("Listing"), AllTables);
    DBConnection connection2 = connection(QStringLiteral("Listing"), AllTables);
    Run run;
    run.compare(connection1, connection2, AllKinds);
    QCOMPARE(answers.boxes(), 1);
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

/// A time-out is told once, too, and ends the comparison: nothing may pass for compared that was never read.
void TestComparing::endsWithSilentServer() {
    testsupport::Answers answers;
    testsupport::Relay relay(m_server.port());
    DBConnection connection1 = connection(QStringLiteral("Workshop"), AllTables);
    DBConnection connection2 = connection(QStringLiteral("Workshop2"), AllTables);
    connection1.setConnectionString(
        QStringLiteral("driver={SQL Server};server=%1;uid=sa;pwd=").arg(relay.serverText()));
    {
        ado::Connection hasty;
        hasty.setCommandTimeout(1);
        const QString text = connection1.getConnectionString() + QStringLiteral(";Database=Workshop");
        hasty.Open(text);
        m_pool->keep(text, hasty);
    }
    Run run;
    int yields = 0;
    run.yield = [&] {
        if (++yields == 100) relay.setManner(testsupport::Relay::Manner::Silent);
    };
    run.compare(connection1, connection2, {});
    QCOMPARE(answers.boxes(), 1);
    QVERIFY(answers.takeBox().text.startsWith(QStringLiteral("Error: -2147217871.")));
    QCOMPARE(run.progress.cancels, 1);
    QCOMPARE(run.progress.finished, 0);
}

QTEST_GUILESS_MAIN(TestComparing)
#include "test_comparing.moc"
