#include "engine/store/rowstore.h"

#include "engine/store/storage.h"
#include "engine/store/storecall.h"
#include "engine/store/table.h"
#include "engine/values/sqlerror.h"

#include <sqlite3.h>

#include <utility>

namespace engine {

namespace {

QByteArray quoted(const QString& name) {
    return '"' + name.toUtf8() + '"';
}

QByteArray columnList(const std::vector<int>& columns) {
    QByteArray list;
    for (const int column : columns) {
        if (!list.isEmpty()) list += ", ";
        list += storageColumn(column).toUtf8();
    }
    return list;
}

QByteArray insertStatement(const Table& table) {
    QByteArray marks = "?";
    for (size_t i = 1; i < table.columns.size(); ++i)
        marks += ",?";
    return "INSERT INTO " + quoted(table.storage) + " VALUES (" + marks + ")";
}

}  // namespace

sqlite3* openKeeper(const QString& uri) {
    sqlite3* store = openStore(uri);
    // A server may have hundreds of databases of small tables: no cache of its own for each keeper, small
    // pages.
    sqlite3_db_config(store, SQLITE_DBCONFIG_LOOKASIDE, nullptr, 0, 0);
    executeStore(store, "PRAGMA page_size = 1024");
    return store;
}

void failStore(sqlite3* store) {
    const QString text = QString::fromUtf8(sqlite3_errmsg(store));
    if (auto error = decodedError(text)) throw *error;
    if (text.contains(QLatin1String("integer overflow"))) {
        throw SqlError(8115, 16,
                       QStringLiteral("Arithmetic overflow error converting expression to data type int."));
    }
    throw SqlError(
        8623, 16,
        QStringLiteral("Internal Query Processor Error: The query processor could not produce a query "
                       "plan (%1).")
            .arg(text));
}

void executeStore(sqlite3* store, const QByteArray& sql) {
    if (sqlite3_exec(store, sql.constData(), nullptr, nullptr, nullptr) != SQLITE_OK) failStore(store);
}

StoreStatement::StoreStatement(sqlite3* store, const QByteArray& sql) {
    if (sqlite3_prepare_v2(store, sql.constData(), static_cast<int>(sql.size()), &m_statement, nullptr) !=
        SQLITE_OK) {
        failStore(store);
    }
}

StoreStatement::~StoreStatement() {
    sqlite3_finalize(m_statement);
}

StoreStatement::StoreStatement(StoreStatement&& other) noexcept
    : m_statement(std::exchange(other.m_statement, nullptr)) {}

void StoreStatement::bind(int parameter, const Value& value, const SqlType& type) {
    bindStored(m_statement, parameter, value, type);
}

void StoreStatement::bind(const std::vector<TypedValue>& values) {
    int parameter = 0;
    for (const TypedValue& value : values)
        bind(++parameter, value.value, value.type);
}

bool StoreStatement::step() {
    const int result = sqlite3_step(m_statement);
    if (result != SQLITE_ROW && result != SQLITE_DONE && result != SQLITE_INTERRUPT)
        failStore(sqlite3_db_handle(m_statement));
    return result == SQLITE_ROW;
}

void StoreStatement::reset() {
    sqlite3_reset(m_statement);
}

qint64 StoreStatement::integer(int column) const {
    return sqlite3_column_int64(m_statement, column);
}

Value StoreStatement::value(int column, const SqlType& type) const {
    return readStored(m_statement, column, type);
}

StoreTransaction::StoreTransaction(sqlite3* store) : m_store(store) {
    executeStore(store, "BEGIN");
}

StoreTransaction::~StoreTransaction() {
    if (m_open) sqlite3_exec(m_store, "ROLLBACK", nullptr, nullptr, nullptr);
}

void StoreTransaction::commit() {
    executeStore(m_store, "COMMIT");
    m_open = false;
}

RowAppender::RowAppender(sqlite3* store, const Table& table)
    : m_table(table), m_insert(store, insertStatement(table)) {}

void RowAppender::append(std::span<const Value> values) {
    for (size_t i = 0; i < values.size(); ++i) {
        m_insert.bind(static_cast<int>(i) + 1, values[i], m_table.columns[i].type);
    }
    m_insert.step();
    m_insert.reset();
}

void createStorage(sqlite3* store, const Table& table) {
    QByteArray columns;
    for (size_t i = 0; i < table.columns.size(); ++i) {
        if (i > 0) columns += ", ";
        columns += storageColumn(static_cast<int>(i)).toUtf8() + ' ' +
                   storageDeclaration(table.columns[i].type).toUtf8();
    }
    // SQLite reads its whole schema again for every CREATE: unique indexes go into the table's own.
    for (const Index& index : table.indexes) {
        if (index.unique) columns += ", UNIQUE (" + columnList(index.columns) + ')';
    }
    executeStore(store, "CREATE TABLE " + quoted(table.storage) + " (" + columns + ")");
    for (const Index& index : table.indexes) {
        if (!index.unique) createIndexStorage(store, table, index);
    }
}

void createIndexStorage(sqlite3* store, const Table& table, const Index& index) {
    if (index.statistics) return;
    const QByteArray columns = columnList(index.columns);
    if (index.unique) {
        // SQLite lets nulls repeat, the server does not.
        StoreStatement equal(store, "SELECT 1 FROM " + quoted(table.storage) + " GROUP BY " + columns +
                                        " HAVING count(*) > 1 LIMIT 1");
        if (equal.step()) {
            throw SqlError(1505, 14,
                           QStringLiteral("CREATE UNIQUE INDEX terminated because a duplicate key was found. "
                                          "Index '%1', table '%2'.")
                               .arg(index.name, table.name));
        }
    }
    executeStore(store, QByteArray("CREATE ") + (index.unique ? "UNIQUE " : "") + "INDEX " +
                            quoted(table.storage + QLatin1Char('i') + QString::number(index.indid)) + " ON " +
                            quoted(table.storage) + " (" + columns + ")");
}

qint64 countRows(sqlite3* store, const Table& table) {
    StoreStatement count(store, "SELECT count(*) FROM " + quoted(table.storage));
    count.step();
    return count.integer(0);
}

QByteArray matchColumns(const std::vector<int>& columns) {
    QByteArray condition;
    int parameter = 0;
    for (const int column : columns) {
        if (!condition.isEmpty()) condition += " AND ";
        condition += storageColumn(column).toUtf8() + " IS ?" + QByteArray::number(++parameter);
    }
    return condition;
}

}  // namespace engine
