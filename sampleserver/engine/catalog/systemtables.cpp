#include "engine/catalog/systemtables.h"

namespace engine {

namespace {

const Table& systemTable(const Database& database, const char* name) {
    return *database.findTable(QStringLiteral("dbo"), QString::fromLatin1(name), {});
}

}  // namespace

SystemRows::SystemRows(const Database& database, const char* table)
    : m_appender(database.keeper, systemTable(database, table)) {}

void SystemRows::append(std::initializer_list<Value> values) {
    m_appender.append(std::span<const Value>(values.begin(), values.size()));
}

void fillSystemTables(const World& world, Database& database) {
    // Counted before the transaction, which would keep a lock for every table that it has read.
    std::vector<qint64> rowCounts;
    for (const auto& table : database.tables)
        rowCounts.push_back(countRows(database.keeper, *table));
    addSystemTables(database);
    rowCounts.resize(database.tables.size());
    StoreTransaction transaction(database.keeper);
    for (const auto& table : database.tables) {
        if (table->system) createStorage(database.keeper, *table);
    }
    fillObjects(database);
    fillColumns(database);
    fillIndexes(database, rowCounts);
    fillReferences(database);
    fillUsers(world, database);
    if (database.name == QLatin1String("master")) fillDatabases(world, database);
    transaction.commit();
}

void removeSystemTables(Database& database) {
    while (!database.tables.empty() && database.tables.back()->system) {
        executeStore(database.keeper, "DROP TABLE \"" + database.tables.back()->storage.toUtf8() + '"');
        database.removeLastTable();
    }
}

}  // namespace engine
