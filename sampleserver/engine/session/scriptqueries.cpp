#include "engine/session/scriptqueries.h"

#include "engine/binding/binder.h"
#include "engine/catalog/metadata.h"
#include "engine/store/storage.h"
#include "engine/syntax/parser.h"

namespace engine {

ScriptQueries::ScriptQueries(const World& world)
    : m_store([this](sqlite3* opened) { registerMetadataFunctions(opened, m_facts); }) {
    // The world outlives the reading of a script.
    m_facts.world = std::shared_ptr<const World>(std::shared_ptr<const World>(), &world);
    m_facts.login = QStringLiteral("sa");
    m_facts.user = QStringLiteral("dbo");
}

Constant ScriptQueries::expression(TokenCursor& tokens, const Database& database) {
    // What follows the value is not looked at, but for its first token.
    constexpr qsizetype most = 4000;
    qsizetype length = 0;
    const QString rest = tokens.rest();
    m_facts.database = &database;
    const ast::ExprPtr parsed =
        Parser(rest.left(std::max(rest.indexOf(QLatin1Char('\n')), most)), true).leadingExpression(&length);
    Emission emission;
    const Bound bound = Binder(m_facts, emission).constantExpression(*parsed);
    tokens.skip(length);
    if (bound.literal) return {.value = *bound.literal, .type = bound.type};
    const StatementPtr statement = m_store.prepare(QStringLiteral("SELECT ") + bound.sql, emission);
    Constant result{.value = {}, .type = bound.type};
    if (m_store.step(statement.get())) result.value = readStored(statement.get(), 0, bound.type);
    return result;
}

std::vector<std::vector<Constant>> ScriptQueries::rows(TokenCursor& tokens, const Database& database) {
    qsizetype length = 0;
    m_facts.database = &database;
    const ast::Query parsed = Parser(tokens.rest(), true).leadingQuery(&length);
    Emission emission;
    const BoundQuery query = Binder(m_facts, emission).query(parsed, -1);
    tokens.skip(length);
    const StatementPtr statement = m_store.prepare(query.sql, emission);
    std::vector<std::vector<Constant>> rows;
    while (m_store.step(statement.get())) {
        std::vector<Constant>& row = rows.emplace_back();
        for (size_t i = 0; i < query.columns.size(); ++i) {
            const SqlType& type = query.columns[i].type;
            row.push_back({.value = readStored(statement.get(), static_cast<int>(i), type), .type = type});
        }
    }
    return rows;
}

}  // namespace engine
