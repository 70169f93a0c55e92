#include "engine/binding/arithmetic.h"
#include "engine/binding/binder.h"
#include "engine/binding/coercion.h"
#include "engine/values/sqlerror.h"
#include "engine/values/typeinfo.h"

namespace engine {

namespace {

Bound truth(const QString& sql, std::initializer_list<const Bound*> parts) {
    Bound result = boundWhole(sql, {.id = TypeId::Bit}, parts);
    return result;
}

QString negatedText(bool negated) {
    return negated ? QStringLiteral("NOT ") : QString();
}

}  // namespace

Bound Binder::bound(const ast::Comparison& node, Scope& scope) {
    const Bound left = expression(*node.left, scope);
    return comparison(node.op, left, expression(*node.right, scope), m_emission);
}

Bound Binder::bound(const ast::Logical& node, Scope& scope) {
    const Bound left = expression(*node.left, scope);
    const Bound right = expression(*node.right, scope);
    const QString form = node.isAnd ? QStringLiteral("(%1 AND %2)") : QStringLiteral("(%1 OR %2)");
    return truth(form.arg(left.sql, right.sql), {&left, &right});
}

Bound Binder::bound(const ast::Not& node, Scope& scope) {
    const Bound operand = expression(*node.operand, scope);
    return truth(QStringLiteral("(NOT %1)").arg(operand.sql), {&operand});
}

Bound Binder::bound(const ast::Like& node, Scope& scope) {
    const auto asText = [&](const ast::Expr& expr) {
        Bound part = expression(expr, scope);
        if (isText(part.type.id) && !part.isNull) return part;
        return implicitly(part, {.id = TypeId::VarChar, .length = 8000}, m_emission);
    };
    const Bound text = asText(*node.text);
    const Bound pattern = asText(*node.pattern);
    // Trailing blanks of the text count for n-types only.
    const QString national =
        isNational(text.type.id) || isNational(pattern.type.id) ? QStringLiteral("1") : QStringLiteral("0");
    const QString form = negatedText(node.negated) + QStringLiteral("%1");
    if (!node.escape) {
        return truth(u'(' + form.arg(callText("ts_like", {text.sql, pattern.sql, national})) + u')',
                     {&text, &pattern});
    }
    const Bound escape = asText(*node.escape);
    return truth(u'(' + form.arg(callText("ts_like", {text.sql, pattern.sql, national, escape.sql})) + u')',
                 {&text, &pattern, &escape});
}

Bound Binder::bound(const ast::Between& node, Scope& scope) {
    const Bound operand = expression(*node.operand, scope);
    const Bound low =
        comparison(ast::CompareOp::GreaterEqual, operand, expression(*node.low, scope), m_emission);
    const Bound high =
        comparison(ast::CompareOp::LessEqual, operand, expression(*node.high, scope), m_emission);
    return truth(QStringLiteral("(%1(%2 AND %3))").arg(negatedText(node.negated), low.sql, high.sql),
                 {&low, &high});
}

Bound Binder::bound(const ast::In& node, Scope& scope) {
    const Bound operand = expression(*node.operand, scope);
    if (node.query) return inQuery(node, operand, scope);
    Bound result = truth(QString(), {&operand});
    // Items that leave the operand as it is share one list; the others are compared one by one.
    QString left;
    QString list;
    QString others;
    for (const ast::ExprPtr& expr : node.list) {
        const Bound item = expression(*expr, scope);
        const EqualSides sides = equalSides(operand, item, m_emission);
        addUses(result, item);
        result.nullable = result.nullable || item.nullable;
        if (left.isEmpty()) left = sides.left;
        if (sides.left == left) {
            list += (list.isEmpty() ? QString() : QStringLiteral(", ")) + sides.right;
        } else {
            others += QStringLiteral(" OR %1 = %2").arg(sides.left, sides.right);
        }
    }
    result.sql = QStringLiteral("(%1(%2 IN (%3)%4))").arg(negatedText(node.negated), left, list, others);
    return result;
}

Bound Binder::inQuery(const ast::In& node, const Bound& operand, Scope& scope) {
    const BoundQuery query = boundQuery(*node.query, &scope);
    checkOneColumn(query);
    Bound item;
    item.sql = QStringLiteral("r0");
    item.type = query.columns[0].type;
    item.isNull = query.columns[0].isNull;
    if (isLong(operand.type.id) || isLong(item.type.id))
        comparison(ast::CompareOp::Equal, operand, item, m_emission);
    const SqlType common = commonType(operand, item);
    const Bound left = implicitly(operand, common, m_emission);
    const Bound right = implicitly(item, common, m_emission);
    const QString rows =
        right.sql == item.sql ? query.sql : QStringLiteral("SELECT %1 FROM (%2)").arg(right.sql, query.sql);
    Bound result = truth(
        QStringLiteral("(%1 %2IN (%3))").arg(left.sql + collationOf(common), negatedText(node.negated), rows),
        {&left});
    result.hasQuery = true;
    result.uses.insert(result.uses.end(), query.uses.begin(), query.uses.end());
    return result;
}

Bound Binder::bound(const ast::IsNull& node, Scope& scope) {
    const Bound operand = expression(*node.operand, scope);
    return truth(QStringLiteral("(%1 IS %2NULL)").arg(operand.sql, negatedText(node.negated)), {&operand});
}

Bound Binder::bound(const ast::Exists& node, Scope& scope) {
    const BoundQuery query = boundQuery(*node.query, &scope);
    Bound result = truth(QStringLiteral("EXISTS (%1)").arg(query.sql), {});
    result.hasQuery = true;
    result.nullable = false;
    result.uses = query.uses;
    return result;
}

}  // namespace engine
