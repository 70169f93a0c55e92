#include "engine/session/rowrule.h"

#include "engine/binding/binder.h"
#include "engine/store/storage.h"
#include "engine/syntax/parser.h"

namespace engine {

namespace {

SessionFacts ownersFacts(const World& world, const Database& database) {
    SessionFacts facts;
    // The world outlives what is made of it while it is filled.
    facts.world = std::shared_ptr<const World>(std::shared_ptr<const World>(), &world);
    facts.database = &database;
    facts.login = QStringLiteral("sa");
    facts.user = QStringLiteral("dbo");
    return facts;
}

}  // namespace

RowRule RowRule::condition(const World& world, const Database& database, const Table& table,
                           const QString& text) {
    RowRule rule(database, table);
    const SessionFacts facts = ownersFacts(world, database);
    const ast::ExprPtr condition = Parser(text, true).wholeCondition();
    rule.m_sql = Binder(facts, rule.m_emission).rowExpression(*condition, database, table).sql.toUtf8();
    return rule;
}

RowRule RowRule::computation(const World& world, const Database& database, const Table& table,
                             const QString& text) {
    RowRule rule(database, table);
    const SessionFacts facts = ownersFacts(world, database);
    qsizetype length = 0;
    const ast::ExprPtr expression = Parser(text, true).leadingExpression(&length);
    const Bound bound = Binder(facts, rule.m_emission).rowExpression(*expression, database, table);
    rule.m_sql = bound.sql.toUtf8();
    rule.m_type = bound.type;
    rule.m_nullable = bound.nullable;
    return rule;
}

StoreStatement RowRule::prepared(const QByteArray& sql, bool lastOnly) const {
    StoreStatement statement(m_store, lastOnly ? sql + " AND rowid = last_insert_rowid()" : sql);
    int position = 0;
    for (const Emission::Parameter& parameter : m_emission.parameters())
        statement.bind(++position, parameter.value, parameter.type);
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
