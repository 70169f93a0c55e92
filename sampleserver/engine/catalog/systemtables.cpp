#include "engine/catalog/systemtables.h"

#include "engine/values/typeinfo.h"

namespace engine {

namespace {

const Table& systemTable(const Database& database, const char* name) {
    return *database.findTable(QStringLiteral("dbo"), QString::fromLatin1(name), {});
}

}  // namespace

SystemRows::SystemRows(const Database& database, const char* table, const char* columns)
    : m_appender(database.keeper, systemTable(database, table)) {
    const Table& definition = systemTable(database, table);
    for (const Column& column : definition.columns)
        m_row.push_back(isNumber(column.type.id) || isDateTime(column.type.id) ? Value(0) : Value());
    for (const QString& column : QString::fromLatin1(columns).split(u' ', Qt::SkipEmptyParts))
        m_places.push_back(static_cast<size_t>(definition.columnIndex(column)));
}

void SystemRows::append(const std::vector<Value>& values) {
    if (m_places.empty()) return m_appender.append(values);
    for (size_t i = 0; i < values.size(); ++i)
        m_row[m_places[i]] = values[i];
    m_appender.append(m_row);
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
