#include "engine/session/scriptreader.h"

#include "engine/session/rowinserter.h"
#include "engine/session/scriptpassing.h"
#include "engine/session/scriptsecurity.h"
#include "engine/session/tablebuilder.h"
#include "engine/syntax/ddlparser.h"
#include "engine/values/sqlerror.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <optional>

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

/// Thrown to pass over a statement that begins where the tokens stood before it.
struct NotForUs {};

/// The lines of a script without those of the tool that would send it, and with its variables in place.
QString withoutToolCommands(const QString& script, ScriptReport& report) {
    static const QRegularExpression setting(QStringLiteral("^\\s*:setvar\\s+(\\S+)\\s+\"?(.*?)\"?\\s*$"),
                                            QRegularExpression::CaseInsensitiveOption);
    if (!script.contains(QLatin1Char(':')) && !script.contains(QLatin1String("$("))) return script;
    QHash<QString, QString> variables;
    QStringList lines = script.split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < lines.size(); ++i) {
        QString& line = lines[i];
        const auto match = setting.match(line);
        for (auto variable = variables.begin(); variable != variables.end(); ++variable)
            line.replace(QLatin1String("$(") + variable.key() + QLatin1Char(')'), *variable,
                         Qt::CaseInsensitive);
        if (!line.startsWith(QLatin1Char(':'))) continue;
        if (match.hasMatch())
            variables.insert(match.captured(1), match.captured(2));
        else
            report.passedOver.push_back(
                {.severity = 10, .line = int(i) + 1, .text = line.simplified().left(60)});
        line.clear();
    }
    return lines.join(QLatin1Char('\n'));
}

}  // namespace

ScriptReader::ScriptReader(World& world, bool stopsAtFirst)
    : m_world(world),
      m_database(world.findDatabase(QStringLiteral("master"))),
      m_queries(world),
      m_stopsAtFirst(stopsAtFirst) {}

ScriptReport ScriptReader::read(const QString& script) {
    m_report = {};
    for (const ScriptBatch& part : splitBatches(withoutToolCommands(script, m_report))) {
        if (!goesOn()) break;
        try {
            batch(part);
        } catch (const SqlError& error) {
            m_report.mistakes.push_back(error.message());
        }
    }
    return m_report;
}

bool ScriptReader::goesOn() const {
    return !m_stopsAtFirst || (m_report.mistakes.empty() && m_report.passedOver.empty());
}

void ScriptReader::batch(const ScriptBatch& batch) {
    TokenCursor tokens(batch.text, batch.firstLine);
    while (!tokens.atEnd() && goesOn()) {
        if (!tokens.acceptSymbol(";")) next(tokens);
    }
}

void ScriptReader::next(TokenCursor& tokens) {
    const int line = tokens.line();
    const size_t start = tokens.mark();
    try {
        statement(tokens);
        ++m_report.understood;
    } catch (const NotForUs&) {
        tokens.rewind(start);
        pass(tokens);
    } catch (SqlError& error) {
        error.message().line = std::max(error.message().line, line);
        m_report.mistakes.push_back(error.message());
        tokens.rewind(start);
        passOver(tokens);
    }
}

void ScriptReader::pass(TokenCursor& tokens) {
    m_report.passedOver.push_back({.severity = 10, .line = tokens.line(), .text = firstWords(tokens)});
    passOver(tokens);
}

void ScriptReader::statement(TokenCursor& tokens) {
    if (tokens.accept("use")) return useDatabase(tokens);
    if (tokens.accept("insert")) return insert(tokens);
    if (tokens.accept("set")) return setOption(tokens);
    if (tokens.accept("if")) return conditional(tokens);
    if (tokens.accept("drop")) return drop(tokens);
    if (tokens.is("grant") || tokens.is("deny") || tokens.is("revoke")) return permission(tokens);
    if (tokens.accept("print")) {
        if (tokens.peek().kind != TokenKind::String) throw NotForUs();
        tokens.take();
        if (!tokens.atEnd() && !tokens.startsLine() && !tokens.isSymbol(";") &&
            !startsStatement(tokens.peek()))
            throw NotForUs();
        return;
    }
    if (tokens.is("create") || tokens.is("alter")) return definition(tokens);
    const bool call = tokens.accept("exec") || tokens.accept("execute");
    if (call || tokens.peek().text.startsWith(QLatin1String("sp_"), Qt::CaseInsensitive))
        return procedure(tokens);
    if (startsStatement(tokens.peek())) throw NotForUs();
    throw tokens.unexpected();
}

void ScriptReader::definition(TokenCursor& tokens) {
    const auto inDatabase = [this](const ObjectName& name) {
        return TableBuilder(m_world, databaseOf(name));
    };
    if (tokens.accept("alter")) return alterTable(tokens);
    tokens.take();
    if (tokens.accept("database")) {
        createDatabase(tokens);
    } else if (tokens.accept("table")) {
        // A table for the time of a session.
        if (tokens.peek().text.startsWith(QLatin1Char('#'))) throw NotForUs();
        const TableDraft draft = parseCreateTable(tokens);
        inDatabase(draft.name).createTable(draft);
    } else if (tokens.is("unique") || tokens.is("clustered") || tokens.is("nonclustered") ||
               tokens.is("index") || tokens.is("statistics")) {
        const IndexDraft draft = parseCreateIndex(tokens);
        inDatabase(draft.table).createIndex(draft);
    } else {
        throw NotForUs();
    }
}

void ScriptReader::alterTable(TokenCursor& tokens) {
    if (!tokens.accept("table")) throw NotForUs();
    const TableDraft draft = parseAlterTable(tokens);
    if (draft.otherChange) throw NotForUs();
    TableBuilder(m_world, databaseOf(draft.name)).alterTable(draft);
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
            if (!table.columns[i].identity && table.columns[i].computedText.isEmpty())
                columns.push_back(static_cast<int>(i));
        }
    }
    Database& database = databaseOf(name);
    if (tokens.is("default") && !columnsNamed) {
        tokens.take();
        tokens.expect("values");
        StoreTransaction transaction(database.keeper);
        RowInserter(m_world, database, table, &table == m_identityInsert).insert({}, {});
        return transaction.commit();
    }
    if (tokens.is("exec") || tokens.is("execute")) throw NotForUs();
    if (tokens.is("select") || tokens.isSymbol("(")) {
        const auto rows = m_queries.rows(tokens, *m_database);
        StoreTransaction transaction(database.keeper);
        {
            RowInserter inserter(m_world, database, table, &table == m_identityInsert);
            for (const std::vector<Constant>& row : rows) {
                checkValueCount(columns.size(), row.size(), columnsNamed);
                inserter.insert(columns, row);
            }
        }
        return transaction.commit();
    }
    tokens.expect("values");
    insertRows(tokens, database, table, columns, columnsNamed);
}

void ScriptReader::insertRows(TokenCursor& tokens, Database& database, Table& table,
                              const std::vector<int>& columns, bool columnsNamed) {
    StoreTransaction transaction(database.keeper);
    {
        RowInserter inserter(m_world, database, table, &table == m_identityInsert);
        do {
            const int line = tokens.line();
            std::vector<Constant> row;
            tokens.expectSymbol("(");
            do {
                row.push_back(value(tokens, database));
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

Constant ScriptReader::value(TokenCursor& tokens, const Database& database) {
    const size_t start = tokens.mark();
    std::optional<SqlError> plainly;
    try {
        const Constant constant = parseConstant(tokens);
        if (tokens.isSymbol(",") || tokens.isSymbol(")")) return constant;
    } catch (const SqlError& error) {
        plainly = error;
    }
    const qsizetype given = tokens.rest().size();
    tokens.rewind(start);
    try {
        return m_queries.expression(tokens, database);
    } catch (const SqlError&) {
        if (!plainly) throw;
        // What is no expression either was meant as the constant that it began as.
        while (tokens.rest().size() > given)
            tokens.take();
        throw *plainly;
    }
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
    if (tokens.is("dateformat") && tokens.is("mdy", 1)) {
        tokens.take();
        tokens.take();
        return;
    }
    do {
        if (!isPlainOption(tokens.peek().text)) throw NotForUs();
        tokens.take();
    } while (tokens.acceptSymbol(","));
    tokens.onOrOff();
}

void ScriptReader::conditional(TokenCursor& tokens) {
    QString words;
    const Token first = tokens.peek();
    while (!tokens.atEnd() && !startsStatement(tokens.peek())) {
        if (tokens.isSymbol("("))
            tokens.parenthesised();
        else
            tokens.take();
    }
    words = tokens.textSince(first).simplified().toLower();
    const bool absent =
        words.startsWith(QLatin1String("not exists")) || words.endsWith(QLatin1String("is null"));
    const bool present =
        words.startsWith(QLatin1String("exists")) || words.endsWith(QLatin1String("is not null"));
    if (!absent && !present) throw NotForUs();
    block(tokens, absent);
    if (tokens.accept("else")) block(tokens, present);
}

/// What IF or ELSE is followed by. Where it does not hold, only what it would drop is looked at.
void ScriptReader::block(TokenCursor& tokens, bool holds) {
    const bool several = tokens.accept("begin");
    do {
        if (several && tokens.accept("end")) return;
        if (tokens.acceptSymbol(";")) continue;
        if (holds || tokens.is("drop"))
            next(tokens);
        else
            pass(tokens);
    } while (several && !tokens.atEnd());
}

void ScriptReader::drop(TokenCursor& tokens) {
    const bool wholeDatabase = tokens.is("database");
    if (!wholeDatabase && !tokens.is("table")) throw NotForUs();
    const Token kind = tokens.take();
    if (tokens.is("if")) {
        tokens.take();
        tokens.expect("exists");
    }
    do {
        const ObjectName name = tokens.objectName();
        const bool exists = wholeDatabase ? m_world.findDatabase(name.name) != nullptr
                                          : databaseOf(name).findTable(name.owner, name.name, {}) != nullptr;
        if (!exists) continue;
        throw SqlError(3701, 11,
                       QStringLiteral("Cannot drop the %1 '%2': a script of the sample server only adds.")
                           .arg(kind.text.toLower(), name.name));
    } while (tokens.acceptSymbol(","));
}

void ScriptReader::permission(TokenCursor& tokens) {
    PermissionDraft draft;
    try {
        draft = parsePermission(tokens);
    } catch (const SqlError&) {
        throw NotForUs();
    }
    // Permission on what has been passed over.
    if (databaseOf(draft.table).findTable(draft.table.owner, draft.table.name, QStringLiteral("dbo")) ==
        nullptr)
        throw NotForUs();
    applyPermission(databaseOf(draft.table), tableOf(draft.table), draft);
}

void ScriptReader::procedure(TokenCursor& tokens) {
    if (tokens.peek().kind != TokenKind::Identifier) throw NotForUs();
    const ObjectName name = tokens.objectName();
    if (!isScriptProcedure(name.name)) throw NotForUs();
    runScriptProcedure(m_world, *m_database, name.name, parseArguments(tokens));
}

void runScript(World& world, const QString& script) {
    if (world.isSealed()) throw SqlError(3906, 16, QStringLiteral("The server is read-only."));
    const ScriptReport report = ScriptReader(world, true).read(script);
    if (!report.mistakes.empty()) throw SqlError(report.mistakes.front());
    if (report.passedOver.empty()) return;
    SqlMessage message = report.passedOver.front();
    message.number = 50000;
    message.severity = 16;
    message.text = QStringLiteral("A script of the sample server does not run '%1'.").arg(message.text);
    throw SqlError(message);
}

}  // namespace engine
