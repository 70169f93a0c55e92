#include "engine/session/generated.h"
#include "recordingsink.h"
#include "shopworld.h"

#include <QTest>

#include <thread>

/// The questions that catalog browsers ask, to the letter.
class CatalogQueriesTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() { m_world = shopWorld(); }
    void rows_data();
    void rows();
    void sessionsSideBySide();

  private:
    std::shared_ptr<const engine::World> m_world;
};

namespace {

QString primaryKeyQuery(const QString& table) {
    return QStringLiteral(
               "SELECT CONVERT(sysname,syscolumns.name) ColName FROM syscolumns INNER JOIN sysobjects "
               "ON sysobjects.id = OBJECT_ID('%1') INNER JOIN sysindexes ON sysobjects.id = sysindexes.id "
               "INNER JOIN syscolumns syscolumns_1 ON syscolumns_1.id = OBJECT_ID('%1') "
               "WHERE (sysobjects.ID = syscolumns.ID) AND       ((sysindexes.status & 0x800) = 0x800) AND "
               "      (syscolumns.name =        INDEX_COL('%1', sysindexes.indid, syscolumns_1.colid))")
        .arg(table);
}

}  // namespace

void CatalogQueriesTest::rows_data() {
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("names");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char* name, const QString& statement, const char* names, const char* expected) {
        QTest::newRow(name) << statement << QString::fromLatin1(names)
                            << QString::fromLatin1(expected).split(u';', Qt::SkipEmptyParts);
    };
    row("databases", QStringLiteral("SELECT Name FROM master..sysdatabases ORDER BY Name ASC"), "Name",
        "distribution;master;model;msdb;shop;tempdb;vault");
    row("tables", QStringLiteral("SELECT Name FROM sysobjects WHERE (Type = 'U') ORDER BY Name ASC"), "Name",
        "customers;customers;orders;secrets");
    row("primary key", primaryKeyQuery(QStringLiteral("orders")), "ColName", "cust;id");
    row("no primary key", primaryKeyQuery(QStringLiteral("secrets")), "ColName", "");
    row("primary key of no table", primaryKeyQuery(QStringLiteral("nothing")), "ColName", "");
    row("foreign keys",
        QStringLiteral(
            "SELECT syscolumns.name AS ColName,        sysobjects_1.name AS RefTableName,        "
            "syscolumns_1.name AS "
            "RefColName FROM (syscolumns AS syscolumns_1 INNER JOIN ((syscolumns   INNER JOIN sysreferences  "
            " "
            "ON (syscolumns.colid = sysreferences.fkey1) AND      (syscolumns.id = sysreferences.fkeyid))    "
            " "
            "INNER JOIN sysobjects     ON syscolumns.id = sysobjects.id) ON (syscolumns_1.colid = "
            "sysreferences.rkey1) AND    (syscolumns_1.id = sysreferences.rkeyid)) INNER JOIN sysobjects AS "
            "sysobjects_1 ON syscolumns_1.id = sysobjects_1.id WHERE (((sysobjects.Name) = 'orders'))"),
        "ColName,RefTableName,RefColName", "cust|customers|id");
    row("checks",
        QStringLiteral(
            "select sysobjects_2.name as A, sysobjects_1.name as B, syscomments.text C from sysobjects as "
            "sysobjects_1 ,syscomments, sysobjects as sysobjects_2 where sysobjects_1.xtype   = 'C'  and "
            "sysobjects_1.id = syscomments.id   and sysobjects_1.parent_obj = sysobjects_2.id order by A, B "
            "asc "),
        "A,B,C", "orders|ck_qty|(qty > 0)");
    row("index columns",
        QStringLiteral(
            "select sysobjects.name as A, sysindexes.name as B, syscolumns.name as C from sysindexes, "
            "sysobjects, syscolumns, sysindexkeys where sysindexes.indid <> 255   and sysindexes.name not "
            "like "
            "'_WA_Sys%'   and sysobjects.name <> 'dtproperties'   and sysobjects.name not like 'sys%'   and "
            "sysobjects.xtype = 'u'   and sysobjects.id = sysindexes.id   and sysobjects.id = syscolumns.id  "
            " "
            "and sysobjects.id = sysindexkeys.id   and sysindexes.indid = sysindexkeys.indid   and "
            "sysindexkeys.colid = syscolumns.colid   and sysindexes.name <> sysobjects.name "),
        "A,B,C",
        "customers|pk_customers|id;orders|ix_code|code;orders|ix_code|qty;orders|pk_orders|cust;orders|pk_"
        "orders|id");
    row("foreign key columns",
        QStringLiteral(
            "select sysobjects_1.name as A, sysobjects_2.name as B,   syscolumns_1.name as C, "
            "sysobjects_3.name as "
            "D, syscolumns_2.name as E from sysforeignkeys, sysobjects as sysobjects_1,   sysobjects as "
            "sysobjects_2, sysobjects as sysobjects_3,   syscolumns as syscolumns_1, syscolumns as "
            "syscolumns_2 "
            "where sysforeignkeys.constid = sysobjects_1.id   and sysforeignkeys.fkeyid = sysobjects_2.id   "
            "and "
            "sysforeignkeys.rkeyid = sysobjects_3.id   and sysforeignkeys.fkeyid = syscolumns_1.id   and "
            "sysforeignkeys.rkeyid = syscolumns_2.id   and sysforeignkeys.fkey = syscolumns_1.colid   and "
            "sysforeignkeys.rkey = syscolumns_2.colid "),
        "A,B,C,D,E", "orders|cust|customers|id");
    row("count", QStringLiteral("Select count(*) as x from [clerk].[customers]"), "x", "1");
}

void CatalogQueriesTest::rows() {
    QFETCH(QString, statement);
    QFETCH(QString, names);
    QFETCH(QStringList, expected);
    RecordingSink sink;
    shopSession(m_world)->execute(statement, sink);
    if (!sink.errors.empty()) QFAIL(qPrintable(sink.errors[0].text));
    QCOMPARE(sink.names.join(u','), names);
    // A foreign key without a name has one of the server's making.
    if (sink.names.size() == 5) {
        for (QString& row : sink.rows)
            row = row.section(u'|', 1);
    }
    if (!statement.contains(QLatin1String("order by"), Qt::CaseInsensitive)) sink.rows.sort();
    QCOMPARE(sink.rows, expected);
}

/// Sessions on threads of their own read one world at once.
void CatalogQueriesTest::sessionsSideBySide() {
    auto world = std::make_shared<engine::World>();
    engine::addLargeDatabase(*world, QStringLiteral("wide"), 60, 8, 20);
    world->seal();
    std::vector<QStringList> results(4);
    std::vector<std::thread> threads;
    for (QStringList& result : results) {
        threads.emplace_back([&result, world] {
            for (int i = 0; i < 20; ++i) {
                engine::Session session(world, 51);
                session.login({.user = QStringLiteral("sa"),
                               .password = {},
                               .database = QStringLiteral("wide"),
                               .clientHost = {},
                               .application = {}});
                RecordingSink sink;
                session.execute(
                    QStringLiteral(
                        "SELECT count(*), count(DISTINCT o.name) FROM sysobjects o, syscolumns c WHERE "
                        "o.id = c.id AND o.type = 'U'"),
                    sink);
                result += sink.rows;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QStringList expected(20, QStringLiteral("480|60"));
    for (const QStringList& result : results)
        QCOMPARE(result, expected);
}

QTEST_APPLESS_MAIN(CatalogQueriesTest)
#include "test_catalogqueries.moc"
