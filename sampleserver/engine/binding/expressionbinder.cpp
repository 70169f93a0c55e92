#include "engine/binding/arithmetic.h"
#include "engine/binding/binder.h"
#include "engine/binding/coercion.h"
#include "engine/binding/functions.h"
#include "engine/values/sqlerror.h"
#include "engine/values/typeinfo.h"

#include <algorithm>

namespace engine {

namespace {

bool isAggregateName(const QString& name) {
    static const QStringList names{QStringLiteral("count"), QStringLiteral("sum"), QStringLiteral("avg"),
                                   QStringLiteral("min"), QStringLiteral("max")};
    return names.contains(name, Qt::CaseInsensitive);
}

void forget(Bound& bound, const Scope& scope) {
    std::erase_if(bound.uses, [&](const ColumnUse& use) { return use.scope == &scope; });
}

}  // namespace

Bound Binder::expression(const ast::Expr& expr, Scope& scope) {
    Bound result = std::visit([&](const auto& node) { return bound(node, scope); }, expr.node);
    if (!result.uses.empty() && scope.groups.contains(result.sql)) forget(result, scope);
    return result;
}

Bound Binder::constantExpression(const ast::Expr& expr) {
    Scope scope(nullptr);
    return expression(expr, scope);
}

Bound Binder::rowExpression(const ast::Expr& expr, const Database& database, const Table& table) {
    Scope scope(nullptr);
    Source& source = scope.sources.emplace_back();
    source.database = &database;
    source.table = &table;
    source.sqlName = u'"' + table.storage + u'"';
    scope.last = 1;
    Bound result = expression(expr, scope);
    if (!result.hasQuery) return result;
    throw SqlError(
        1046, 15,
        QStringLiteral("Subqueries are not allowed in this context. Only scalar expressions are allowed."));
}

Bound Binder::bound(const ast::Literal& node, Scope&) {
    Bound result = boundConstant(node.value, node.type, m_emission);
    result.isWritten = true;
    if (!node.isNull) return result;
    result.isNull = true;
    result.literal.reset();
    return result;
}

Bound Binder::bound(const ast::ColumnName& node, Scope& scope) {
    return scope.resolve(node.path);
}

Bound Binder::bound(const ast::Variable& node, Scope&) {
    if (node.name.startsWith(QLatin1String("@@"))) return globalVariable(node.name, m_facts, m_emission);
    const auto found = m_facts.variables.find(nameKey(node.name));
    if (found == m_facts.variables.end()) failVariable(node.name);
    m_variablesRead.insert(found.key());
    Bound result = boundConstant(found->value, found->type, m_emission);
    result.nullable = true;
    return result;
}

Bound Binder::bound(const ast::Unary& node, Scope& scope) {
    return unaryArithmetic(node.op, expression(*node.operand, scope), m_emission);
}

Bound Binder::bound(const ast::Binary& node, Scope& scope) {
    Bound left = expression(*node.left, scope);
    return arithmetic(node.op, std::move(left), expression(*node.right, scope), m_emission);
}

void Binder::checkOneColumn(const BoundQuery& query) {
    if (query.columns.size() == 1) return;
    throw SqlError(
        116, 16,
        QStringLiteral("Only one expression can be specified in the select list when the subquery is "
                       "not introduced with EXISTS."));
}

Bound Binder::bound(const ast::ScalarQuery& node, Scope& scope) {
    BoundQuery query = boundQuery(*node.query, &scope);
    checkOneColumn(query);
    Bound result;
    result.sql = query.singleRow ? QStringLiteral("(%1)").arg(query.sql)
                                 : QStringLiteral("(SELECT ts_single(r0) FROM (%1))").arg(query.sql);
    result.type = query.columns[0].type;
    result.hasQuery = true;
    result.uses = std::move(query.uses);
    return result;
}

Bound Binder::bound(const ast::Case& node, Scope& scope) {
    std::vector<std::pair<Bound, Bound>> branches;
    std::vector<Bound> results;
    Bound whole;
    whole.nullable = false;
    std::optional<Bound> subject;
    if (node.subject) subject = expression(*node.subject, scope);
    for (const auto& [when, then] : node.branches) {
        Bound test = subject
                         ? comparison(ast::CompareOp::Equal, *subject, expression(*when, scope), m_emission)
                         : expression(*when, scope);
        addUses(whole, test);
        branches.emplace_back(std::move(test), expression(*then, scope));
        results.push_back(branches.back().second);
    }
    if (node.otherwise) results.push_back(expression(*node.otherwise, scope));
    if (std::ranges::all_of(results, [](const Bound& result) { return result.isNull; })) {
        throw SqlError(8133, 16, QStringLiteral("None of the result expressions in a CASE can be NULL."));
    }
    Bound common = results.front();
    for (const Bound& result : results) {
        common.type = commonType(common, result);
        common.isNull = common.isNull && result.isNull;
        common.literal.reset();
    }
    whole.type = common.type;
    whole.sql = QStringLiteral("CASE");
    for (const auto& [test, then] : branches) {
        const Bound converted = implicitly(then, whole.type, m_emission);
        addUses(whole, converted);
        whole.nullable = whole.nullable || converted.nullable;
        whole.sql += QStringLiteral(" WHEN %1 THEN %2").arg(test.sql, converted.sql);
    }
    whole.nullable = whole.nullable || !node.otherwise;
    if (node.otherwise) {
        const Bound converted = implicitly(results.back(), whole.type, m_emission);
        addUses(whole, converted);
        whole.nullable = whole.nullable || converted.nullable;
        whole.sql += QStringLiteral(" ELSE %1").arg(converted.sql);
    }
    whole.sql += QStringLiteral(" END");
    return whole;
}

Bound Binder::bound(const ast::Convert& node, Scope& scope) {
    Bound operand = expression(*node.operand, scope);
    operand.isWritten = false;
    if (!node.style) return explicitly(operand, node.type, 0, m_emission);
    return explicitly(operand, node.type, expression(*node.style, scope), m_emission);
}

Bound Binder::bound(const ast::Call& node, Scope& scope) {
    if (isAggregateName(node.name)) return aggregate(node, scope);
    if (node.star || node.distinct)
        throw SqlError(170, 15, QStringLiteral("Line 1: Incorrect syntax near '*'."));
    std::vector<Bound> arguments;
    QString datePart;
    for (const ast::ExprPtr& argument : node.arguments) {
        if (arguments.empty() && datePart.isEmpty() && takesDatePart(node.name)) {
            // year, month and the like are no columns here.
            const auto* name = std::get_if<ast::ColumnName>(&argument->node);
            datePart = name && name->path.size() == 1 ? name->path[0] : QStringLiteral("?");
            continue;
        }
        arguments.push_back(expression(*argument, scope));
    }
    return callFunction(node.name, datePart, std::move(arguments), m_facts, m_emission);
}

Bound Binder::aggregate(const ast::Call& node, Scope& scope) {
    const QString function = node.name.toLower();
    if (!scope.aggregatesAllowed) {
        throw SqlError(
            147, 16,
            QStringLiteral("An aggregate may not appear in the WHERE clause unless it is in a subquery "
                           "contained in a HAVING clause or a select list, and the column being "
                           "aggregated is an outer reference."));
    }
    const SqlError notPlain(
        130, 16,
        QStringLiteral("Cannot perform an aggregate function on an expression containing an aggregate "
                       "or a subquery."));
    if (scope.inAggregate) throw notPlain;
    scope.sawAggregate = true;
    if (node.star && function == QLatin1String("count")) {
        Bound count;
        count.sql = QStringLiteral("count(*)");
        count.nullable = false;
        count.hasAggregate = true;
        return count;
    }
    if (node.star || node.arguments.size() != 1) {
        throw SqlError(174, 15, QStringLiteral("The %1 function requires 1 arguments.").arg(function));
    }
    scope.inAggregate = true;
    const Bound argument = expression(*node.arguments[0], scope);
    scope.inAggregate = false;
    if (argument.hasQuery || !argument.uses.empty()) throw notPlain;
    const QString distinct = node.distinct ? QStringLiteral("DISTINCT ") : QString();
    Bound result = aggregateOf(function, distinct, argument);
    result.hasAggregate = true;
    return result;
}

Bound Binder::aggregateOf(const QString& function, const QString& distinct, const Bound& argument) {
    const TypeId id = argument.type.id;
    Bound result;
    const auto text = [&](const char* name) {
        return QStringLiteral("%1(%2%3)").arg(QLatin1String(name), distinct, collated(argument));
    };
    const bool adds = function == QLatin1String("sum") || function == QLatin1String("avg");
    if (isLong(id) || (id == TypeId::UniqueIdentifier && function != QLatin1String("count")) ||
        (adds && (!isNumber(id) || id == TypeId::Bit)) ||
        (id == TypeId::Bit && function != QLatin1String("count"))) {
        throw SqlError(
            409, 16,
            QStringLiteral("The %1 aggregate operation cannot take a %2 data type as an argument.")
                .arg(function == QLatin1String("avg") ? QStringLiteral("average") : function, typeName(id)));
    }
    if (function == QLatin1String("count")) {
        result.sql = text("count");
        result.nullable = false;
        return result;
    }
    result.type = argument.type;
    if (!adds) {
        result.sql = text(function == QLatin1String("min") ? "min" : "max");
        return result;
    }
    const bool average = function == QLatin1String("avg");
    if (isFloat(id)) {
        result.type = {.id = TypeId::Float};
        result.sql = callText("ts_float", {text(average ? "avg" : "sum")});
    } else if (isDecimal(id)) {
        const SqlType total{.id = id, .precision = 38, .scale = argument.type.scale};
        Bound sum =
            boundWhole(text(isNarrowDecimal(argument.type) ? "sum" : "ts_sumdecimal"), argument.type, {});
        sum.type.precision = isNarrowDecimal(argument.type) ? 18 : 38;
        sum = explicitly(sum, total, 0, m_emission);
        result.type = total;
        result.sql = sum.sql;
        if (average) {
            const Bound count = boundWhole(text("count"), {.id = TypeId::Decimal, .precision = 18}, {});
            result.type.scale = std::max(6, total.scale);
            result.sql = decimalCall(3, sum, count, result.type);
        }
    } else {
        result.type = {.id = isMoney(id) ? TypeId::Money : TypeId::Int};
        result.sql = checkedInteger(text("sum"), result.type);
        if (average) result.sql = QStringLiteral("(%1 / %2)").arg(result.sql, text("count"));
    }
    return result;
}

}  // namespace engine
