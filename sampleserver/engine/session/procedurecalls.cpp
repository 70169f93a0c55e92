#include "engine/catalog/metadata.h"
#include "engine/catalog/procedures.h"
#include "engine/session/batchrunner.h"
#include "engine/syntax/parser.h"
#include "engine/values/convert.h"

#include <algorithm>
#include <utility>

namespace engine {

namespace {

SqlError notSupplied(const QString& statement, const QString& parameter) {
    return SqlError(8178, 16,
                    QStringLiteral("Prepared statement '%1' expects parameter %2, which was not supplied.")
                        .arg(statement, parameter));
}

/// Parameter `position` of a call as a text. Throws SqlError 214.
QString statementText(const std::vector<Parameter>& parameters, size_t position, const char* name) {
    const auto* text =
        position < parameters.size() ? std::get_if<QString>(&parameters[position].value) : nullptr;
    if (text) return *text;
    const bool null = position < parameters.size() && parameters[position].value.index() == 0;
    if (null && position + 1 < parameters.size()) return {};
    throw SqlError(214, 16,
                   QStringLiteral("Procedure expects parameter '%1' of type 'ntext/nchar/nvarchar'.")
                       .arg(QLatin1String(name)));
}

qint64 handleOf(const std::vector<Parameter>& parameters) {
    const auto* handle = parameters.empty() ? nullptr : std::get_if<qint64>(&parameters.front().value);
    if (handle) return *handle;
    throw SqlError(214, 16, QStringLiteral("Procedure expects parameter '@handle' of type 'int'."));
}

std::vector<std::pair<QString, SqlType>> declaredBy(const PreparedStatement& statement) {
    TokenCursor tokens(statement.parameters);
    return Parser(tokens).parameters();
}

SqlError noSuchHandle(qint64 handle) {
    return SqlError(8179, 16,
                    QStringLiteral("Could not find prepared statement with handle %1.").arg(handle));
}

}  // namespace

void BatchRunner::call(const ProcedureRequest& request) {
    m_facts.variables.clear();
    guard([&] {
        const std::vector<QString> path = nameParts(request.name);
        callProcedure(path.empty() ? ast::Path{request.name} : path, request.parameters);
    });
}

void BatchRunner::callProcedure(const ast::Path& path, const std::vector<Parameter>& parameters) {
    if (callStatement(path.back().toLower(), parameters)) return;
    const Database* database = m_facts.database;
    QString user = m_facts.user;
    const SqlError unknown(2812, 16,
                           QStringLiteral("Could not find stored procedure '%1'.").arg(path.back()));
    if (path.size() > 3) throw unknown;
    if (path.size() == 3 && !path[0].isEmpty()) {
        database = m_facts.world->findDatabase(path[0]);
        const auto other = database ? userOfLogin(*database, m_facts.login) : std::nullopt;
        if (!other) throw unknown;
        user = *other;
    }
    const ProcedureRequest request{.name = path.back(), .parameters = parameters};
    if (!runProcedure(*m_facts.world, *database, user, request, m_sink)) throw unknown;
}

bool BatchRunner::callStatement(const QString& name, const std::vector<Parameter>& parameters) {
    const auto rest = [&](size_t from) {
        return std::span(parameters).subspan(std::min(from, parameters.size()));
    };
    if (name == QLatin1String("sp_executesql")) {
        const QString text = statementText(parameters, 0, "@statement");
        const QString declared = parameters.size() > 1 ? statementText(parameters, 1, "@params") : QString();
        runPrepared({.parameters = declared, .text = text}, rest(2), 2);
    } else if (name == QLatin1String("sp_prepare") || name == QLatin1String("sp_prepexec")) {
        PreparedStatement statement{.parameters = statementText(parameters, 1, "@params"),
                                    .text = statementText(parameters, 2, "@stmt")};
        const qint64 handle = keep(statement);
        if (name == QLatin1String("sp_prepare"))
            describe(statement);
        else
            runPrepared(statement, rest(3), 3);
        m_sink.returnValue(0,
                           {.name = parameters.front().name, .type = {.id = TypeId::Int}, .value = handle});
    } else if (name == QLatin1String("sp_execute")) {
        const auto found = m_state.prepared.constFind(handleOf(parameters));
        if (found == m_state.prepared.constEnd()) throw noSuchHandle(handleOf(parameters));
        runPrepared(*found, rest(1), 1);
    } else if (name == QLatin1String("sp_unprepare")) {
        if (m_state.prepared.remove(handleOf(parameters)) == 0) throw noSuchHandle(handleOf(parameters));
    } else {
        return false;
    }
    return true;
}

qint64 BatchRunner::keep(PreparedStatement statement) {
    constexpr qsizetype most = 10'000;
    if (m_state.prepared.size() >= most) throw insufficientMemory();
    m_state.prepared.insert(++m_state.lastHandle, std::move(statement));
    return m_state.lastHandle;
}

void BatchRunner::runPrepared(const PreparedStatement& statement, std::span<const Parameter> values,
                              int firstPosition) {
    const auto declared = declaredBy(statement);
    std::vector<const Parameter*> given(declared.size(), nullptr);
    size_t position = 0;
    for (const Parameter& value : values) {
        const auto named = std::ranges::find_if(
            declared, [&](const auto& one) { return nameKey(one.first) == nameKey(value.name); });
        const size_t at = named != declared.end() ? size_t(named - declared.begin()) : position;
        ++position;
        if (at >= declared.size()) {
            throw SqlError(8144, 16,
                           QStringLiteral("Procedure or function has too many arguments specified."));
        }
        given[at] = &value;
    }
    QHash<QString, TypedValue> variables;
    for (size_t i = 0; i < declared.size(); ++i) {
        const auto& [name, type] = declared[i];
        if (!given[i]) throw notSupplied(statement.text.left(128), name);
        variables.insert(nameKey(name), {type, convertValue(given[i]->value, given[i]->type, type, false,
                                                            m_facts.dateStyle)});
    }
    std::swap(m_facts.variables, variables);
    runText(statement.text);
    std::swap(m_facts.variables, variables);
    for (size_t i = 0; i < declared.size(); ++i) {
        if (!given[i]->output) continue;
        const TypedValue& left = variables[nameKey(declared[i].first)];
        m_sink.returnValue(firstPosition + int(given[i] - values.data()),
                           {.name = given[i]->name, .type = left.type, .value = left.value});
    }
}

/// Tells the columns of what the statement selects.
void BatchRunner::describe(const PreparedStatement& statement) {
    QHash<QString, TypedValue> variables;
    for (const auto& [name, type] : declaredBy(statement))
        variables.insert(nameKey(name), {type, {}});
    const bool columnsOnly = std::exchange(m_options.columnsOnly, true);
    m_selectsOnly = true;
    std::swap(m_facts.variables, variables);
    runText(statement.text);
    std::swap(m_facts.variables, variables);
    m_selectsOnly = false;
    m_options.columnsOnly = columnsOnly;
}

}  // namespace engine
