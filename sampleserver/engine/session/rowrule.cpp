#include "engine/session/rowrule.h"

#include "engine/binding/binder.h"
#include "engine/store/storage.h"
#include "engine/syntax/parser.h"

namespace engine {

RowRule RowRule::condition(const SessionFacts& facts, const Database& database, const Table& table,
                           const QString& text) {
    RowRule rule(database, table);
    const ast::ExprPtr condition = parseCondition(text);
    rule.m_sql = Binder(facts, rule.m_emission).rowExpression(*condition, database, table).sql.toUtf8();
    return rule;
}

RowRule RowRule::computation(const SessionFacts& facts, const Database& database, const Table& table,
                             const QString& text) {
    RowRule rule(database, table);
    const ast::ExprPtr expression = parseExpression(text);
    const Bound bound = Binder(facts, rule.m_emission).rowExpression(*expression, database, table);
    rule.m_sql = bound.sql.toUtf8();
    rule.m_type = bound.type;
    rule.m_nullable = bound.nullable;
    return rule;
}

StoreStatement RowRule::prepared(const QByteArray& sql, bool lastOnly) const {
    StoreStatement statement(m_store, lastOnly ? sql + " AND rowid = last_insert_rowid()" : sql);
    statement.bind(m_emission.parameters());
    return statement;
}

StoreStatement RowRule::breach(bool lastOnly) const {
    return prepared("SELECT 1 FROM \"" + m_table->storage.toUtf8() + "\" WHERE NOT (" + m_sql + ")",
                    lastOnly);
}

StoreStatement RowRule::update(int column, bool lastOnly) const {
    return prepared("UPDATE \"" + m_table->storage.toUtf8() + "\" SET " + storageColumn(column).toUtf8() +
                        " = (" + m_sql + ") WHERE 1",
                    lastOnly);
}

}  // namespace engine
