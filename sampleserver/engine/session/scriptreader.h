#pragma once

#include "engine/catalog/world.h"
#include "engine/syntax/tokencursor.h"

namespace engine {

/// Reads a T-SQL script into a world, batch by batch, beginning in master as its owner.
///
/// It knows USE, CREATE DATABASE, CREATE TABLE, CREATE INDEX, CREATE STATISTICS, ALTER TABLE .. ADD, INSERT
/// .. VALUES (also of several rows), GRANT, DENY and REVOKE on tables, the procedures of scriptsecurity.h,
/// SET of the usual options, PRINT, and IF EXISTS (..) DROP .. for what does not exist. Anything else ends
/// the script with an error that names its line; nothing is skipped silently but what has no effect on a
/// client: files, filegroups, fill factors.
class ScriptReader {
  public:
    explicit ScriptReader(World& world);

    /// Throws SqlError with the line of the script.
    void run(const QString& script);

  private:
    void statement(TokenCursor& tokens);
    bool definition(TokenCursor& tokens);
    void useDatabase(TokenCursor& tokens);
    void createDatabase(TokenCursor& tokens);
    void insert(TokenCursor& tokens);
    void insertRows(TokenCursor& tokens, Database& database, Table& table, const std::vector<int>& columns,
                    bool columnsNamed);
    void setOption(TokenCursor& tokens);
    void dropIfExists(TokenCursor& tokens);
    void permission(TokenCursor& tokens);
    void procedure(TokenCursor& tokens);

    Database& databaseOf(const ObjectName& name);
    Table& tableOf(const ObjectName& name);

    World& m_world;
    Database* m_database;
    const Table* m_identityInsert = nullptr;
};

/// Reads a script into a world that is not sealed. What stood before a failing statement stays done.
void runScript(World& world, const QString& script);

}  // namespace engine
