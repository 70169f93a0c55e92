#include "expectations.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "scriptedserver.h"
#include "support/relay.h"
#include "support/table.h"

#include <QDir>
#include <QTest>

using namespace ado;
using Manner = testsupport::Relay::Manner;

/// What statements on one connection do to one another, and errors between rows.
class ResultsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void init();
    void rowLimitsGoToTheServer();
    void otherRecordSetsAreReadAhead_data();
    void otherRecordSetsAreReadAhead();
    void anErrorWaitsBehindRowsReadAhead();
    void halfReadOnesAreCancelled();
    void firstColumnsCount();
    void errorsBehindRows_data();
    void errorsBehindRows();
    void aStatementTimesOut();
    void badServersMissTheDeadline_data();
    void badServersMissTheDeadline();
    void theLinkIsLost();
    void aRecordSetKeepsItsConnection();

  private:
    ScriptedServer m_server;
    Connection m_connection;
};

void ResultsTest::init() {
    m_connection = Connection();
    m_connection.Open(m_server.connectionString());
    m_server.takeBatches();
}

static int readToEnd(Recordset& rows) {
    int count = 0;
    for (; !rows.Eof(); rows.MoveNext())
        ++count;
    return count;
}

void ResultsTest::rowLimitsGoToTheServer() {
    Recordset limited;
    limited.setMaxRecords(50);
    limited.Open(QStringLiteral("count 3"), m_connection);
    QCOMPARE(readToEnd(limited), 3);
    limited.Close();
    limited.Open(QStringLiteral("count 4"), m_connection);
    limited.Close();
    Recordset all;
    QCOMPARE(numberOf([&] { all.Open(QStringLiteral("fail 102"), m_connection); }), -2147217900);
    all.Open(QStringLiteral("count 5"), m_connection);
    QCOMPARE(m_server.takeBatches(),
             (QStringList{QStringLiteral("SET ROWCOUNT 50"), QStringLiteral("count 3"),
                          QStringLiteral("count 4"), QStringLiteral("SET ROWCOUNT 0"),
                          QStringLiteral("fail 102"), QStringLiteral("count 5")}));
}

void ResultsTest::otherRecordSetsAreReadAhead_data() {
    const testsupport::Table<QString, int> row("statement", "count");
    row("blocks", "count 20000", 20000);
    row("one block", "count 3", 3);
    row("pieces", "long 200000", 2);
}

void ResultsTest::otherRecordSetsAreReadAhead() {
    QFETCH(QString, statement);
    QFETCH(int, count);
    QStringList wanted;
    QStringList got;
    const auto read = [](Recordset& rows, QStringList& texts) {
        for (; !rows.Eof(); rows.MoveNext())
            for (int i = 0; i < rows.FieldCount(); ++i)
                texts.push_back(rows.Fields(i).isNull() ? QString() : rows.Fields(i).text().toString());
    };
    Recordset undisturbed;
    undisturbed.Open(statement, m_connection);
    read(undisturbed, wanted);
    Recordset first;
    first.Open(statement, m_connection);
    Recordset second;
    second.Open(QStringLiteral("count 7"), m_connection);
    Recordset third;
    third.Open(QStringLiteral("count 1"), m_connection);
    read(first, got);
    QVERIFY(got == wanted);
    QCOMPARE(got.size(), count * first.FieldCount());
    QCOMPARE(readToEnd(second), 7);
    QCOMPARE(readToEnd(third), 1);
}

void ResultsTest::anErrorWaitsBehindRowsReadAhead() {
    Recordset first;
    first.Open(QStringLiteral("fail 8134 3"), m_connection);
    Recordset second;
    second.Open(QStringLiteral("count 1"), m_connection);
    first.MoveNext();
    first.MoveNext();
    QCOMPARE(first.Fields(0).toInteger(), 2);
    QCOMPARE(numberOf([&] { first.MoveNext(); }), -2147217900);
    QVERIFY(first.Eof());
}

void ResultsTest::halfReadOnesAreCancelled() {
    {
        Recordset rows;
        rows.Open(QStringLiteral("count 1000000"), m_connection);
        QCOMPARE(rows.Fields(0).toInteger(), 0);
    }
    QVERIFY(m_server.rowsTold() < 1'000'000);
    Recordset next;
    next.Open(QStringLiteral("count 3"), m_connection);
    QCOMPARE(readToEnd(next), 3);
}

void ResultsTest::firstColumnsCount() {
    Recordset none;
    none.Open(QStringLiteral("counts"), m_connection);
    QVERIFY(none.isOpen() && none.Eof());
    QCOMPARE(none.FieldCount(), 0);
    Recordset one;
    one.Open(QStringLiteral("mixed"), m_connection);
    QCOMPARE(one.Fields(0).toInteger(), 0);
    const auto failure = failureOf([&] { one.MoveNext(); });
    QVERIFY(failure);
    QCOMPARE(failure->number(), -2147217865);
    QCOMPARE(failure->description(), QStringLiteral("[FreeTDS][SQL Server]Error 208."));
    QVERIFY(one.Eof());
}

void ResultsTest::errorsBehindRows_data() {
    QTest::addColumn<int>("rows");
    for (const int rows : {0, 1, 2, 600, 2000})
        QTest::addRow("%d", rows) << rows;
}

void ResultsTest::errorsBehindRows() {
    QFETCH(int, rows);
    int seen = 0;
    const auto failure = failureOf([&] {
        Recordset failing;
        failing.Open(QStringLiteral("fail 8134 %1").arg(rows), m_connection);
        for (; !failing.Eof(); failing.MoveNext())
            ++seen;
    });
    QVERIFY(failure);
    QCOMPARE(failure->nativeError(), 8134);
    QCOMPARE(seen, rows);
    Recordset next;
    next.Open(QStringLiteral("count 3"), m_connection);
    QCOMPARE(readToEnd(next), 3);
}

void ResultsTest::aStatementTimesOut() {
    m_connection.setCommandTimeout(1);
    Recordset rows;
    const auto failure = failureOf([&] { rows.Open(QStringLiteral("wait"), m_connection); });
    QVERIFY(failure);
    QCOMPARE(failure->number(), -2147217871);
    QVERIFY(!rows.isOpen());
    rows.Open(QStringLiteral("count 2"), m_connection);
    QCOMPARE(readToEnd(rows), 2);
}

void ResultsTest::badServersMissTheDeadline_data() {
    const testsupport::Table<Manner, bool> row("manner", "amongRows");
    row("silent, to a cancel too", Manner::Silent, false);
    row("a byte now and then", Manner::Dripping, false);
    row("a message without an end", Manner::Endless, false);
    row("a byte now and then among the rows", Manner::Dripping, true);
}

/// The threads of this process, but for those of the C library and of Qt.
static int workers() {
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

void ResultsTest::badServersMissTheDeadline() {
    QFETCH(Manner, manner);
    QFETCH(bool, amongRows);
    testsupport::Relay relay(m_server.port());
    Connection connection;
    connection.Open(QStringLiteral("driver={SQL Server};server=%1;uid=sa;pwd=x").arg(relay.serverText()));
    connection.setCommandTimeout(1);
    const int before = workers();
    Recordset rows;
    if (amongRows) rows.Open(QStringLiteral("rows"), connection);
    relay.setManner(manner);
    QCOMPARE(numberOf([&] {
                 if (amongRows)
                     readToEnd(rows);
                 else
                     rows.Open(QStringLiteral("count 100"), connection);
             }),
             -2147217871);
    QVERIFY(!connection.isOpen());
    QCOMPARE(numberOf([&] { Recordset().Open(QStringLiteral("count 1"), connection); }), 3709);
    // The call that was left behind has lost its socket, and ends with its thread.
    QTRY_VERIFY(workers() < before);
    relay.setManner(Manner::Whole);
    connection.Open();
    rows = Recordset();
    rows.Open(QStringLiteral("count 2"), connection);
    QCOMPARE(readToEnd(rows), 2);
}

void ResultsTest::theLinkIsLost() {
    ScriptedServer dying;
    Connection connection;
    connection.Open(dying.connectionString());
    Recordset rows;
    rows.Open(QStringLiteral("rows"), connection);
    dying.stop();
    QCOMPARE(numberOf([&] { readToEnd(rows); }), -2147467259);
    QVERIFY(rows.Eof());
    QCOMPARE(numberOf([&] { rows.MoveNext(); }), 3021);
    for (int i = 0; i < 2; ++i) {
        Recordset later;
        QCOMPARE(numberOf([&] { later.Open(QStringLiteral("count 1"), connection); }), -2147467259);
    }
    connection.Close();
    QVERIFY(!connection.isOpen());
}

void ResultsTest::aRecordSetKeepsItsConnection() {
    ScriptedServer server;
    {
        Recordset rows;
        {
            Connection connection;
            connection.Open(server.connectionString());
            rows.Open(QStringLiteral("count 2000"), connection);
        }
        QCOMPARE(readToEnd(rows), 2000);
        QCOMPARE(server.liveClients(), 1);
    }
    QTRY_COMPARE(server.liveClients(), 0);
}

QTEST_GUILESS_MAIN(ResultsTest)
#include "test_results.moc"
