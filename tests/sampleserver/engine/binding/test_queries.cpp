#include "recordingsink.h"
#include "shopworld.h"
#include "support/table.h"

#include <QTest>

/// Queries over the tables of a small shop: their columns, rows and refusals.
class QueriesTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() {
        m_world = shopWorld();
        m_session = shopSession(m_world);
    }
    void results_data();
    void results();
    void resultColumns_data();
    void resultColumns();
    void refusals_data();
    void refusals();
    void hugeStatements_data();
    void hugeStatements();
    void manyDatabases();

  private:
    std::shared_ptr<const engine::World> m_world;
    std::unique_ptr<engine::Session> m_session;
};

void QueriesTest::results_data() {
    const testsupport::TextTable<QString> row("statement", "expected");
    // Tables by all their names, columns by all theirs.
    row("SELECT name FROM customers ORDER BY id", "Ann;bob;Cid");
    row("SELECT [NAME] FROM shop..Customers WHERE \"id\" = 2", "bob");
    row("SELECT dbo.customers.name, shop.dbo.customers.id FROM shop.dbo.customers WHERE id = 1", "Ann|1");
    row("SELECT nick FROM clerk.customers", "Cl");
    row("SELECT a.id, b.id FROM dbo.customers a, clerk.customers AS b WHERE a.id = 1", "1|9");
    row("SELECT dbo.customers.id FROM dbo.customers, clerk.customers WHERE dbo.customers.id < 2", "1");
    row("SELECT bars FROM vault..gold", "7");
    row("SELECT name FROM customers WITH (NOLOCK) WHERE id = 1", "Ann");
    row("SELECT name FROM customers (nolock) c WHERE c.id = 1", "Ann");
    // What a value looks like.
    row("SELECT * FROM orders WHERE id = 1", "1|1|5|1.5|AB|1|200|0x0102");
    row("SELECT city, credit, rate, since, note, guid, big FROM customers WHERE id = 1",
        "Rome      |10.5000|1.25|Feb  3 2001  4:05AM|hello world|6F9619FF-8B86-D011-B42D-00C04FC964FF|"
        "12345678901234567890.12345");
    row("SELECT city, credit, rate, since, note, guid FROM customers WHERE id = 3",
        "NULL|99.9900|NULL|NULL|x|00000000-0000-0000-0000-000000000001");
    // Conditions on columns.
    row("SELECT id FROM customers WHERE city = 'ROME'", "1");
    row("SELECT id FROM customers WHERE credit > 10.5", "3");
    row("SELECT id FROM customers WHERE credit = 99.99", "3");
    row("SELECT id FROM customers WHERE rate >= 1.250 AND rate < '2.6' ORDER BY id", "1;2");
    row("SELECT id FROM customers WHERE since BETWEEN '1999-12-31' AND '2000-01-01'", "2");
    row("SELECT id FROM customers WHERE big < 1.00001 ORDER BY big", "3;2");
    row("SELECT id FROM customers WHERE note LIKE '%WORLD'", "1");
    row("SELECT id FROM customers WHERE NOT (rate > 2)", "1");
    row("SELECT id FROM orders WHERE raw = 0x0102 AND flag = 1 AND price = 1.50", "1");
    row("SELECT id FROM orders WHERE qty & 1 = 1 AND tiny IS NOT NULL ORDER BY id DESC", "2;1");
    // Joins.
    row("SELECT c.name, o.qty FROM customers c LEFT JOIN orders o ON c.id = o.cust ORDER BY c.name, qty DESC",
        "Ann|7;Ann|5;bob|1;Cid|NULL");
    row("SELECT c.name, o.qty FROM orders o RIGHT OUTER JOIN customers c ON c.id = o.cust AND qty > 5 ORDER "
        "BY name",
        "Ann|7;bob|NULL;Cid|NULL");
    row("SELECT a.id, b.id FROM customers a FULL JOIN clerk.customers b ON a.id = b.id ORDER BY a.id",
        "NULL|9;1|NULL;2|NULL;3|NULL");
    row("SELECT c.name FROM customers c, orders o WHERE c.id = o.cust AND o.qty = 7", "Ann");
    row("SELECT count(*) FROM customers CROSS JOIN orders", "9");
    row("SELECT c.name, d.id FROM customers c LEFT JOIN (orders o INNER JOIN customers d ON d.id = o.cust "
        "AND o.qty = 7) "
        "ON c.id = o.cust ORDER BY c.id",
        "Ann|1;bob|NULL;Cid|NULL");
    row("SELECT c.name, x.id FROM customers c JOIN orders o JOIN customers x ON x.id = o.cust ON c.id = "
        "o.cust "
        "WHERE o.id = 3",
        "bob|2");
    row("SELECT a.name, qty, nick FROM (customers AS a INNER JOIN (orders LEFT JOIN clerk.customers k ON "
        "k.id = orders.id + 8) "
        "ON a.id = orders.cust) ORDER BY orders.id",
        "Ann|5|Cl;Ann|7|NULL;bob|1|NULL");
    row("SELECT c.id, o.id FROM customers c LEFT JOIN orders o ON o.cust = c.id WHERE o.id IS NULL",
        "3|NULL");
    // Groups.
    row("SELECT cust, count(*), sum(qty), avg(qty), min(code), max(price) FROM orders GROUP BY cust ORDER BY "
        "cust",
        "1|2|12|6|AB|2.5;2|1|1|1|zz|NULL");
    row("SELECT count(price), count(DISTINCT code), sum(DISTINCT cust) FROM orders", "2|2|3");
    row("SELECT code, count(*) FROM orders GROUP BY code HAVING count(*) > 1", "AB|2");
    row("SELECT qty % 2, sum(tiny) FROM orders GROUP BY qty % 2", "1|300");
    row("SELECT YEAR(since) + 1, count(*) n FROM customers GROUP BY YEAR(since) ORDER BY n, YEAR(since)",
        "NULL|1;2000|1;2002|1");
    row("SELECT sum(rate), avg(rate), sum(credit), avg(credit), sum(big), avg(big) FROM customers",
        "3.75|1.875000|110.4900|55.2450|12345678901234567886.12345|4115226300411522628.707816");
    row("SELECT sum(qty), max(name), count(*) FROM orders, customers WHERE 1 = 2", "NULL|NULL|0");
    row("SELECT count(*) FROM orders HAVING count(*) > 5", "");
    row("SELECT count(*) FROM orders WHERE 1 = 2 HAVING count(*) = 0", "0");
    row("SELECT 'one' FROM orders WHERE 1 = 2 HAVING 1 = 1", "one");
    row("SELECT 'many' FROM orders HAVING count(*) > 2", "many");
    // Sets.
    row("SELECT count(*) FROM (SELECT DISTINCT code FROM orders) t", "2");
    row("SELECT 1 UNION SELECT 2 UNION ALL SELECT 1 ORDER BY 1", "1;1;2");
    row("SELECT 1 UNION ALL (SELECT 2 UNION SELECT 2)", "1;2");
    row("SELECT len(x) FROM (SELECT 'a' AS x UNION SELECT 'A ') t", "1");
    row("SELECT 1 AS n UNION ALL SELECT 2.5 ORDER BY n DESC", "2.5;1.0");
    row("SELECT NULL UNION ALL SELECT 'x'", "NULL;x");
    row("SELECT TOP 2 id FROM customers ORDER BY id DESC", "3;2");
    row("SELECT TOP 34 PERCENT id FROM customers ORDER BY id", "1;2");
    row("SELECT TOP 1 1 AS a UNION ALL SELECT TOP 1 id FROM customers WHERE id > 1", "1;2");
    row("SELECT TOP 0 id FROM customers", "");
    // Order.
    row("SELECT name AS n, id AS name FROM customers ORDER BY name DESC", "Cid|3;bob|2;Ann|1");
    row("SELECT id FROM customers ORDER BY guid", "2;3;1");
    row("SELECT id FROM customers ORDER BY rate DESC, 1", "2;1;3");
    row("SELECT id FROM customers ORDER BY city + 'x', LEN(name)", "3;2;1");
    // Queries within queries.
    row("SELECT name FROM customers WHERE id IN (SELECT cust FROM orders WHERE qty > 2)", "Ann");
    row("SELECT name FROM customers WHERE id NOT IN (SELECT cust FROM orders)", "Cid");
    row("SELECT name FROM customers c WHERE EXISTS (SELECT * FROM orders WHERE cust = c.id AND qty < 2)",
        "bob");
    row("SELECT name, (SELECT max(qty) FROM orders WHERE cust = c.id) AS m FROM customers c ORDER BY 1",
        "Ann|7;bob|1;Cid|NULL");
    row("SELECT name FROM customers WHERE name IN (SELECT 'ANN ')", "Ann");
    row("SELECT id FROM customers WHERE rate IN (SELECT 1.2500)", "1");
    row("SELECT t.n, t.total FROM (SELECT cust n, sum(qty) total FROM orders GROUP BY cust) AS t WHERE total "
        "> 5",
        "1|12");
    row("SELECT a, b FROM (SELECT 1, 'x') AS t (a, b)", "1|x");
    row("SELECT cust FROM orders o GROUP BY cust HAVING count(*) > (SELECT count(*) FROM customers WHERE id "
        "= o.cust)",
        "1");
    row("SELECT (SELECT qty FROM orders WHERE id = 3) + 1", "2");
    // Several statements.
    row("DECLARE @n int, @s varchar(5) SET @n = 2 SELECT @s = name FROM customers WHERE id = @n SELECT @s, "
        "@n + 1",
        "bob|3");
    row("DECLARE @n int SELECT @n = 0 SELECT @n = @n + qty FROM orders WHERE id = 2 SELECT @n = @n + 1 "
        "SELECT @n",
        "8");
    row("DECLARE @n int SELECT @n = 1 SELECT @n = MIN(id) FROM orders WHERE id > @n SELECT @n", "2");
    row("SELECT id FROM customers WHERE id = 99; SELECT @@ROWCOUNT", "0");
    row("BEGIN TRAN SELECT @@TRANCOUNT COMMIT", "1");
}

void QueriesTest::results() {
    QFETCH(QString, statement);
    QFETCH(QString, expected);
    RecordingSink sink;
    m_session->execute(statement, sink);
    if (!sink.errors.empty()) QFAIL(qPrintable(sink.errors[0].text));
    QCOMPARE(sink.rows.join(u';'), expected);
}

void QueriesTest::resultColumns_data() {
    const testsupport::Table<QString, QString, QString> row("statement", "names", "types");
    row("as written", "SELECT NAME, c.Id, count(*) FROM customers c GROUP BY NAME, c.Id", "NAME,Id,",
        "varchar(30) int int");
    row("aliases", "SELECT a = 1, 2 b, 3 AS [c d], 4 'e', 'f' = 5, 6 AS \"g\"", "a,b,c d,e,f,g",
        "int int int int int int");
    row("star", "SELECT k.*, 1 FROM clerk.customers k", "id,nick,", "int varchar(10) int");
    row("union", "SELECT id, name, rate FROM customers UNION SELECT 1, N'x', 1", "id,name,rate",
        "int nvarchar(30) decimal(12,2)");
    row("aggregates", "SELECT sum(qty) a, sum(price) b, avg(qty * 1.0) c, min(tiny) d FROM orders", "a,b,c,d",
        "int float numeric(38,6) tinyint");
    row("no rows", "SELECT * FROM orders WHERE 1 = 2", "id,cust,qty,price,code,flag,tiny,raw",
        "int int smallint float nvarchar(10) bit tinyint varbinary(8)");
}

void QueriesTest::resultColumns() {
    QFETCH(QString, statement);
    QFETCH(QString, names);
    QFETCH(QString, types);
    RecordingSink sink;
    m_session->execute(statement, sink);
    if (!sink.errors.empty()) QFAIL(qPrintable(sink.errors[0].text));
    QCOMPARE(sink.names.join(u','), names);
    QCOMPARE(sink.types.join(u' '), types);
}

void QueriesTest::refusals_data() {
    const testsupport::TextTable<int> row("statement", "number");
    row("SELECT", 170);
    row("SELECT 1 +", 170);
    row("SELECT * FROM", 170);
    row("SELECT FROM customers", 156);
    row("SELECT id FROM customers WHERE", 170);
    row("SELECT id FROM customers WHERE id", 170);
    row("SELECT (id = 1) FROM customers", 156);
    row("SELECT id FROM customers ORDER id", 170);
    row("SELECT 1 1", 170);
    row("SELECT id FROM customers COMPUTE sum(id)", 156);
    row("SELECT id FROM customers WHERE id = ANY (SELECT 1)", 156);
    row("SELECT TOP 1.5 id FROM customers", 170);
    row("SELECT TOP 1 WITH TIES id FROM customers ORDER BY id", 156);
    row("WHILE 1 = 1 SELECT 1", 156);
    row("SELECT * FROM nothere", 208);
    row("SELECT * FROM shop.clerk.orders", 208);
    row("SELECT * FROM nodb..orders", 208);
    row("SELECT * FROM a.b.c.d", 7202);
    row("SELECT nothere FROM customers", 207);
    row("SELECT c.nothere FROM customers c", 207);
    row("SELECT customers.id FROM customers c", 107);
    row("SELECT x.* FROM customers", 107);
    row("SELECT *", 263);
    row("SELECT id FROM customers, orders", 209);
    row("SELECT a.id FROM customers a, orders a", 1013);
    row("SELECT c.name FROM customers c JOIN orders o ON c.id = k.id, clerk.customers k", 107);
    row("SELECT name, count(*) FROM customers", 8118);
    row("SELECT name, count(*) FROM customers GROUP BY id", 8120);
    row("SELECT id + 1 FROM customers GROUP BY id + 2", 8120);
    row("SELECT count(*) FROM customers GROUP BY id HAVING name = 'x'", 8121);
    row("SELECT count(*) FROM customers GROUP BY id ORDER BY name", 8127);
    row("SELECT (SELECT max(qty) FROM orders WHERE cust = c.id), count(*) FROM customers c", 8118);
    row("SELECT id FROM customers WHERE count(*) > 1", 147);
    row("SELECT sum(count(*)) FROM customers", 130);
    row("SELECT sum(name) FROM customers", 409);
    row("SELECT sum(flag) FROM orders", 409);
    row("SELECT count(*) FROM orders GROUP BY 1", 164);
    row("SELECT 1, 2 UNION SELECT 1", 205);
    row("SELECT id FROM customers UNION SELECT 1 ORDER BY name", 104);
    row("SELECT id FROM customers ORDER BY 2", 108);
    row("SELECT DISTINCT id FROM customers ORDER BY name", 145);
    row("SELECT DISTINCT note FROM customers", 8163);
    row("SELECT id FROM customers ORDER BY note", 420);
    row("SELECT id FROM customers WHERE note = 'x'", 306);
    row("SELECT id FROM customers WHERE credit = name", 257);
    row("SELECT id FROM customers WHERE id = (SELECT id, name FROM customers)", 116);
    row("SELECT id FROM customers WHERE id = (SELECT cust FROM orders)", 512);
    row("SELECT * FROM (SELECT 1) t", 8155);
    row("SELECT * FROM (SELECT id FROM customers ORDER BY id) t", 1033);
    row("SELECT id FROM customers WHERE name = 1", 245);
    row("SELECT id / (id - id) FROM customers", 8134);
    row("INSERT INTO customers (id) VALUES (1)", 3906);
    row("UPDATE customers SET id = 1", 3906);
    row("DELETE customers", 3906);
    row("TRUNCATE TABLE customers", 3906);
    row("SELECT id INTO copy FROM customers", 3906);
    row("CREATE TABLE t (a int)", 262);
    row("DROP TABLE customers", 262);
    row("USE nodb", 911);
    row("EXEC nosuch 1", 2812);
    row("COMMIT TRAN", 3902);
    row("DECLARE @n int SELECT @n = 0 SELECT @n = @n + qty FROM orders", 8624);
    row("DECLARE @a int, @b int SELECT @a = 1, @b = @a", 8624);
    row("SET ANSI_NULLS OFF", 2741);
    row("SET XACT_ABORT ON", 2741);
}

void QueriesTest::refusals() {
    QFETCH(QString, statement);
    QFETCH(int, number);
    RecordingSink sink;
    m_session->execute(statement, sink);
    QVERIFY2(sink.rows.isEmpty(), qPrintable(sink.rows.join(u'\n')));
    QCOMPARE(sink.errorNumbers(), QString::number(number));
}

void QueriesTest::hugeStatements_data() {
    const testsupport::Table<QString, int> row("statement", "number");
    // 0: it runs
    const auto times = [](int count, const char* text) { return QString::fromLatin1(text).repeated(count); };
    row("list", QStringLiteral("SELECT 1 WHERE 5 IN (") + times(3000, "5, ") + QStringLiteral("6)"), 0);
    row("parentheses", QStringLiteral("SELECT ") + times(50000, "("), 191);
    row("signs", QStringLiteral("SELECT ") + times(50000, "- ") + QStringLiteral("1"), 191);
    row("sum", QStringLiteral("SELECT 1") + times(50000, " + 1"), 191);
    row("alternatives", QStringLiteral("SELECT 1 WHERE 1 = 1") + times(50000, " OR 1 = 1"), 191);
    row("long condition", QStringLiteral("SELECT 1 WHERE 1 = 1") + times(2000, " OR 1 = 1"), 8623);
    row("queries", times(50000, "SELECT * FROM ("), 191);
    row("unions", times(50000, "SELECT 1 UNION ") + QStringLiteral("SELECT 1"), 156);
    row("joins", QStringLiteral("SELECT 1 FROM orders") + times(50000, " JOIN orders"), 191);
    row("text", QStringLiteral("SELECT '") + times(200000, "x") + QStringLiteral("' + 1"), 245);
}

void QueriesTest::hugeStatements() {
    QFETCH(QString, statement);
    QFETCH(int, number);
    RecordingSink sink;
    m_session->execute(statement, sink);
    QCOMPARE(sink.errorNumbers(), number == 0 ? QString() : QString::number(number));
}

/// A session reads more databases in turn than SQLite attaches at once.
void QueriesTest::manyDatabases() {
    auto world = std::make_shared<engine::World>();
    QString script;
    for (int i = 0; i < 25; ++i) {
        script += QStringLiteral(
                      "CREATE DATABASE n%1\nGO\nUSE n%1\nGO\nCREATE TABLE t (v int)\nGO\nINSERT INTO t "
                      "VALUES (%1)\nGO\n")
                      .arg(i);
    }
    engine::runScript(*world, script);
    world->seal();
    engine::Session session(world, 60);
    QVERIFY(session
                .login({.user = QStringLiteral("sa"),
                        .password = {},
                        .database = {},
                        .clientHost = {},
                        .application = {}})
                .empty());
    for (int i = 0; i < 50; ++i) {
        RecordingSink sink;
        session.execute(
            QStringLiteral("SELECT a.v + b.v * 100 FROM n%1..t a, n%2..t b").arg(i % 25).arg((i + 7) % 25),
            sink);
        QCOMPARE(sink.rows, QStringList{QString::number(i % 25 + (i + 7) % 25 * 100)});
    }
}

QTEST_APPLESS_MAIN(QueriesTest)
#include "test_queries.moc"
