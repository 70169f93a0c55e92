#pragma once

#include "engine/catalog/world.h"
#include "engine/store/rowstore.h"

namespace engine {

/// The names of the system tables that a database has.
QStringList systemTableNames(const Database& database);

/// Adds the empty system tables to a database's tables.
void addSystemTables(Database& database);

/// Adds the system tables to a database and fills them from what the scripts made.
void fillSystemTables(const World& world, Database& database);

/// Takes them away again, so that scripts can go on.
void removeSystemTables(Database& database);

/// Rows of one system table.
class SystemRows {
  public:
    /// `columns`: the names, with blanks between them, of the columns that rows have values for; the others
    /// are 0, or null where they are no numbers. None: all columns.
    SystemRows(const Database& database, const char* table, const char* columns = "");
    void append(const std::vector<Value>& values);

  private:
    RowAppender m_appender;
    std::vector<size_t> m_places;
    std::vector<Value> m_row;
};

// One function for each group of system tables.
void fillObjects(const Database& database);  ///< sysobjects, syscomments
void fillColumns(const Database& database);  ///< syscolumns, systypes
/// sysindexes, sysindexkeys; the number of rows of each table, in the order of the tables
void fillIndexes(const Database& database, const std::vector<qint64>& rowCounts);
void fillReferences(const Database& database);                     ///< sysforeignkeys, sysreferences
void fillUsers(const World& world, const Database& database);      ///< sysusers, sysmembers
void fillDatabases(const World& world, const Database& database);  ///< sysdatabases

}  // namespace engine
