#pragma once

#include "engine/values/sqltype.h"

#include <QByteArray>
#include <QString>

#include <span>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace engine {

struct Index;
struct Table;

/// Opens the connection that keeps a database's store alive.
sqlite3* openKeeper(const QString& uri);

/// Tells what went wrong last, in the words of the function of ours that it went wrong in. Throws SqlError:
/// its own number, 8115 (overflow) or 8623 (SQLite's reason).
[[noreturn]] void failStore(sqlite3* store);

/// Runs SQLite statements without a result. Throws as failStore() does.
void executeStore(sqlite3* store, const QByteArray& sql);

/// A prepared SQLite statement. Throws as failStore() does.
class StoreStatement {
  public:
    StoreStatement(sqlite3* store, const QByteArray& sql);
    ~StoreStatement();
    StoreStatement(StoreStatement&& other) noexcept;
    StoreStatement& operator=(StoreStatement&&) = delete;

    /// Binds parameter `parameter` (from 1).
    void bind(int parameter, const Value& value, const SqlType& type);
    /// Binds parameters 1, 2 ..
    void bind(const std::vector<TypedValue>& values);
    /// Runs to the next row; false at the end, and when it was interrupted.
    bool step();
    /// Makes the statement ready to run again.
    void reset();
    /// Column `column` (from 0) of the row as an integer.
    qint64 integer(int column) const;
    /// Column `column` (from 0) of the row as a value of `type`.
    Value value(int column, const SqlType& type) const;

  private:
    sqlite3_stmt* m_statement = nullptr;
};

/// Changes to a store between its making and commit(); without a commit they are taken back.
class StoreTransaction {
  public:
    explicit StoreTransaction(sqlite3* store);
    ~StoreTransaction();
    StoreTransaction(const StoreTransaction&) = delete;
    StoreTransaction& operator=(const StoreTransaction&) = delete;
    void commit();

  private:
    sqlite3* m_store;
    bool m_open = true;
};

/// Appends rows to a table's store as they are: nothing is converted or checked.
class RowAppender {
  public:
    RowAppender(sqlite3* store, const Table& table);
    /// One value for each column, of the column's type.
    void append(std::span<const Value> values);

  private:
    const Table& m_table;
    StoreStatement m_insert;
};

/// Makes the SQLite table, with its indexes, that holds the rows of `table`.
void createStorage(sqlite3* store, const Table& table);

/// Makes the SQLite index behind `index`. Throws SqlError 1505 when a unique one meets equal rows.
void createIndexStorage(sqlite3* store, const Table& table, const Index& index);

/// The number of rows in a table.
qint64 countRows(sqlite3* store, const Table& table);

/// "c1 IS ?1 AND c4 IS ?2" for the columns at these positions.
QByteArray matchColumns(const std::vector<int>& columns);

}  // namespace engine
