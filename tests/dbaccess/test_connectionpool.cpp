#include "dbaccess/connectionpool.h"
#include "dbaccess/dbconnection.h"
#include "platform/ado/recordset.h"
#include "platform/controls/comboitems.h"
#include "platform/controls/listitems.h"
#include "platform/controls/nodes.h"
#include "support/answers.h"
#include "support/relay.h"
#include "support/rowtexts.h"
#include "support/sampleserverprocess.h"
#include "support/table.h"

#include <QTemporaryFile>
#include <QTest>

using testsupport::connectionString;
using testsupport::rowsOf;
using testsupport::textsOf;
using tw::ConnectionPool;
using tw::DBConnection;

namespace {

const QString Listing = QStringLiteral("Listing");
const QString Deal = QStringLiteral("Deal");

/// A catalog routine as a caller sees it: what it gives.
using Routine = QStringList (*)(DBConnection&);

QStringList databases(DBConnection& connection) {
    controls::ComboItems combo;
    const bool complete = connection.FillCbDB(combo);
    return textsOf(combo) + QStringList{complete ? "complete" : "not complete"};
}

QStringList tables(DBConnection& connection) {
    controls::ComboItems combo;
    const bool complete = connection.FillCbTable(combo, Listing);
    return textsOf(combo) + QStringList{complete ? "complete" : "not complete"};
}

QStringList columns(DBConnection& connection) {
    controls::ComboItems combo;
    connection.FillCbColumn(combo, Listing, Deal);
    return textsOf(combo);
}

QStringList definition(DBConnection& connection) {
    controls::ListItems list;
    connection.FillLvTblDef(list, Listing, Deal);
    return rowsOf(list);
}

QStringList oneRow(DBConnection& connection) {
    controls::ListItems list;
    const QString caption = connection.FillLvTblData(list, Listing, QStringLiteral("Kinds"), 1);
    return rowsOf(list) + QStringList{caption};
}

QStringList details(DBConnection& connection) {
    controls::ListItems list;
    const QString heading = connection.FillLvDBDetail(list, Listing);
    return rowsOf(list) + QStringList{heading};
}

}  // namespace
Q_DECLARE_METATYPE(Routine)

/// The pool over the real driver and wire; the time is the test's own.
class TestConnectionPool : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void init();
    void savesLogins_data();
    void savesLogins();
    void keepsApart_data();
    void keepsApart();
    void lendsWhatIsIdle();
    void waitsOnlyOnce();
    void dropsFailed_data();
    void dropsFailed();
    void replacesCutLine();
    void deadServerIsNoSecret_data();
    void deadServerIsNoSecret();
    void lossIsReportedOnce_data();
    void lossIsReportedOnce();
    void followerEndsReading_data();
    void followerEndsReading();
    void noticesChanges_data();
    void noticesChanges();
    void closesIdle();

  private:
    DBConnection connectionOf(const QString& connectionString, bool pooled = true) const;
    DBConnection connection(bool pooled = true) const {
        return connectionOf(m_server.connectionString(), pooled);
    }
    int logins() const;

    const QStringList m_arguments{QStringLiteral("--script"), QFINDTESTDATA("browsing.sql")};
    testsupport::RunningSampleServer m_server{m_arguments};
    ado::Connection m_probe;
    ConnectionPool::Clock::time_point m_now{};
    std::shared_ptr<ConnectionPool> m_pool;
};

void TestConnectionPool::initTestCase() {
    m_probe.Open(m_server.connectionString());
}

void TestConnectionPool::init() {
    m_now = {};
    m_pool = std::make_shared<ConnectionPool>([this] { return m_now; });
}

DBConnection TestConnectionPool::connectionOf(const QString& connectionString, bool pooled) const {
    DBConnection connection(pooled ? m_pool : nullptr);
    connection.setConnectionString(connectionString);
    return connection;
}

/// How many logins the server has counted.
int TestConnectionPool::logins() const {
    ado::Recordset rows;
    rows.Open(QStringLiteral("SELECT @@CONNECTIONS AS n"), m_probe);
    return rows.Fields(QStringLiteral("n")).text().toString().toInt();
}

void TestConnectionPool::savesLogins_data() {
    const testsupport::Table<Routine, int> row("routine", "atOnce");
    row("databases", databases, 1);
    row("tables", tables, 1);
    row("columns", columns, 1);
    row("definition", definition, 1);
    row("rows", oneRow, 1);
    row("details: three at a time", details, 3);
}

void TestConnectionPool::savesLogins() {
    QFETCH(Routine, routine);
    QFETCH(int, atOnce);
    const testsupport::Answers answers;
    DBConnection fresh = connection(false);
    const int first = logins();
    const QStringList expected = routine(fresh);
    QVERIFY(expected.size() > 1);
    QCOMPARE(logins() - first, atOnce);

    DBConnection pooled = connection();
    const int second = logins();
    for (int i = 0; i < 3; ++i)
        QCOMPARE(routine(pooled), expected);
    DBConnection other = connection();
    QCOMPARE(routine(other), expected);
    QCOMPARE(logins() - second, atOnce);
}

void TestConnectionPool::keepsApart_data() {
    const testsupport::Table<QString, QString, int> row("user", "database", "newLogins");
    row("the same", "sa", Listing, 0);
    row("another database", "sa", "Workshop", 1);
    row("another spelling", "sa", "LISTING", 1);
    row("another user", "clerk", Listing, 1);
}

void TestConnectionPool::keepsApart() {
    QFETCH(QString, user);
    QFETCH(QString, database);
    const testsupport::Answers answers;
    DBConnection first = connection();
    tables(first);
    const int before = logins();
    DBConnection second =
        connectionOf(m_server.connectionString(user, user == QStringLiteral("sa") ? QString() : user));
    controls::ComboItems combo;
    QVERIFY(second.FillCbTable(combo, database));
    QTEST(logins() - before, "newLogins");

    // The tree tries the login, and leaves nothing behind.
    const int beforeTree = logins();
    controls::Nodes tree;
    const size_t kept = m_pool->count();
    QVERIFY(second.FillTvDB(tree));
    QVERIFY(logins() - beforeTree >= 2);
    QCOMPARE(m_pool->count(), kept);
}

void TestConnectionPool::lendsWhatIsIdle() {
    const QString text = m_server.connectionString();
    {
        ado::Connection own;
        own.Open(text);
        m_pool->keep(text, own);
        QVERIFY2(!m_pool->take(text), "It is in use.");
    }
    const std::optional<ado::Connection> taken = m_pool->take(text);
    QVERIFY(taken && taken->isOpen());
    QVERIFY2(!m_pool->take(text), "It is in use again.");
    for (size_t i = 0; i < ConnectionPool::MostKept; ++i) {
        ado::Connection further;
        further.Open(text);
        m_pool->keep(text, further);
    }
    QCOMPARE(m_pool->count(), ConnectionPool::MostKept);
}

/// A server that is slow is not asked again at once.
void TestConnectionPool::waitsOnlyOnce() {
    const QString text = m_server.connectionString();
    {
        ado::Connection hasty;
        hasty.setCommandTimeout(1);
        hasty.Open(text);
        m_pool->keep(text, hasty);
    }
    const int before = logins();
    tw::CatalogReading reading({m_pool.get()}, text, QStringLiteral("waitfor delay '0:0:5'"));
    reading.open();
    try {
        reading.rows();
        QFAIL("There is no time-out.");
    } catch (const ado::Error& error) {
        QCOMPARE(error.number(), ado::numbers::TimeOut);
    }
    QCOMPARE(logins(), before);
}

void TestConnectionPool::dropsFailed_data() {
    const testsupport::Table<QString, int> row("table", "boxes");
    row("a statement that breaks", "Gone", 1);
    row("the first of several owners", "Notes", 0);
}

void TestConnectionPool::dropsFailed() {
    QFETCH(QString, table);
    QFETCH(int, boxes);
    testsupport::Answers answers;
    DBConnection pooled = connection();
    const int before = logins();
    controls::ListItems list;
    pooled.FillLvTblData(list, Listing, table, 50);
    for (int i = 0; i < boxes; ++i)
        answers.takeBox();
    QVERIFY(!pooled.tellLostConnection());
    definition(pooled);
    QCOMPARE(logins() - before, 2);
}

void TestConnectionPool::replacesCutLine() {
    testsupport::Relay relay(m_server.port());
    const testsupport::Answers answers;
    DBConnection pooled = connectionOf(connectionString(relay.serverText()));
    const QStringList expected = details(pooled);
    const int before = logins();
    relay.cut();
    QCOMPARE(details(pooled), expected);
    QCOMPARE(logins() - before, 3);
}

void TestConnectionPool::deadServerIsNoSecret_data() {
    savesLogins_data();
}

/// A server that died behind a kept connection is told of in the very words of a fresh one.
void TestConnectionPool::deadServerIsNoSecret() {
    QFETCH(Routine, routine);
    testsupport::SampleServerProcess server;
    QVERIFY(server.start(m_arguments));
    testsupport::Answers answers;
    DBConnection pooled = connectionOf(server.connectionString());
    DBConnection fresh = connectionOf(server.connectionString(), false);
    routine(pooled);
    QVERIFY(m_pool->count() > 0);
    server.kill();

    const QStringList expected = routine(fresh);
    QVERIFY(fresh.tellLostConnection());
    QCOMPARE(answers.boxes(), 1);
    const QString words = answers.takeBox().text;
    QCOMPARE(routine(pooled), expected);
    QVERIFY(pooled.tellLostConnection());
    QCOMPARE(answers.boxes(), 1);
    QCOMPARE(answers.takeBox().text, words);
}

void TestConnectionPool::lossIsReportedOnce_data() {
    const testsupport::Table<bool, QStringList> row("once", "procedures");
    row("for each step", false, {"FindTablePrimaryKey", "FindTableForeignKey"});
    row("once", true, {"FindTablePrimaryKey"});
}

/// A line that is lost between the statements of one routine.
void TestConnectionPool::lossIsReportedOnce() {
    QFETCH(bool, once);
    QFETCH(QStringList, procedures);
    testsupport::Relay relay(m_server.port());
    testsupport::Answers answers;
    DBConnection pooled = connectionOf(connectionString(relay.serverText()));
    const QString keyColumn = QStringLiteral("ColName");
    relay.cutAt(QByteArray(reinterpret_cast<const char*>(keyColumn.utf16()), 2 * keyColumn.size()), 1);
    if (once) pooled.setFollower({[] { return true; }, {}});
    definition(pooled);
    QVERIFY(pooled.tellLostConnection());
    for (const QString& procedure : procedures)
        QVERIFY(answers.takeBox().text.contains(procedure));
    QCOMPARE(answers.boxes(), 0);
    relay.reset();
    definition(pooled);
    QVERIFY(!pooled.tellLostConnection());
}

void TestConnectionPool::followerEndsReading_data() {
    const testsupport::Table<int, int> row("goesOnFor", "statements");
    row("after the columns", 0, 1);
    row("after the primary key", 1, 2);
    row("after the foreign keys", 2, 3);
    row("not at all", 3, 3);
}

void TestConnectionPool::followerEndsReading() {
    QFETCH(int, goesOnFor);
    testsupport::Relay relay(m_server.port());
    const testsupport::Answers noBoxes;
    DBConnection pooled = connectionOf(connectionString(relay.serverText()));
    const QStringList whole = definition(pooled);
    relay.reset();
    int asked = 0;
    pooled.setFollower({[&] { return ++asked <= goesOnFor; }, {}});
    QCOMPARE(definition(pooled), goesOnFor < 3 ? QStringList() : whole);
    QTEST(int(relay.batches().size()), "statements");
    pooled.setFollower({});
    QCOMPARE(definition(pooled), whole);
}

void TestConnectionPool::noticesChanges_data() {
    const testsupport::Table<QString> row("script");
    row("password changed", "EXEC sp_addlogin 'clerk', 'changed'\nGO\n");
    row("database closed", "EXEC sp_addlogin 'clerk', 'clerk'\nGO\nCREATE DATABASE Listing\nGO\n");
}

/// The line leads to a server that knows the change; what was logged in before goes on unawares. Even a
/// connection that is never idle is closed in time.
void TestConnectionPool::noticesChanges() {
    QFETCH(QString, script);
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(script.toUtf8());
    file.close();
    const testsupport::RunningSampleServer changed(
        {QStringLiteral("--no-sample-data"), QStringLiteral("--script"), file.fileName()});
    testsupport::Relay relay(m_server.port());
    testsupport::Answers answers;
    DBConnection pooled =
        connectionOf(connectionString(relay.serverText(), QStringLiteral("clerk"), QStringLiteral("clerk")));
    const QStringList expected = definition(pooled);
    relay.leadTo(changed.port());

    constexpr ConnectionPool::Clock::duration step =
        ConnectionPool::Clock::duration(ConnectionPool::Lifetime) / 10;
    for (int i = 1; i < 10; ++i) {
        m_now += step;
        QCOMPARE(definition(pooled), expected);
    }
    QCOMPARE(answers.boxes(), 0);
    m_now += step;
    QCOMPARE(definition(pooled), QStringList());
    QVERIFY(answers.takeBox().text.contains(QStringLiteral("FillLvTblDef")));
}

void TestConnectionPool::closesIdle() {
    const testsupport::Answers answers;
    DBConnection pooled = connection();
    details(pooled);
    QCOMPARE(m_pool->count(), 3);
    m_now += ConnectionPool::Lifetime;
    QTRY_COMPARE(m_pool->count(), 0);
}

QTEST_GUILESS_MAIN(TestConnectionPool)
#include "test_connectionpool.moc"
