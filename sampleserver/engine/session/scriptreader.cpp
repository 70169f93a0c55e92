#include "engine/session/scriptreader.h"

#include "engine/catalog/systemtables.h"
#include "engine/session/evaluation.h"
#include "engine/session/scriptpassing.h"
#include "engine/session/scriptsecurity.h"
#include "engine/session/setoptions.h"
#include "engine/session/tablebuilder.h"
#include "engine/syntax/ddlparser.h"
#include "engine/syntax/parser.h"
#include "engine/values/sqlerror.h"

#include <QRegularExpression>

#include <algorithm>

namespace engine {

namespace {

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

ScriptReader::ScriptReader(World& world, bool stopsAtFirst) : m_world(world), m_stopsAtFirst(stopsAtFirst) {
    // The world outlives the reading of a script.
    m_session.facts.world = std::shared_ptr<const World>(std::shared_ptr<const World>(), &world);
    m_session.facts.database = world.findDatabase(QStringLiteral("master"));
    m_session.facts.login = QStringLiteral("sa");
    m_session.facts.user = QStringLiteral("dbo");
    m_session.facts.readsScript = true;
}

ScriptReport ScriptReader::read(const QString& script) {
    m_report = {};
    for (const ScriptBatch& part : splitBatches(withoutToolCommands(script, m_report))) {
        if (!goesOn()) break;
        batch(part.text, part.firstLine);
    }
    hideCatalog();
    return m_report;
}

bool ScriptReader::goesOn() const {
    return !m_stopsAtFirst || (m_report.mistakes.empty() && m_report.passedOver.empty());
}

void ScriptReader::batch(const QString& text, int firstLine) {
    try {
        TokenCursor tokens(text, firstLine, m_session.options.quotedIdentifiers);
        while (!tokens.atEnd() && goesOn()) {
            if (!tokens.acceptSymbol(";")) next(tokens);
        }
    } catch (const SqlError& error) {
        m_report.mistakes.push_back(error.message());
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
    if (tokens.is("create") && tokens.is("view", 1)) {
        tokens.take();
        tokens.take();
        m_views.insert(nameKey(tokens.objectName().name));
        while (!tokens.atEnd())
            tokens.take();
    }
    passOver(tokens);
}

void ScriptReader::statement(TokenCursor& tokens) {
    if (tokens.accept("set")) return setOption(tokens);
    if (tokens.accept("if")) return conditional(tokens);
    if (tokens.accept("drop")) return drop(tokens);
    hideCatalog();
    if (tokens.accept("use")) return useDatabase(tokens);
    if (tokens.accept("insert")) return insert(tokens);
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
    tokens.fail();
}

void ScriptReader::definition(TokenCursor& tokens) {
    const auto inDatabase = [this](const ObjectName& name) {
        return TableBuilder(m_session, databaseOf(name));
    };
    if (tokens.accept("alter")) return alterTable(tokens);
    tokens.take();
    if (tokens.accept("database")) {
        createDatabase(tokens);
    } else if (tokens.accept("schema")) {
        createSchema(tokens);
    } else if (tokens.accept("type")) {
        createType(tokens);
    } else if (tokens.accept("table")) {
        // A table for the time of a session.
        if (tokens.peek().text.startsWith(QLatin1Char('#'))) throw NotForUs();
        const TableDraft draft = parseCreateTable(tokens);
        inDatabase(draft.name).createTable(draft);
    } else if (tokens.is("unique") || tokens.is("clustered") || tokens.is("nonclustered") ||
               tokens.is("index") || tokens.is("statistics")) {
        const IndexDraft draft = parseCreateIndex(tokens);
        checkForUs(draft.table);
        inDatabase(draft.table).createIndex(draft);
    } else {
        throw NotForUs();
    }
}

void ScriptReader::alterTable(TokenCursor& tokens) {
    if (!tokens.accept("table")) throw NotForUs();
    const TableDraft draft = parseAlterTable(tokens);
    if (draft.otherChange) throw NotForUs();
    TableBuilder(m_session, databaseOf(draft.name)).alterTable(draft);
}

Database& ScriptReader::current() {
    return *m_world.findDatabase(m_session.facts.database->name);
}

/// The system tables of a world that is still being made are there while conditions ask for them.
void ScriptReader::showCatalog() {
    for (const QString& name : {m_session.facts.database->name, QStringLiteral("master")}) {
        if (m_shown.contains(name)) continue;
        fillSystemTables(m_world, *m_world.findDatabase(name));
        m_shown.append(name);
    }
}

void ScriptReader::hideCatalog() {
    for (const QString& name : m_shown)
        removeSystemTables(*m_world.findDatabase(name));
    m_shown.clear();
}

Database& ScriptReader::databaseOf(const ObjectName& name) {
    if (name.database.isEmpty()) return current();
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
    m_session.facts.database = &m_world.existingDatabase(tokens.name());
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

/// What later servers call a schema is here the owner of its tables.
void ScriptReader::createSchema(TokenCursor& tokens) {
    if (tokens.is("authorization")) throw NotForUs();
    const QString name = tokens.name();
    if (tokens.accept("authorization")) tokens.name();
    if (current().findUser(name).isEmpty()) current().users.append(name);
}

/// CREATE TYPE .. FROM, as sp_addtype does it. Types here have no owners, so the same type comes once.
void ScriptReader::createType(TokenCursor& tokens) {
    const QString name = tokens.objectName().name;
    if (!tokens.accept("from")) throw NotForUs();
    UserType type{.name = name, .type = parseType(tokens, name)};
    if (!tokens.accept("null") && tokens.accept("not")) {
        tokens.expect("null");
        type.nullable = false;
    }
    addUserType(current(), type);
}

/// What stands on a view that was passed over is passed over, too.
void ScriptReader::checkForUs(const ObjectName& name) {
    if (m_views.contains(nameKey(name.name)) &&
        databaseOf(name).findTable(name.owner, name.name, QStringLiteral("dbo")) == nullptr)
        throw NotForUs();
}

void ScriptReader::insert(TokenCursor& tokens) {
    tokens.accept("into");
    const ObjectName name = tokens.objectName();
    checkForUs(name);
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
    if (tokens.is("exec") || tokens.is("execute")) throw NotForUs();
    std::vector<int> lines;
    const std::vector<std::vector<GivenValue>> rows = rowsOf(tokens, lines);
    Database& database = databaseOf(name);
    StoreTransaction transaction(database.keeper);
    {
        RowInserter inserter(m_session, database, table, &table == m_identityInsert);
        for (size_t i = 0; i < rows.size(); ++i) {
            try {
                if (rows[i].empty()) columns.clear();
                checkValueCount(columns.size(), rows[i].size(), columnsNamed);
                inserter.insert(columns, rows[i]);
            } catch (SqlError& error) {
                error.message().line = lines[i];
                throw;
            }
        }
    }
    transaction.commit();
}

/// What stands behind the columns of an INSERT, with the line of each row; a row of DEFAULT VALUES is empty.
std::vector<std::vector<GivenValue>> ScriptReader::rowsOf(TokenCursor& tokens, std::vector<int>& lines) {
    std::vector<std::vector<GivenValue>> rows;
    const int line = tokens.line();
    if (tokens.is("select") || tokens.isSymbol("(")) {
        const ast::Query query = Parser(tokens).query();
        for (auto& row : evaluateRows(m_session.facts, m_session.store, query))
            rows.emplace_back(row.begin(), row.end());
        lines.assign(rows.size(), line);
        return rows;
    }
    const bool defaults = tokens.accept("default");
    tokens.expect("values");
    if (defaults) {
        lines.push_back(line);
        rows.emplace_back();
        return rows;
    }
    do {
        lines.push_back(tokens.line());
        std::vector<GivenValue>& row = rows.emplace_back();
        tokens.expectSymbol("(");
        do {
            row.push_back(tokens.accept("default")
                              ? GivenValue()
                              : evaluate(m_session.facts, m_session.store, *Parser(tokens).scalar()));
        } while (tokens.acceptSymbol(","));
        tokens.expectSymbol(")");
    } while (tokens.acceptSymbol(","));
    return rows;
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
    ast::SetOption statement;
    try {
        statement = Parser(tokens).setOption();
    } catch (const SqlError&) {
        throw NotForUs();
    }
    for (const QString& option : statement.option.split(u',')) {
        if (option == QLatin1String("dateformat")) {
            m_session.facts.dateStyle = dateStyleOf(statement);
        } else if (!bearsOnNoCatalog(option)) {
            throw NotForUs();
        } else if (option == QLatin1String("quoted_identifier")) {
            m_session.options.quotedIdentifiers =
                statement.value.compare(QLatin1String("on"), Qt::CaseInsensitive) == 0;
        }
    }
}

void ScriptReader::conditional(TokenCursor& tokens) {
    const bool isTrue = holds(tokens);
    block(tokens, isTrue);
    while (tokens.acceptSymbol(";")) {
    }
    if (tokens.accept("else")) block(tokens, !isTrue);
}

/// A condition that this server cannot judge is passed over with what it would decide.
bool ScriptReader::holds(TokenCursor& tokens) {
    try {
        const ast::ExprPtr condition = Parser(tokens).conditionAsNumber();
        showCatalog();
        return evaluate(m_session.facts, m_session.store, *condition).value == Value(qint64(1));
    } catch (const SqlError&) {
        throw NotForUs();
    }
}

/// What IF or ELSE is followed by.
void ScriptReader::block(TokenCursor& tokens, bool holds) {
    const bool transaction = tokens.is("tran", 1) || tokens.is("transaction", 1);
    const bool several = !transaction && tokens.accept("begin");
    do {
        if (several && tokens.accept("end")) return;
        if (tokens.acceptSymbol(";")) continue;
        if (holds)
            next(tokens);
        else
            passOver(tokens);
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
    if (tokens.isSymbol("(")) return runText(tokens);
    if (!tokens.isName() || !isScriptProcedure(ObjectName(TokenCursor(tokens).objectName()).name))
        throw NotForUs();
    const ast::Execute call = Parser(tokens).execute();
    ProcedureRequest request{.name = call.procedure.back(), .parameters = {}};
    for (const ast::Argument& argument : call.arguments) {
        TypedValue given = evaluate(m_session.facts, m_session.store, *argument.expr);
        request.parameters.push_back({.name = argument.name, .type = given.type, .value = given.value});
    }
    runScriptProcedure(m_world, current(), request);
}

/// EXEC ('text'): statements that may have to stand alone in their batch.
void ScriptReader::runText(TokenCursor& tokens) {
    const int line = tokens.line();
    tokens.expectSymbol("(");
    if (tokens.peek().kind != TokenKind::String || !tokens.isSymbol(")", 1)) throw NotForUs();
    const QString text = tokens.take().text;
    tokens.take();
    batch(text, line);
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
