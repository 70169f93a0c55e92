#include "compare/comparison.h"
#include "dbaccess/connectionpool.h"
#include "dbaccess/dbconnection.h"
#include "platform/ado/recordset.h"
#include "platform/controls/listitems.h"
#include "support/answers.h"
#include "support/relay.h"
#include "support/rowtexts.h"
#include "support/sampleserverprocess.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryFile>
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

/// A database of a few tables, some of which another one has, too.
QString randomDatabase(const QString& name, QRandomGenerator& random) {
    const QStringList types{"int NOT NULL", "int NULL", "nvarchar(20) NULL", "char(4) NOT NULL",
                            "money NULL"};
    QString script = QStringLiteral("CREATE DATABASE %1\nGO\nUSE %1\nGO\n").arg(name);
    for (int table = 0; table < 9; ++table) {
        if (random.bounded(5) == 0) continue;
        QStringList columns{QStringLiteral("Id int NOT NULL") +
                            (random.bounded(2) ? QStringLiteral(" PRIMARY KEY") : QString())};
        for (int column = random.bounded(4); column > 0; --column)
            columns += QStringLiteral("c%1 %2").arg(column).arg(types[random.bounded(types.size())]);
        columns +=
            QStringLiteral("n int NULL CONSTRAINT CK_%1 CHECK (n > %2)").arg(table).arg(random.bounded(2));
        if (random.bounded(3) == 0)
            columns += QStringLiteral("o int NULL CONSTRAINT FK_%1 REFERENCES Owner").arg(table);
        if (table == 0) script += QStringLiteral("CREATE TABLE Owner (Id int NOT NULL PRIMARY KEY)\n");
        script +=
            QStringLiteral("CREATE TABLE T%1 (%2)\n").arg(table).arg(columns.join(QStringLiteral(", ")));
    }
    return script.contains(QStringLiteral("TABLE Owner")) ? script + QStringLiteral("GO\n")
                                                          : randomDatabase(name, random);
}

/// What becomes of one of the statements of a comparison, or of none.
testsupport::Relay::Fault randomFault(QRandomGenerator& random) {
    const QStringList parts{"sp_columns 'T%1'",
                            "OBJECT_ID('T%1') INNER JOIN sysindexes",
                            "sysreferences",
                            "T%1'",
                            "SELECT Name FROM sysobjects",
                            "syscomments"};
    if (random.bounded(5) == 0) return {};
    QString part = parts[random.bounded(parts.size())];
    part.replace(QStringLiteral("%1"), QString::number(random.bounded(9)));
    return {part, random.bounded(2) ? -1 : random.bounded(600)};
}

}  // namespace

/// The whole road of a comparison: engine, connection objects, pool, driver, wire and server.
class TestComparing : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void comparesWorkshops();
    void goesOnPastFailingTable();
    void endsWithSilentServer();
    void readsAheadAlike();
    void leavesNothingBehind();
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
    // Each reader logs in once.
    QVERIFY(logins() - before <= 2 * tw::ReadAhead::MostReaders);

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

/// Reading ahead shows in nothing but time: whatever fails, rows, counts and reports are those of reading one
/// after the other; nor do they change where the server takes few logins.
void TestComparing::readsAheadAlike() {
    constexpr int pairs = 6;
    QRandomGenerator random(20260801);
    QTemporaryFile script;
    QVERIFY(script.open());
    for (int i = 0; i < 2 * pairs; ++i)
        script.write(randomDatabase(QStringLiteral("Db%1").arg(i), random).toUtf8());
    script.flush();
    testsupport::RunningSampleServer server{
        {QStringLiteral("--no-sample-data"), QStringLiteral("--script"), script.fileName()}};
    testsupport::Relay relay(server.port());
    const auto told = [&](int pair, int readers) {
        testsupport::Answers answers;
        const auto pool = std::make_shared<ConnectionPool>();
        DBConnection sides[2]{DBConnection(pool), DBConnection(pool)};
        for (DBConnection& side : sides) {
            side.setConnectionString(
                QStringLiteral("driver={SQL Server};server=%1;uid=sa;pwd=").arg(relay.serverText()));
            side.setDatabase(QStringLiteral("Db%1").arg(2 * pair + int(&side - sides)));
            side.setTable(AllTables);
            side.setMostReaders(readers);
        }
        Run run;
        run.compare(sides[0], sides[1], AllKinds);
        QStringList all = plainRowsOf(run.results1) + plainRowsOf(run.results2);
        all += QStringLiteral("%1 matched, %2 unmatched, %3 finished, %4 cancelled")
                   .arg(run.progress.matched)
                   .arg(run.progress.unmatched)
                   .arg(run.progress.finished)
                   .arg(run.progress.cancels);
        // In what words a driver tells that its line was lost is up to it.
        static const QRegularExpression words(QStringLiteral("(?<=Error: -2147467259\\.\r\n)[^\r]*"));
        while (answers.boxes() > 0)
            all += answers.takeBox().text.replace(words, {});
        return all;
    };
    int withBoxes = 0;
    for (int i = 0; i < 60; ++i) {
        const testsupport::Relay::Fault fault = randomFault(random);
        relay.setFault(fault);
        relay.setMostLines(100);
        relay.setDelay(0);
        const QStringList plain = told(i % pairs, 0);
        withBoxes += plain.last().contains(QStringLiteral("Error"));
        relay.setDelay(random.bounded(3));
        relay.setMostLines(i % 2 ? 100 : 2 + random.bounded(6));
        const QStringList ahead = told(i % pairs, tw::ReadAhead::MostReaders);
        QVERIFY(!fault.part.isEmpty() || relay.mostLinesSeen() <= 2 * tw::ReadAhead::MostReaders);
        QStringList lost = plain;
        QStringList added = ahead;
        for (const QString& line : ahead)
            lost.removeOne(line);
        for (const QString& line : plain)
            added.removeOne(line);
        QVERIFY2(ahead == plain, qPrintable(QStringLiteral("%1: %2 behind %3 bytes, lost %4, added %5")
                                                .arg(i)
                                                .arg(fault.part)
                                                .arg(fault.bytes)
                                                .arg(lost.join(u'\n'), added.join(u'\n'))));
    }
    QVERIFY(withBoxes > 10);
}

/// Whether they end by themselves or are broken off while the server is silent, which nobody waits for.
void TestComparing::leavesNothingBehind() {
    testsupport::Relay relay(m_server.port());
    const auto handles = [] { return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files).size(); };
    const auto threads = [] {
        return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
    };
    qsizetype handlesBefore = 0;
    qsizetype threadsBefore = 0;
    for (int i = 0; i < 24; ++i) {
        DBConnection connection1 = connection(QStringLiteral("Workshop"), AllTables);
        DBConnection connection2 = connection(QStringLiteral("Workshop2"), AllTables);
        for (DBConnection* side : {&connection1, &connection2})
            side->setConnectionString(
                QStringLiteral("driver={SQL Server};server=%1;uid=sa;pwd=").arg(relay.serverText()));
        relay.setManner(testsupport::Relay::Manner::Whole);
        Run run;
        int yields = 0;
        QElapsedTimer sinceSilent;
        run.yield = [&] {
            if (++yields == 40 * (i % 3) && i % 3) {
                relay.setManner(testsupport::Relay::Manner::Silent);
                sinceSilent.start();
            }
            if (sinceSilent.isValid() && sinceSilent.hasExpired(30)) run.progress.cancel();
        };
        run.compare(connection1, connection2, AllKinds);
        QVERIFY(!sinceSilent.isValid() || sinceSilent.elapsed() < 5000);
        if (i == 3) {
            QTest::qWait(1500);
            handlesBefore = handles();
            threadsBefore = threads();
        }
    }
    QTRY_VERIFY_WITH_TIMEOUT(handles() <= handlesBefore, 10000);
    QTRY_VERIFY_WITH_TIMEOUT(threads() <= threadsBefore, 10000);
}

QTEST_GUILESS_MAIN(TestComparing)
#include "test_comparing.moc"
