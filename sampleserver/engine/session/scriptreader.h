#pragma once

#include "engine/session/rowinserter.h"
#include "engine/syntax/tokencursor.h"

#include <QSet>

#include <vector>

namespace engine {

/// What became of a script. Lines are its own.
struct ScriptReport {
    int understood = 0;                  ///< statements
    std::vector<SqlMessage> passedOver;  ///< statements that were not run, by their first words
    std::vector<SqlMessage> mistakes;    ///< what is wrong in it
};

/// Reads a T-SQL script into a world, batch by batch, beginning in master as its owner.
///
/// What bears on the catalog and its rows is run: USE, CREATE DATABASE, SCHEMA (an owner), TYPE,
/// TABLE, INDEX and STATISTICS, ALTER TABLE .. ADD and .. [NO]CHECK CONSTRAINT, INSERT, GRANT,
/// DENY and REVOKE on tables, the procedures of scriptsecurity.h, EXEC of a text, SET of the usual options.
/// The condition of IF is evaluated; a script only adds, so what is dropped must not be there. Everything
/// else is passed over and told.
class ScriptReader {
  public:
    /// Without `stopsAtFirst` it reads on behind a mistake, so that all are told.
    explicit ScriptReader(World& world, bool stopsAtFirst = false);

    ScriptReport read(const QString& script);

  private:
    bool goesOn() const;
    void batch(const QString& text, int firstLine);
    void next(TokenCursor& tokens);
    void pass(TokenCursor& tokens);
    void statement(TokenCursor& tokens);
    void definition(TokenCursor& tokens);
    void alterTable(TokenCursor& tokens);
    void useDatabase(TokenCursor& tokens);
    void createDatabase(TokenCursor& tokens);
    void createSchema(TokenCursor& tokens);
    void createType(TokenCursor& tokens);
    void checkForUs(const ObjectName& name);
    void insert(TokenCursor& tokens);
    std::vector<std::vector<GivenValue>> rowsOf(TokenCursor& tokens, std::vector<int>& lines);
    void setOption(TokenCursor& tokens);
    void conditional(TokenCursor& tokens);
    bool holds(TokenCursor& tokens);
    void block(TokenCursor& tokens, bool holds);
    void drop(TokenCursor& tokens);
    void permission(TokenCursor& tokens);
    void procedure(TokenCursor& tokens);
    void runText(TokenCursor& tokens);

    void showCatalog();
    void hideCatalog();
    Database& current();
    Database& databaseOf(const ObjectName& name);
    Table& tableOf(const ObjectName& name);

    World& m_world;
    SessionState m_session;
    QStringList m_shown;    // databases whose system tables are filled for the time being
    QSet<QString> m_views;  // nameKeys of views that were passed over
    const Table* m_identityInsert = nullptr;
    const bool m_stopsAtFirst;
    ScriptReport m_report;
};

/// Reads a script that must be understood wholly into a world that is not sealed. Throws SqlError for the
/// first mistake, or for what would be passed over (50000).
void runScript(World& world, const QString& script);

}  // namespace engine
