#include "engine/session/evaluation.h"

#include "engine/binding/binder.h"

namespace engine {

TypedValue evaluate(const SessionFacts& facts, StoreConnection& store, const ast::Expr& expr) {
    if (const auto* literal = std::get_if<ast::Literal>(&expr.node)) return {literal->type, literal->value};
    Emission emission;
    const Bound bound = Binder(facts, emission).constantExpression(expr);
    if (bound.literal) return {bound.type, *bound.literal};
    StoreStatement prepared = store.prepare(QStringLiteral("SELECT ") + bound.sql, emission);
    TypedValue result{bound.type, {}};
    if (prepared.step()) result.value = prepared.value(0, bound.type);
    return result;
}

std::vector<std::vector<TypedValue>> evaluateRows(const SessionFacts& facts, StoreConnection& store,
                                                  const ast::Query& query) {
    Emission emission;
    const BoundQuery bound = Binder(facts, emission).query(query, -1);
    StoreStatement prepared = store.prepare(bound.sql, emission);
    std::vector<std::vector<TypedValue>> rows;
    while (prepared.step()) {
        std::vector<TypedValue>& row = rows.emplace_back();
        for (const OutputColumn& column : bound.columns) {
            const auto position = static_cast<int>(row.size());
            row.push_back({column.type, prepared.value(position, column.type)});
        }
    }
    return rows;
}

}  // namespace engine
