#include "dbaccess/connectionpool.h"
#include "dbaccess/dbconnection.h"
#include "platform/ado/recordset.h"
#include "platform/controls/comboitems.h"
#include "platform/controls/listitems.h"
#include "platform/controls/nodes.h"
#include "support/answers.h"
#include "support/relay.h"
#include "support/sampleserverprocess.h"

#include <QTemporaryFile>
#include <QTest>

using tw::ConnectionPool;
using tw::DBConnection;

namespace {

const QString Listing = QStringLiteral("Listing");
const QString Deal = QStringLiteral("Deal");

/// A catalog routine as a caller sees it: what it gives.
using Routine = QStringList (*)(DBConnection&);

QStringList textsOf(const controls::ListItems& list) {
    QStringList texts;
    for (int item = 0; item < list.count(); ++item) {
        for (int column = 0; column < 11; ++column)
            texts += list.subItem(item, column);
    }
    return texts;
}

QStringList textsOf(const controls::ComboItems& combo) {
    QStringList texts;
    for (int i = 0; i < combo.count(); ++i)
        texts += combo.text(i);
    return texts;
}

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
    return textsOf(list);
}

QStringList oneRow(DBConnection& connection) {
    controls::ListItems list;
    const QString caption = connection.FillLvTblData(list, Listing, QStringLiteral("Kinds"), 1);
    return textsOf(list) + QStringList{caption};
}

QStringList details(DBConnection& connection) {
    controls::ListItems list;
    const QString heading = connection.FillLvDBDetail(list, Listing);
    return textsOf(list) + QStringList{heading};
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
    void limitOfRowsIsLifted();
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
    DBConnection connectionOf(const QString& user, const QString& serverText, bool pooled = true) const;
    DBConnection connection(bool pooled = true) const {
        return connectionOf(QStringLiteral("sa"), m_server.serverText(), pooled);
    }
    int logins() const;

    testsupport::SampleServerProcess m_server;
    ado::Connection m_probe;
    ConnectionPool::Clock::time_point m_now{};
    std::shared_ptr<ConnectionPool> m_pool;
};

void TestConnectionPool::initTestCase() {
    QVERIFY2(m_server.start({QStringLiteral("--script"), QFINDTESTDATA("browsing.sql")}),
             qUtf8Printable(m_server.errorText()));
    m_probe.Open(connection().getConnectionString());
}

void TestConnectionPool::init() {
    m_now = {};
    m_pool = std::make_shared<ConnectionPool>([this] { return m_now; });
}

DBConnection TestConnectionPool::connectionOf(const QString& user, const QString& serverText,
                                              bool pooled) const {
    DBConnection connection(pooled ? m_pool : nullptr);
    const QString password = user == QStringLiteral("sa") ? QString() : user;
    connection.setConnectionString(QStringLiteral("driver={SQL Server};server=") + serverText +
                                   QStringLiteral(";uid=") + user + QStringLiteral(";pwd=") + password);
    return connection;
}

/// How many logins the server has counted.
int TestConnectionPool::logins() const {
    ado::Recordset rows;
    rows.Open(QStringLiteral("SELECT @@CONNECTIONS AS n"), m_probe);
    return rows.Fields(QStringLiteral("n")).text().toString().toInt();
}

void TestConnectionPool::savesLogins_data() {
    QTest::addColumn<Routine>("routine");
    QTest::addColumn<int>("atOnce");
    QTest::newRow("databases") << Routine(databases) << 1;
    QTest::newRow("tables") << Routine(tables) << 1;
    QTest::newRow("columns") << Routine(columns) << 1;
    QTest::newRow("definition") << Routine(definition) << 1;
    QTest::newRow("rows") << Routine(oneRow) << 1;
    QTest::newRow("details: three at a time") << Routine(details) << 3;
}

void TestConnectionPool::savesLogins() {
    QFETCH(Routine, routine);
    QFETCH(int, atOnce);
    const testsupport::Answers answers;
    DBConnection fresh = connection(false);
    const int first = logins();
    const QStringList expected = routine(fresh);
    QVERIFY(expected.size() > 2);
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
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("database");
    QTest::addColumn<int>("newLogins");
    QTest::newRow("the same") << "sa" << Listing << 0;
    QTest::newRow("another database") << "sa"
                                      << "Workshop" << 1;
    QTest::newRow("another spelling") << "sa"
                                      << "LISTING" << 1;
    QTest::newRow("another user") << "clerk" << Listing << 1;
}

void TestConnectionPool::keepsApart() {
    QFETCH(QString, user);
    QFETCH(QString, database);
    const testsupport::Answers answers;
    DBConnection first = connection();
    tables(first);
    const int before = logins();
    DBConnection second = connectionOf(user, m_server.serverText());
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

/// The server would cut the listing of columns too.
void TestConnectionPool::limitOfRowsIsLifted() {
    const testsupport::Answers answers;
    DBConnection fresh = connection(false);
    const QStringList expected = definition(fresh);
    DBConnection pooled = connection();
    const int before = logins();
    oneRow(pooled);
    QCOMPARE(definition(pooled), expected);
    QCOMPARE(logins() - before, 1);
}

void TestConnectionPool::lendsWhatIsIdle() {
    const QString text = connection().getConnectionString();
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
    const QString text = connection().getConnectionString();
    {
        ado::Connection hasty;
        hasty.setCommandTimeout(1);
        hasty.Open(text);
        m_pool->keep(text, hasty);
    }
    const int before = logins();
    tw::CatalogReading reading(m_pool.get(), text, QStringLiteral("waitfor delay '0:0:5'"));
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
    QTest::addColumn<QString>("table");
    QTest::addColumn<int>("boxes");
    QTest::newRow("a statement that breaks") << "Gone" << 1;
    QTest::newRow("the first of several owners") << "Notes" << 0;
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
    DBConnection pooled = connectionOf(QStringLiteral("sa"), relay.serverText());
    const QStringList expected = details(pooled);
    const int before = logins();
    relay.cut();
    QCOMPARE(details(pooled), expected);
    QCOMPARE(logins() - before, 3);
}

void TestConnectionPool::deadServerIsNoSecret_data() {
    QTest::addColumn<Routine>("routine");
    QTest::newRow("databases") << Routine(databases);
    QTest::newRow("tables") << Routine(tables);
    QTest::newRow("columns") << Routine(columns);
    QTest::newRow("definition") << Routine(definition);
    QTest::newRow("rows") << Routine(oneRow);
    QTest::newRow("details") << Routine(details);
}

/// A server that died behind a kept connection is told of in the very words of a fresh one.
void TestConnectionPool::deadServerIsNoSecret() {
    QFETCH(Routine, routine);
    testsupport::SampleServerProcess server;
    QVERIFY(server.start({QStringLiteral("--script"), QFINDTESTDATA("browsing.sql")}));
    testsupport::Answers answers;
    DBConnection pooled = connectionOf(QStringLiteral("sa"), server.serverText());
    DBConnection fresh = connectionOf(QStringLiteral("sa"), server.serverText(), false);
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
    QTest::addColumn<bool>("once");
    QTest::addColumn<QStringList>("procedures");
    QTest::newRow("for each step") << false << QStringList{"FindTablePrimaryKey", "FindTableForeignKey"};
    QTest::newRow("once") << true << QStringList{"FindTablePrimaryKey"};
}

/// A line that is lost between the statements of one routine.
void TestConnectionPool::lossIsReportedOnce() {
    QFETCH(bool, once);
    QFETCH(QStringList, procedures);
    testsupport::Relay relay(m_server.port());
    testsupport::Answers answers;
    DBConnection pooled = connectionOf(QStringLiteral("sa"), relay.serverText());
    const QString keyColumn = QStringLiteral("ColName");
    relay.cutAt(QByteArray(reinterpret_cast<const char*>(keyColumn.utf16()), 2 * keyColumn.size()), 1);
    if (once) pooled.setFollower([] { return true; });
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
    QTest::addColumn<int>("goesOnFor");
    QTest::addColumn<int>("statements");
    QTest::newRow("after the columns") << 0 << 1;
    QTest::newRow("after the primary key") << 1 << 2;
    QTest::newRow("after the foreign keys") << 2 << 3;
    QTest::newRow("not at all") << 3 << 3;
}

void TestConnectionPool::followerEndsReading() {
    QFETCH(int, goesOnFor);
    testsupport::Relay relay(m_server.port());
    const testsupport::Answers noBoxes;
    DBConnection pooled = connectionOf(QStringLiteral("sa"), relay.serverText());
    const QStringList whole = definition(pooled);
    relay.reset();
    int asked = 0;
    pooled.setFollower([&] { return ++asked <= goesOnFor; });
    QCOMPARE(definition(pooled), goesOnFor < 3 ? QStringList() : whole);
    QTEST(int(relay.batches().size()), "statements");
    pooled.setFollower(nullptr);
    QCOMPARE(definition(pooled), whole);
}

void TestConnectionPool::noticesChanges_data() {
    QTest::addColumn<QString>("script");
    QTest::newRow("password changed") << "EXEC sp_addlogin 'clerk', 'changed'\nGO\n";
    QTest::newRow("database closed")
        << "EXEC sp_addlogin 'clerk', 'clerk'\nGO\nCREATE DATABASE Listing\nGO\n";
}

/// The line leads to a server that knows the change; what was logged in before goes on unawares. Even a
/// connection that is never idle is closed in time.
void TestConnectionPool::noticesChanges() {
    QFETCH(QString, script);
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(script.toUtf8());
    file.close();
    testsupport::SampleServerProcess changed;
    QVERIFY2(changed.start({QStringLiteral("--no-sample-data"), QStringLiteral("--script"), file.fileName()}),
             qUtf8Printable(changed.errorText()));
    testsupport::Relay relay(m_server.port());
    testsupport::Answers answers;
    DBConnection pooled = connectionOf(QStringLiteral("clerk"), relay.serverText());
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
