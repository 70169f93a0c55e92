#include "engine/binding/binder.h"
#include "engine/binding/laterviews.h"
#include "engine/syntax/parser.h"
#include "engine/values/sqlerror.h"
#include "engine/values/typeinfo.h"

namespace engine {

namespace {

QString quotedName(QString name) {
    return u'"' + name.replace(u'"', QStringLiteral("\"\"")) + u'"';
}

void checkNames(const Source& added, const std::vector<Source>& others) {
    for (const Source& other : others) {
        if (added.exposedName().compare(other.exposedName(), Qt::CaseInsensitive) != 0) continue;
        const bool differ = added.alias.isEmpty() && other.alias.isEmpty() && added.table != other.table;
        if (differ) continue;
        throw SqlError(
            1013, 15,
            QStringLiteral("Tables '%1' and '%2' have the same exposed names. Use correlation names to "
                           "distinguish them.")
                .arg(other.exposedName(), added.exposedName()));
    }
}

}  // namespace

void Binder::addNamed(const ast::NamedTable& named, Scope& scope, bool outer) {
    const ast::Path& path = named.path;
    if (path.size() > 3) {
        throw SqlError(
            7202, 11,
            QStringLiteral("Could not find server '%1' in sysservers. Execute sp_addlinkedserver to add "
                           "the server to sysservers.")
                .arg(path[0]));
    }
    Source source;
    source.alias = named.alias;
    source.database =
        path.size() == 3 && !path[0].isEmpty() ? m_facts.world->findDatabase(path[0]) : m_facts.database;
    source.outer = outer;
    QString user = m_facts.user;
    if (source.database && source.database != m_facts.database)
        user = existingUser(*source.database, m_facts.login);
    const QString owner = path.size() > 1 ? path[path.size() - 2] : QString();
    if (source.database) source.table = source.database->findTable(owner, path.back(), user);
    if (!source.table && source.database && m_facts.readsScript) {
        const QString view = laterView(source.database->name, owner, path.back());
        if (!view.isEmpty()) {
            TokenCursor tokens(view);
            const ast::Query query = Parser(tokens).query();
            return addDerived(query, named.alias.isEmpty() ? path.back() : named.alias, {}, scope, outer);
        }
    }
    if (!source.table)
        throw SqlError(208, 16,
                       QStringLiteral("Invalid object name '%1'.")
                           .arg(QStringList(path.begin(), path.end()).join(u'.')));
    if (source.table->deniedUsers.contains(user, Qt::CaseInsensitive)) {
        throw SqlError(229, 14,
                       QStringLiteral("SELECT permission denied on object '%1', database '%2', owner '%3'.")
                           .arg(source.table->name, source.database->name, source.table->owner));
    }
    source.sqlName = u'a' + QString::number(m_sources++);
    checkNames(source, scope.sources);
    scope.sources.push_back(std::move(source));
}

void Binder::addSources(const ast::Table& table, Scope& scope, bool outer) {
    if (const auto* named = std::get_if<ast::NamedTable>(&table.node)) return addNamed(*named, scope, outer);
    if (const auto* join = std::get_if<ast::Join>(&table.node)) {
        addSources(*join->left, scope,
                   outer || join->kind == ast::JoinKind::Right || join->kind == ast::JoinKind::Full);
        addSources(*join->right, scope,
                   outer || join->kind == ast::JoinKind::Left || join->kind == ast::JoinKind::Full);
        return;
    }
    const auto& derived = std::get<ast::DerivedTable>(table.node);
    addDerived(*derived.query, derived.alias, derived.columnNames, scope, outer);
}

void Binder::addDerived(const ast::Query& derived, const QString& alias,
                        const std::vector<QString>& columnNames, Scope& scope, bool outer) {
    BoundQuery query = boundQuery(derived, scope.outer());
    Source source;
    source.alias = alias;
    source.outer = outer;
    source.columns = std::move(query.columns);
    source.derived = query.sql;
    if (!columnNames.empty() && columnNames.size() != source.columns.size()) {
        const bool fewer = columnNames.size() < source.columns.size();
        throw SqlError(fewer ? 8158 : 8159, 16,
                       QStringLiteral("'%1' has %2 columns than were specified in the column list.")
                           .arg(alias, fewer ? QStringLiteral("more") : QStringLiteral("fewer")));
    }
    for (size_t i = 0; i < columnNames.size(); ++i)
        source.columns[i].name = columnNames[i];
    for (size_t i = 0; i < source.columns.size(); ++i) {
        if (!source.columns[i].name.isEmpty()) continue;
        throw SqlError(
            8155, 16, QStringLiteral("No column was specified for column %1 of '%2'.").arg(i + 1).arg(alias));
    }
    source.sqlName = u'a' + QString::number(m_sources++);
    checkNames(source, scope.sources);
    scope.outerUses.insert(scope.outerUses.end(), query.uses.begin(), query.uses.end());
    scope.sources.push_back(std::move(source));
}

QString Binder::sourceText(const Source& source) {
    if (!source.table) return QStringLiteral("(%1) AS %2").arg(source.derived, source.sqlName);
    return QStringLiteral("%1.%2 AS %3")
        .arg(m_emission.schema(*source.database), quotedName(source.table->storage), source.sqlName);
}

QString Binder::joinCondition(const ast::Join& join, Scope& scope, size_t first, size_t last) {
    if (!join.on) return QStringLiteral("1");
    scope.first = first;
    scope.last = last;
    const QString sql = expression(*join.on, scope).sql;
    scope.first = 0;
    scope.last = scope.sources.size();
    return sql;
}

/// Writes a table expression with its joins as they are nested; `next` counts the tables written.
QString Binder::nested(const ast::Table& table, Scope& scope, size_t& next) {
    const auto* join = std::get_if<ast::Join>(&table.node);
    if (!join) return sourceText(scope.sources[next++]);
    const size_t first = next;
    const QString left = nested(*join->left, scope, next);
    const QString right = nested(*join->right, scope, next);
    const QString on = joinCondition(*join, scope, first, next);
    switch (join->kind) {
        case ast::JoinKind::Left:
            return QStringLiteral("(%1 LEFT JOIN %2 ON %3)").arg(left, right, on);
        case ast::JoinKind::Right:
            return QStringLiteral("(%2 LEFT JOIN %1 ON %3)").arg(left, right, on);
        case ast::JoinKind::Full:
            return QStringLiteral("(%1 FULL JOIN %2 ON %3)").arg(left, right, on);
        case ast::JoinKind::Inner:
            break;
    }
    return QStringLiteral("(%1 JOIN %2 ON %3)").arg(left, right, on);
}

/// Inner joins become a plain list of tables with their conditions in WHERE, so that SQLite is free to order
/// them; what is outer keeps its nesting.
void Binder::flatten(const ast::Table& table, Scope& scope, size_t& next, FromTexts& texts) {
    const auto* join = std::get_if<ast::Join>(&table.node);
    const size_t first = next;
    const auto append = [&](const QString& text) {
        texts.tables += (texts.tables.isEmpty() ? QString() : QStringLiteral(", ")) + text;
    };
    if (!join) return append(sourceText(scope.sources[next++]));
    if (join->kind == ast::JoinKind::Inner) {
        flatten(*join->left, scope, next, texts);
        flatten(*join->right, scope, next, texts);
        if (join->on) texts.conditions.push_back(joinCondition(*join, scope, first, next));
    } else if (join->kind == ast::JoinKind::Left) {
        flatten(*join->left, scope, next, texts);
        const QString right = nested(*join->right, scope, next);
        texts.tables +=
            QStringLiteral(" LEFT JOIN %1 ON %2").arg(right, joinCondition(*join, scope, first, next));
    } else {
        append(nested(table, scope, next));
    }
}

QString Binder::fromText(const std::vector<ast::TablePtr>& from, Scope& scope, QStringList& conditions) {
    for (const ast::TablePtr& table : from)
        addSources(*table, scope, false);
    scope.last = scope.sources.size();
    FromTexts texts;
    size_t next = 0;
    for (const ast::TablePtr& table : from)
        flatten(*table, scope, next, texts);
    conditions = std::move(texts.conditions);
    return texts.tables;
}

}  // namespace engine
