#include "engine/catalog/world.h"
#include "engine/session/generated.h"
#include "engine/store/rowstore.h"
#include "support/table.h"

#include <QTest>

#include <sqlite3.h>

using namespace engine;

namespace {

/// All rows of a table as one text.
QByteArray contents(const Database& database, const Table& table) {
    QByteArray text;
    StoreStatement rows(database.keeper, "SELECT * FROM \"" + table.storage.toUtf8() + "\" ORDER BY c0");
    while (rows.step()) {
        for (size_t i = 0; i < table.columns.size(); ++i) {
            const Value value = rows.value(static_cast<int>(i), {.id = TypeId::VarBinary});
            if (const auto* bytes = std::get_if<QByteArray>(&value)) text += bytes->toHex();
            text += '|';
        }
        text += '\n';
    }
    return text;
}

const Table& tableNamed(const Database& database, const char* name) {
    return *database.findTable({}, QString::fromLatin1(name), QStringLiteral("dbo"));
}

}  // namespace

/// Databases that are made by numbers.
class TestGenerated : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void sameNumbersMakeTheSame();
    void countsRows_data();
    void countsRows();
    void referencesHold();
    void manyDatabases();
};

void TestGenerated::sameNumbersMakeTheSame() {
    World first;
    World second;
    for (World* world : {&first, &second})
        addLargeDatabase(*world, QStringLiteral("Big"), 5, 22, 20);
    const Database& one = *first.findDatabase(QStringLiteral("Big"));
    const Database& other = *second.findDatabase(QStringLiteral("Big"));
    QCOMPARE(one.tables.size(), size_t(5));
    for (size_t i = 0; i < one.tables.size(); ++i) {
        QCOMPARE(one.tables[i]->columns.size(), size_t(22));
        const QByteArray text = contents(one, *one.tables[i]);
        QCOMPARE(text.count('\n'), 20);
        QCOMPARE(text, contents(other, *other.tables[i]));
    }
    QVERIFY(contents(one, *one.tables[0]) != contents(one, *one.tables[1]));
}

void TestGenerated::countsRows_data() {
    const testsupport::Table<int, qint64> row("columns", "rows");
    row("no row", 4, qint64(0));
    row("one column", 1, qint64(3));
    row("one by one", 3, qint64(1024));
    row("one more", 3, qint64(1025));
    row("doubled and cut", 8, qint64(5000));
}

void TestGenerated::countsRows() {
    QFETCH(int, columns);
    QFETCH(qint64, rows);
    World world;
    addLargeDatabase(world, QStringLiteral("A [odd] name"), 1, columns, rows);
    const Database& database = *world.findDatabase(QStringLiteral("A [odd] name"));
    const Table& table = tableNamed(database, "Table0001");
    QCOMPARE(countRows(database.keeper, table), rows);
    StoreStatement keys(database.keeper, "SELECT count(DISTINCT c0), coalesce(max(c0), 0) FROM \"" +
                                             table.storage.toUtf8() + '"');
    QVERIFY(keys.step());
    QCOMPARE(keys.integer(0), rows);
    QCOMPARE(keys.integer(1), rows);
}

void TestGenerated::referencesHold() {
    World world;
    addLargeDatabase(world, QStringLiteral("Big"), 4, 6, 3000);
    const Database& database = *world.findDatabase(QStringLiteral("Big"));
    const QByteArray from = tableNamed(database, "Table0003").storage.toUtf8();
    const QByteArray to = tableNamed(database, "Table0002").storage.toUtf8();
    StoreStatement orphans(database.keeper, "SELECT count(*), (SELECT count(*) FROM \"" + from +
                                                "\" WHERE c1 IS NOT NULL) FROM \"" + from +
                                                "\" WHERE c1 IS NOT NULL AND c1 NOT IN (SELECT c0 FROM \"" +
                                                to + "\")");
    QVERIFY(orphans.step());
    QCOMPARE(orphans.integer(0), 0);
    QVERIFY(orphans.integer(1) > 0);
    QCOMPARE(tableNamed(database, "Table0003").foreignKeys.size(), size_t(1));
    QCOMPARE(tableNamed(database, "Table0001").indexes.size(), size_t(2));
    QCOMPARE(tableNamed(database, "Table0001").checks.size(), size_t(1));
}

void TestGenerated::manyDatabases() {
    World world;
    const size_t before = world.databases().size();
    addManyDatabases(world, 12, 3);
    world.seal();
    QCOMPARE(world.databases().size(), before + 12);
    for (const char* name : {"Branch0001", "Branch0012"}) {
        const Database* database = world.findDatabase(QString::fromLatin1(name));
        QVERIFY(database != nullptr);
        QVERIFY(database->findTable({}, QStringLiteral("Table0003"), QStringLiteral("dbo")) != nullptr);
    }
}

QTEST_GUILESS_MAIN(TestGenerated)
#include "test_generated.moc"
