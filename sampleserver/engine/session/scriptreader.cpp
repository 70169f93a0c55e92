#include "engine/session/scriptreader.h"

#include "engine/session/rowinserter.h"
#include "engine/session/scriptsecurity.h"
#include "engine/session/tablebuilder.h"
#include "engine/syntax/ddlparser.h"
#include "engine/values/sqlerror.h"

#include <algorithm>
#include <array>

namespace engine {

namespace {

/// Options whose either setting changes nothing that this server shows.
bool isPlainOption(const QString& option) {
    static constexpr std::array options = {
        "ansi_defaults", "ansi_nulls",         "ansi_null_dflt_off", "ansi_null_dflt_on",
        "ansi_padding",  "ansi_warnings",      "arithabort",         "concat_null_yields_null",
        "nocount",       "numeric_roundabort", "quoted_identifier",  "xact_abort"};
    return std::any_of(options.begin(), options.end(), [&option](const char* known) {
        return option.compare(QLatin1String(known), Qt::CaseInsensitive) == 0;
    });
}

SqlError noSuchTable(const QString& name) {
    return SqlError(208, 16, QStringLiteral("Invalid object name '%1'.").arg(name));
}

void checkValueCount(size_t columns, size_t values, bool columnsNamed) {
    if (columns == values) return;
    if (!columnsNamed) {
        throw SqlError(
            213, 16,
            QStringLiteral("Insert Error: Column name or number of supplied values does not match table "
                           "definition."));
    }
    const bool fewer = columns < values;
    throw SqlError(
        fewer ? 110 : 109, 15,
        QStringLiteral("There are %1 columns in the INSERT statement than values specified in the VALUES "
                       "clause. The number of values in the VALUES clause must match the number of "
                       "columns specified in the INSERT statement.")
            .arg(fewer ? QStringLiteral("fewer") : QStringLiteral("more")));
}

std::vector<int> namedColumns(const Table& table, const QStringList& names) {
    std::vector<int> columns;
    for (const QString& name : names) {
        const int position = table.columnIndex(name);
        if (position < 0) throw SqlError(207, 16, QStringLiteral("Invalid column name '%1'.").arg(name));
        if (std::find(columns.begin(), columns.end(), position) != columns.end()) {
            throw SqlError(
                264, 16,
                QStringLiteral("Column name '%1' appears more than once in the result column list.")
                    .arg(name));
        }
        columns.push_back(position);
    }
    return columns;
}

}  // namespace

ScriptReader::ScriptReader(World& world)
    : m_world(world), m_database(world.findDatabase(QStringLiteral("master"))) {}

void ScriptReader::run(const QString& script) {
    for (const ScriptBatch& batch : splitBatches(script)) {
        TokenCursor tokens(batch.text, batch.firstLine);
        while (!tokens.atEnd()) {
            if (tokens.acceptSymbol(";")) continue;
            const int line = tokens.line();
            try {
                statement(tokens);
            } catch (SqlError& error) {
                error.message().line = std::max(error.message().line, line);
                throw;
            }
        }
    }
}

void ScriptReader::statement(TokenCursor& tokens) {
    if (tokens.accept("use")) return useDatabase(tokens);
    if (tokens.accept("insert")) return insert(tokens);
    if (tokens.accept("set")) return setOption(tokens);
    if (tokens.accept("if")) return dropIfExists(tokens);
    if (tokens.is("grant") || tokens.is("deny") || tokens.is("revoke")) return permission(tokens);
    if (tokens.accept("print")) {
        if (tokens.peek().kind != TokenKind::String) throw tokens.unexpected();
        tokens.take();
        return;
    }
    if (definition(tokens)) return;
    const bool call = tokens.accept("exec") || tokens.accept("execute");
    if (!call && !tokens.peek().text.startsWith(QLatin1String("sp_"), Qt::CaseInsensitive)) {
        throw tokens.unexpected();
    }
    procedure(tokens);
}

bool ScriptReader::definition(TokenCursor& tokens) {
    const auto inDatabase = [this](const ObjectName& name) { return TableBuilder(databaseOf(name)); };
    if (tokens.accept("alter")) {
        tokens.expect("table");
        const TableDraft draft = parseAlterTable(tokens);
        inDatabase(draft.name).alterTable(draft);
        return true;
    }
    if (!tokens.accept("create")) return false;
    if (tokens.accept("database")) {
        createDatabase(tokens);
    } else if (tokens.accept("table")) {
        const TableDraft draft = parseCreateTable(tokens);
        inDatabase(draft.name).createTable(draft);
    } else {
        const IndexDraft draft = parseCreateIndex(tokens);
        inDatabase(draft.table).createIndex(draft);
    }
    return true;
}

Database& ScriptReader::databaseOf(const ObjectName& name) {
    if (name.database.isEmpty()) return *m_database;
    Database* database = m_world.findDatabase(name.database);
    if (database == nullptr) throw noSuchTable(name.name);
    return *database;
}

Table& ScriptReader::tableOf(const ObjectName& name) {
    Table* table = databaseOf(name).findTable(name.owner, name.name, QStringLiteral("dbo"));
    if (table == nullptr) throw noSuchTable(name.name);
    return *table;
}

void ScriptReader::useDatabase(TokenCursor& tokens) {
    const QString name = tokens.name();
    Database* database = m_world.findDatabase(name);
    if (database == nullptr) {
        throw SqlError(
            911, 16,
            QStringLiteral("Could not locate entry in sysdatabases for database '%1'. No entry found with "
                           "that name. Make sure that the name is entered correctly.")
                .arg(name));
    }
    m_database = database;
}

void ScriptReader::createDatabase(TokenCursor& tokens) {
    const QString name = tokens.name();
    // Where its files lie is nothing that this server keeps.
    while (tokens.accept("on") || tokens.accept("log")) {
        tokens.accept("on");
        tokens.accept("primary");
        do {
            tokens.parenthesised();
        } while (tokens.acceptSymbol(","));
    }
    m_world.addDatabase(name);
}

void ScriptReader::insert(TokenCursor& tokens) {
    tokens.accept("into");
    const ObjectName name = tokens.objectName();
    Table& table = tableOf(name);
    const bool columnsNamed = tokens.isSymbol("(");
    std::vector<int> columns;
    if (columnsNamed) {
        columns = namedColumns(table, tokens.nameList());
    } else {
        for (size_t i = 0; i < table.columns.size(); ++i) {
            if (!table.columns[i].identity) columns.push_back(static_cast<int>(i));
        }
    }
    Database& database = databaseOf(name);
    if (tokens.is("default") && !columnsNamed) {
        tokens.take();
        tokens.expect("values");
        RowInserter(database, table, &table == m_identityInsert).insert({}, {});
        return;
    }
    tokens.expect("values");
    insertRows(tokens, database, table, columns, columnsNamed);
}

void ScriptReader::insertRows(TokenCursor& tokens, Database& database, Table& table,
                              const std::vector<int>& columns, bool columnsNamed) {
    StoreTransaction transaction(database.keeper);
    {
        RowInserter inserter(database, table, &table == m_identityInsert);
        do {
            const int line = tokens.line();
            std::vector<Constant> row;
            tokens.expectSymbol("(");
            do {
                row.push_back(parseConstant(tokens));
            } while (tokens.acceptSymbol(","));
            tokens.expectSymbol(")");
            try {
                checkValueCount(columns.size(), row.size(), columnsNamed);
                inserter.insert(columns, row);
            } catch (SqlError& error) {
                error.message().line = line;
                throw;
            }
        } while (tokens.acceptSymbol(","));
    }
    transaction.commit();
}

void ScriptReader::setOption(TokenCursor& tokens) {
    if (tokens.accept("identity_insert")) {
        const Table& table = tableOf(tokens.objectName());
        const bool on = tokens.onOrOff();
        if (on && m_identityInsert != nullptr && m_identityInsert != &table) {
            throw SqlError(
                8107, 16,
                QStringLiteral("IDENTITY_INSERT is already ON for table '%1'. Cannot perform SET operation "
                               "for table '%2'.")
                    .arg(m_identityInsert->name, table.name));
        }
        m_identityInsert = on ? &table : nullptr;
        return;
    }
    do {
        if (!isPlainOption(tokens.peek().text)) throw tokens.unexpected();
        tokens.take();
    } while (tokens.acceptSymbol(","));
    tokens.onOrOff();
}

void ScriptReader::dropIfExists(TokenCursor& tokens) {
    tokens.expect("exists");
    tokens.parenthesised();
    tokens.expect("drop");
    const bool wholeDatabase = tokens.is("database");
    const Token kind = tokens.take();
    const ObjectName name = tokens.objectName();
    const bool exists = wholeDatabase ? m_world.findDatabase(name.name) != nullptr
                                      : databaseOf(name).findTable(name.owner, name.name, {}) != nullptr;
    if (!exists) return;
    throw SqlError(3701, 11,
                   QStringLiteral("Cannot drop the %1 '%2': a script of the sample server only adds.")
                       .arg(kind.text.toLower(), name.name));
}

void ScriptReader::permission(TokenCursor& tokens) {
    const PermissionDraft draft = parsePermission(tokens);
    applyPermission(databaseOf(draft.table), tableOf(draft.table), draft);
}

void ScriptReader::procedure(TokenCursor& tokens) {
    const ObjectName name = tokens.objectName();
    runScriptProcedure(m_world, *m_database, name.name, parseArguments(tokens));
}

void runScript(World& world, const QString& script) {
    if (world.isSealed()) throw SqlError(3906, 16, QStringLiteral("The server is read-only."));
    ScriptReader(world).run(script);
}

}  // namespace engine
