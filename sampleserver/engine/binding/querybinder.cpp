#include "engine/binding/binder.h"
#include "engine/binding/coercion.h"
#include "engine/values/sqlerror.h"
#include "engine/values/typeinfo.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace engine {

void failOwnVariable(const QString& name) {
    throw SqlError(
        8624, 16,
        QStringLiteral("Internal SQL Server error: variable '%1' is read where the same SELECT has "
                       "already assigned to it.")
            .arg(name));
}

namespace {

QString resultName(size_t position) {
    return u'r' + QString::number(position);
}

/// The name of a result column without an alias: that of the column it shows.
QString ownName(const ast::Expr& expr) {
    const auto* column = std::get_if<ast::ColumnName>(&expr.node);
    return column ? column->path.back() : QString();
}

const ast::Literal* integerLiteral(const ast::Expr& expr) {
    const auto* literal = std::get_if<ast::Literal>(&expr.node);
    return literal && literal->type.id == TypeId::Int && !literal->isNull ? literal : nullptr;
}

QString ordered(const QString& sql, const SqlType& type, bool descending) {
    const QString key =
        type.id == TypeId::UniqueIdentifier ? callText("ts_guidkey", {sql}) : sql + collationOf(type);
    return descending ? key + QStringLiteral(" DESC") : key;
}

void checkSortable(const SqlType& type) {
    if (!isLong(type.id)) return;
    throw SqlError(
        420, 16,
        QStringLiteral("The text, ntext, and image data types cannot be used in an ORDER BY clause."));
}

}  // namespace

BoundQuery Binder::query(const ast::Query& query, qint64 rowLimit) {
    BoundQuery result = boundQuery(query, nullptr, rowLimit);
    result.readsOwnVariables = std::ranges::any_of(
        result.variables, [this](const QString& name) { return m_variablesRead.contains(nameKey(name)); });
    return result;
}

BoundQuery Binder::boundQuery(const ast::Query& query, Scope* outer, qint64 rowLimit) {
    BoundQuery result;
    if (query.body.core) {
        Core core = boundCore(*query.body.core, query.orderBy, outer);
        const bool limits = rowLimit >= 0 && core.limit.isEmpty();
        if (limits) core.limit = QStringLiteral(" LIMIT %1").arg(rowLimit);
        result.sql = render(core);
        if (rowLimit >= 0 && !limits) {
            result.sql =
                QStringLiteral("SELECT * FROM (%1) LIMIT %2").arg(result.sql, QString::number(rowLimit));
        }
        result.columns = std::move(core.columns);
        result.variables = std::move(core.variables);
        result.singleRow = core.singleRow;
        result.uses = std::move(core.uses);
        return result;
    }
    result = boundUnion(query.body, outer);
    if (query.orderBy.empty() && rowLimit < 0) return result;
    Core whole;
    whole.columns = result.columns;
    Scope scope(nullptr);
    result.sql =
        QStringLiteral("SELECT * FROM (%1)").arg(result.sql) + orderText(query.orderBy, scope, whole);
    if (rowLimit >= 0) result.sql += QStringLiteral(" LIMIT %1").arg(rowLimit);
    return result;
}

BoundQuery Binder::boundBody(const ast::QueryBody& body, Scope* outer) {
    if (!body.core) return boundUnion(body, outer);
    Core core = boundCore(*body.core, {}, outer);
    BoundQuery result;
    result.sql = render(core);
    // SQLite takes no LIMIT inside of a UNION.
    if (!core.limit.isEmpty()) result.sql = QStringLiteral("SELECT * FROM (%1)").arg(result.sql);
    result.columns = std::move(core.columns);
    result.uses = std::move(core.uses);
    if (!core.variables.empty()) {
        throw SqlError(10734, 15,
                       QStringLiteral("Variable assignment is not allowed in a statement containing a "
                                      "top level UNION operator."));
    }
    return result;
}

BoundQuery Binder::boundUnion(const ast::QueryBody& body, Scope* outer) {
    BoundQuery left = boundBody(*body.left, outer);
    const BoundQuery right = boundBody(*body.right, outer);
    if (left.columns.size() != right.columns.size()) {
        throw SqlError(
            205, 16,
            QStringLiteral("All queries in an SQL statement containing a UNION operator must have an "
                           "equal number of expressions in their target lists."));
    }
    std::vector<OutputColumn> columns = left.columns;
    QString leftItems;
    QString rightItems;
    for (size_t i = 0; i < columns.size(); ++i) {
        const auto column = [&](const OutputColumn& output) {
            Bound bound;
            bound.sql = resultName(i);
            bound.type = output.type;
            bound.isNull = output.isNull;
            return bound;
        };
        const Bound a = column(left.columns[i]);
        const Bound b = column(right.columns[i]);
        columns[i].type = commonType(a, b);
        columns[i].isNull = a.isNull && b.isNull;
        columns[i].nullable = left.columns[i].nullable || right.columns[i].nullable;
        const auto item = [&](const Bound& bound) {
            const QString sql = implicitly(bound, columns[i].type, m_emission).sql;
            return sql + collationOf(columns[i].type) + QStringLiteral(" AS ") + resultName(i);
        };
        const QString separator = i == 0 ? QString() : QStringLiteral(", ");
        leftItems += separator + item(a);
        rightItems += separator + item(b);
        if (isLong(columns[i].type.id) && !body.all) {
            throw SqlError(
                8163, 16,
                QStringLiteral("The text, ntext, or image data type cannot be selected as DISTINCT."));
        }
    }
    left.sql =
        QStringLiteral("SELECT %1 FROM (%2) UNION%3 SELECT %4 FROM (%5)")
            .arg(leftItems, left.sql, body.all ? QStringLiteral(" ALL") : QString(), rightItems, right.sql);
    left.columns = std::move(columns);
    left.singleRow = false;
    left.uses.insert(left.uses.end(), right.uses.begin(), right.uses.end());
    return left;
}

Binder::Core Binder::boundCore(const ast::SelectCore& core, const std::vector<ast::OrderItem>& order,
                               Scope* outer) {
    Scope scope(outer);
    Core result;
    QStringList conditions;
    if (!core.from.empty()) result.tail = QStringLiteral(" FROM ") + fromText(core.from, scope, conditions);
    if (core.where) conditions.push_back(expression(*core.where, scope).sql);
    if (!conditions.empty())
        result.tail += QStringLiteral(" WHERE ") + conditions.join(QLatin1String(" AND "));
    boundGroups(core, scope, result);
    scope.aggregatesAllowed = true;
    result.distinct = core.distinct;
    boundItems(core, scope, result);
    std::optional<Bound> having;
    if (core.having) having = expression(*core.having, scope);
    result.order = orderText(order, scope, result);
    const bool grouped = !core.groupBy.empty() || scope.sawAggregate || having;
    for (const Bound& item : result.items)
        checkGrouped(item, scope, grouped, core.groupBy.empty() ? 8118 : 8120, "select list");
    if (having) {
        checkGrouped(*having, scope, true, core.groupBy.empty() ? 8119 : 8121, "HAVING clause");
        result.tail += QStringLiteral(" HAVING ") + having->sql;
        // Without groups all rows are one, also when there are none; SQLite knows that by an aggregate among
        // the items only.
        const bool shown = std::ranges::any_of(result.items, &Bound::hasAggregate);
        if (core.groupBy.empty() && !shown) {
            Bound& item = result.items.front();
            item.sql = QStringLiteral("CASE WHEN count(*) >= 0 THEN %1 END").arg(item.sql);
        }
    }
    for (const Bound& key : result.orderKeys)
        checkGrouped(key, scope, grouped, core.groupBy.empty() ? 8126 : 8127, "ORDER BY clause");
    result.singleRow = (scope.sawAggregate && core.groupBy.empty()) || core.from.empty() ||
                       (core.top && !core.top->percent && core.top->count <= 1);
    result.limit = topText(core, result);
    result.uses = std::move(scope.outerUses);
    return result;
}

void Binder::boundGroups(const ast::SelectCore& core, Scope& scope, Core& result) {
    QStringList groups;
    QSet<QString> texts;
    for (const ast::ExprPtr& expr : core.groupBy) {
        const Bound group = expression(*expr, scope);
        if (group.hasQuery) {
            throw SqlError(
                144, 15,
                QStringLiteral("Cannot use an aggregate or a subquery in an expression used for the group "
                               "by list of a GROUP BY clause."));
        }
        if (group.uses.empty()) {
            throw SqlError(
                164, 15,
                QStringLiteral("GROUP BY expressions must refer to column names that appear in the select "
                               "list."));
        }
        if (isLong(group.type.id)) {
            throw SqlError(
                306, 16,
                QStringLiteral("The text, ntext, and image data types cannot be compared or sorted, except "
                               "when using IS NULL or LIKE operator."));
        }
        groups.push_back(collated(group));
        texts.insert(group.sql);
    }
    scope.groups = texts;
    if (!groups.empty()) result.tail += QStringLiteral(" GROUP BY ") + groups.join(QLatin1String(", "));
}

void Binder::addItem(Core& result, Bound bound, const QString& name) {
    if (result.distinct && isLong(bound.type.id)) {
        throw SqlError(8163, 16,
                       QStringLiteral("The text, ntext, or image data type cannot be selected as DISTINCT."));
    }
    result.columns.push_back({name, bound.type, bound.nullable, bound.isNull, bound.identity});
    result.items.push_back(std::move(bound));
}

void Binder::addStar(const ast::SelectItem& item, Scope& scope, Core& result) {
    bool found = false;
    for (const Source& source : scope.sources) {
        if (!source.matches(item.starPrefix)) continue;
        found = true;
        for (int i = 0; i < source.columnCount(); ++i)
            addItem(result, scope.column(source, i), source.columnName(i));
    }
    if (found) return;
    if (scope.sources.empty() && item.starPrefix.empty()) {
        throw SqlError(263, 16, QStringLiteral("Must specify table to select from."));
    }
    failPrefix(item.starPrefix);
}

void Binder::boundItems(const ast::SelectCore& core, Scope& scope, Core& result) {
    QSet<QString> assigned;
    for (const ast::SelectItem& item : core.items) {
        if (!item.expr) {
            addStar(item, scope, result);
            continue;
        }
        const QSet<QString> readBefore = std::exchange(m_variablesRead, {});
        Bound bound = expression(*item.expr, scope);
        for (const QString& name : m_variablesRead) {
            if (assigned.contains(name)) failOwnVariable(name);
        }
        m_variablesRead += readBefore;
        if (!item.variable.isEmpty()) {
            const auto variable = m_facts.variables.find(nameKey(item.variable));
            if (variable == m_facts.variables.end()) failVariable(item.variable);
            bound = implicitly(bound, variable->type, m_emission);
            assigned.insert(variable.key());
            result.variables.push_back(item.variable);
        }
        addItem(result, std::move(bound), item.name.isEmpty() ? ownName(*item.expr) : item.name);
    }
    if (!result.variables.empty() && result.variables.size() != result.items.size()) {
        throw SqlError(
            141, 15,
            QStringLiteral("A SELECT statement that assigns a value to a variable must not be combined with "
                           "data-retrieval operations."));
    }
}

void Binder::checkGrouped(const Bound& bound, const Scope& scope, bool grouped, int number,
                          const char* clause) const {
    if (!grouped) return;
    const auto use = std::ranges::find(bound.uses, &scope, &ColumnUse::scope);
    if (use == bound.uses.end()) return;
    const bool noGroups = number == 8118 || number == 8119 || number == 8126;
    const QString reason =
        noGroups
            ? QStringLiteral("it is not contained in an aggregate function and there is no GROUP BY clause.")
            : QStringLiteral("it is not contained in either an aggregate function or the GROUP BY clause.");
    throw SqlError(number, 16,
                   QStringLiteral("Column '%1' is invalid in the %2 because %3")
                       .arg(use->name, QLatin1String(clause), reason));
}

QString Binder::orderText(const std::vector<ast::OrderItem>& order, Scope& scope, Core& core) {
    QStringList keys;
    for (const ast::OrderItem& item : order) {
        const int position = orderPosition(*item.expr, core);
        if (position >= 0) {
            const SqlType& type = core.columns[static_cast<size_t>(position)].type;
            checkSortable(type);
            keys.push_back(ordered(resultName(static_cast<size_t>(position)), type, item.descending));
            continue;
        }
        if (core.items.empty()) {
            throw SqlError(
                104, 15,
                QStringLiteral("ORDER BY items must appear in the select list if the statement contains a "
                               "UNION operator."));
        }
        Bound key = expression(*item.expr, scope);
        checkSortable(key.type);
        if (key.literal) {
            throw SqlError(
                408, 16,
                QStringLiteral("A constant expression was encountered in the ORDER BY list, position %1.")
                    .arg(keys.size() + 1));
        }
        if (core.distinct && std::ranges::find(core.items, key.sql, &Bound::sql) == core.items.end()) {
            throw SqlError(
                145, 15,
                QStringLiteral("ORDER BY items must appear in the select list if SELECT DISTINCT is "
                               "specified."));
        }
        keys.push_back(ordered(key.sql, key.type, item.descending));
        core.orderKeys.push_back(std::move(key));
    }
    return keys.empty() ? QString() : QStringLiteral(" ORDER BY ") + keys.join(QLatin1String(", "));
}

int Binder::orderPosition(const ast::Expr& expr, const Core& core) {
    if (const ast::Literal* number = integerLiteral(expr)) {
        const qint64 position = std::get<qint64>(number->value);
        if (position < 1 || position > static_cast<qint64>(core.columns.size())) {
            throw SqlError(
                108, 15,
                QStringLiteral("The ORDER BY position number %1 is out of range of the number of items in "
                               "the select list.")
                    .arg(position));
        }
        return static_cast<int>(position - 1);
    }
    const auto* name = std::get_if<ast::ColumnName>(&expr.node);
    if (!name || name->path.size() != 1) return -1;
    int found = -1;
    for (size_t i = 0; i < core.columns.size(); ++i) {
        if (core.columns[i].name.compare(name->path[0], Qt::CaseInsensitive) != 0) continue;
        const bool same = found >= 0 && !core.items.empty() &&
                          core.items[i].sql == core.items[static_cast<size_t>(found)].sql;
        if (found >= 0 && !same) {
            throw SqlError(209, 16, QStringLiteral("Ambiguous column name '%1'.").arg(name->path[0]));
        }
        if (found < 0) found = static_cast<int>(i);
    }
    return found;
}

QString Binder::topText(const ast::SelectCore& core, const Core& result) {
    if (!core.top) return {};
    if (!core.top->percent) return QStringLiteral(" LIMIT %1").arg(static_cast<qint64>(core.top->count));
    if (core.top->count > 100) {
        throw SqlError(1031, 15, QStringLiteral("Percent values must be between 0 and 100."));
    }
    Core all = result;
    all.order.clear();
    // Counted in hundredths of a percent; part of a row makes it a whole one.
    return QStringLiteral(" LIMIT (SELECT (count(*) * %1 + 9999) / 10000 FROM (%2))")
        .arg(QString::number(std::llround(core.top->count * 100)), render(all));
}

QString Binder::render(const Core& core) {
    QString items;
    for (size_t i = 0; i < core.items.size(); ++i) {
        if (i > 0) items += QLatin1String(", ");
        items += collated(core.items[i]) + QStringLiteral(" AS ") + resultName(i);
    }
    const QString start = core.distinct ? QStringLiteral("SELECT DISTINCT ") : QStringLiteral("SELECT ");
    return start + items + core.tail + core.order + core.limit;
}

}  // namespace engine
