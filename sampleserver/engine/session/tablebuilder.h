#pragma once

#include "engine/session/sessionstate.h"
#include "engine/syntax/tabledraft.h"

namespace engine {

/// Makes tables, constraints and indexes of a database from what a statement says. Throws SqlError with the
/// server's numbers: 2714 (name taken), 2760 (no such owner), 2705, 2744, 2749, 1902, 1779, 1767 to 1778,
/// 1911, 1913 ..
class TableBuilder {
  public:
    TableBuilder(SessionState& session, Database& database) : m_session(session), m_database(database) {}

    void createTable(const TableDraft& draft);
    void alterTable(const TableDraft& draft);
    void createIndex(const IndexDraft& draft);

  private:
    Table& existingTable(const ObjectName& name, int errorNumber);
    QString ownerFor(const ObjectName& name) const;
    /// Takes the given name, or makes one up from prefix, table, column and object id.
    QString constraintName(const Table& table, const QString& given, const char* prefix,
                           const QString& column, int id);
    void addColumn(Table& table, const ColumnDraft& draft, const TableDraft& statement);
    void addColumnToRows(Table& table, const ColumnDraft& draft);
    void addDefault(Table& table, int column, const DefaultDraft& draft);
    void addKeys(Table& table, const std::vector<KeyDraft>& keys, bool newTable);
    const UserType& userType(const ColumnDraft& draft) const;
    void computeColumns(Table& table);
    void addCheck(Table& table, const CheckDraft& draft, bool withRows);
    void checkRows(const Table& table, const Check& check);
    void enableConstraints(Table& table, const TableDraft& draft);
    void addForeignKey(Table& table, const ForeignKeyDraft& draft, bool checkRows);
    void checkForeignKeyRows(const Table& table, const ForeignKey& key, const Table& referenced);

    SessionState& m_session;
    Database& m_database;
};

/// Throws SqlError 8111.
[[noreturn]] void failNullableKey(const Table& table);

}  // namespace engine
