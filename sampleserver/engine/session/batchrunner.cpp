#include "engine/session/batchrunner.h"

#include "engine/binding/binder.h"
#include "engine/session/evaluation.h"
#include "engine/syntax/parser.h"
#include "engine/values/convert.h"
#include "engine/values/typeinfo.h"

#include <QThread>

#include <algorithm>
#include <chrono>
#include <exception>

namespace engine {

namespace {

constexpr qint64 rowsPerLook = 128;  // between two looks for a cancelling client

/// Errors that end their statement and let the batch go on.
bool endsStatementOnly(int number) {
    static constexpr int numbers[] = {220, 229, 232, 512, 517, 535, 911, 916, 2812, 3623, 8115, 8134};
    return std::ranges::find(numbers, number) != std::end(numbers);
}

void cutLongValue(Value& value, const SqlType& type, qint64 bytes) {
    if (auto* text = std::get_if<QString>(&value)) {
        text->truncate(type.id == TypeId::NText ? bytes / 2 : bytes);
    } else if (auto* binary = std::get_if<QByteArray>(&value)) {
        binary->truncate(bytes);
    }
}

}  // namespace

void BatchRunner::run(const QString& batch) {
    m_facts.variables.clear();
    guard([&] { runText(batch); });
}

void BatchRunner::guard(const std::function<void()>& work) {
    m_store.watch([this] { return m_sink.cancelled() || m_bound.isExceeded(); });
    try {
        work();
    } catch (const SqlError& error) {
        fail(error.message());
    } catch (const std::exception& error) {
        fail(
            {.number = 8624,
             .text =
                 QStringLiteral("Internal SQL Server error: %1.").arg(QString::fromLocal8Bit(error.what()))});
    }
    m_store.watch({});
}

void BatchRunner::runText(const QString& batch) {
    TokenCursor tokens(batch, 1, m_options.quotedIdentifiers);
    const auto statements = Parser(tokens).batch();
    for (const ast::Statement& statement : statements) {
        if (m_selectsOnly && !std::holds_alternative<ast::Select>(statement.node)) continue;
        if (m_sink.cancelled() || !runStatement(statement)) break;
    }
}

bool BatchRunner::runStatement(const ast::Statement& statement) {
    m_hadColumns = false;
    m_rows = 0;
    try {
        std::visit([this](const auto& node) { run(node); }, statement.node);
        if (!std::holds_alternative<ast::Select>(statement.node)) m_facts.error = 0;
        return true;
    } catch (const SqlError& error) {
        SqlMessage message = error.message();
        message.line = statement.line;
        const bool goesOn = endsStatementOnly(message.number);
        fail(message);
        return goesOn;
    }
}

void BatchRunner::fail(const SqlMessage& message) {
    m_facts.error = message.number;
    m_facts.rowCount = 0;
    m_sink.message(message);
    m_sink.statementDone(m_hadColumns ? m_rows : -1, m_hadColumns);
}

void BatchRunner::done(qint64 rows, bool hadColumns) {
    m_sink.statementDone(m_options.noCount ? -1 : rows, hadColumns);
}

void BatchRunner::run(const ast::Select& statement) {
    Emission emission;
    const qint64 limit = m_options.columnsOnly ? 0 : m_options.rowLimit > 0 ? m_options.rowLimit : -1;
    const BoundQuery query = Binder(m_facts, emission).query(statement.query, limit);
    StoreStatement prepared = m_store.prepare(query.sql, emission);
    const size_t width = query.columns.size();
    const bool assigns = !query.variables.empty();
    std::vector<ResultColumn> columns;
    for (const OutputColumn& column : query.columns)
        columns.push_back({column.name, column.type, column.nullable, column.identity});
    if (!assigns) {
        m_sink.columns(columns);
        m_hadColumns = true;
    }
    std::vector<Value> row(width);
    while (prepared.step()) {
        if (m_rows % rowsPerLook == 0 && m_sink.cancelled()) return;
        for (size_t i = 0; i < width; ++i) {
            row[i] = prepared.value(static_cast<int>(i), columns[i].type);
            if (isLong(columns[i].type.id)) cutLongValue(row[i], columns[i].type, m_facts.textSize);
        }
        ++m_rows;
        if (query.readsOwnVariables && m_rows > 1) failOwnVariable(query.variables.front());
        if (!assigns) m_sink.row(row);
    }
    if (m_sink.cancelled()) return;
    m_bound.check();
    for (size_t i = 0; assigns && m_rows > 0 && i < width; ++i)
        variable(query.variables[i]).value = row[i];
    m_facts.rowCount = m_rows;
    m_facts.error = 0;
    if (assigns) {
        done(-1, false);
    } else {
        done(m_rows, true);
    }
}

void BatchRunner::run(const ast::Use& statement) {
    const Database& database = m_facts.world->existingDatabase(statement.database);
    const QString user = existingUser(database, m_facts.login);
    const QString oldName = m_facts.database->name;
    m_facts.database = &database;
    m_facts.user = user;
    m_sink.databaseChanged(oldName, database.name);
    m_sink.message({.number = 5701,
                    .severity = 0,
                    .text = QStringLiteral("Changed database context to '%1'.").arg(database.name)});
    done(-1, false);
}

TypedValue& BatchRunner::variable(const QString& name) {
    const auto found = m_facts.variables.find(nameKey(name));
    if (found == m_facts.variables.end()) failVariable(name);
    return *found;
}

TypedValue BatchRunner::value(const ast::Expr& expr) {
    TypedValue result = evaluate(m_facts, m_store, expr);
    m_bound.check();
    return result;
}

void BatchRunner::run(const ast::SetVariable& statement) {
    TypedValue& target = variable(statement.name);
    const TypedValue given = value(*statement.expr);
    target.value = convertValue(given.value, given.type, target.type, false, m_facts.dateStyle);
    done(-1, false);
}

void BatchRunner::run(const ast::Declare& statement) {
    for (const auto& [name, type] : statement.variables) {
        if (isLong(type.id)) {
            throw SqlError(
                2739, 16,
                QStringLiteral("The text, ntext, and image data types are invalid for local variables."));
        }
        if (m_facts.variables.contains(nameKey(name))) {
            throw SqlError(
                134, 15,
                QStringLiteral("The variable name '%1' has already been declared. Variable names must be "
                               "unique within a query batch or stored procedure.")
                    .arg(name));
        }
        m_facts.variables.insert(nameKey(name), {type, {}});
    }
}

void BatchRunner::run(const ast::Execute& statement) {
    std::vector<Parameter> parameters;
    for (const ast::Argument& argument : statement.arguments) {
        TypedValue given = value(*argument.expr);
        parameters.push_back({.name = argument.name, .type = given.type, .value = std::move(given.value)});
    }
    callProcedure(statement.procedure, parameters);
}

void BatchRunner::run(const ast::If& statement) {
    const bool holds = value(*statement.condition).value == Value(qint64(1));
    for (const ast::Statement& chosen : holds ? statement.then : statement.otherwise)
        runStatement(chosen);
}

void BatchRunner::run(const ast::WaitFor& statement) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::milliseconds(statement.milliseconds);
    while (!m_sink.cancelled()) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        if (left <= 0) return done(-1, false);
        const qint64 nap = std::clamp<qint64>(left, 1, 5);
        QThread::msleep(static_cast<unsigned long>(nap));
        m_bound.addWaiting(nap);
        if (m_bound.isExceeded()) m_bound.check();
    }
}

void BatchRunner::run(const ast::Print& statement) {
    const TypedValue given = value(*statement.expr);
    m_sink.message({.number = 0, .severity = 0, .text = valueText(given.value, given.type)});
    done(-1, false);
}

void BatchRunner::run(const ast::Transaction& statement) {
    if (statement.step == ast::TransactionStep::Begin) {
        ++m_facts.transactions;
        return done(-1, false);
    }
    const bool commit = statement.step == ast::TransactionStep::Commit;
    if (m_facts.transactions == 0) {
        // One may have been open since the last statement, without anything to take back.
        if (m_options.implicitTransactions) return done(-1, false);
        throw SqlError(commit ? 3902 : 3903, 16,
                       QStringLiteral("The %1 TRANSACTION request has no corresponding BEGIN TRANSACTION.")
                           .arg(commit ? QStringLiteral("COMMIT") : QStringLiteral("ROLLBACK")));
    }
    m_facts.transactions = commit ? m_facts.transactions - 1 : 0;
    done(-1, false);
}

void BatchRunner::run(const ast::Refused& statement) {
    if (statement.kind == ast::Refused::Definition) {
        throw SqlError(262, 14,
                       QStringLiteral("%1 permission denied in database '%2'.")
                           .arg(statement.what, m_facts.database->name));
    }
    throw SqlError(3906, 16,
                   QStringLiteral("Could not run BEGIN TRANSACTION in database '%1' because the database is "
                                  "read-only.")
                       .arg(m_facts.database->name));
}

}  // namespace engine
