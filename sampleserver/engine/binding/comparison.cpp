#include "engine/binding/arithmetic.h"
#include "engine/binding/coercion.h"
#include "engine/values/conversions.h"
#include "engine/values/sqlerror.h"
#include "engine/values/typeinfo.h"

namespace engine {

using ast::CompareOp;

namespace {

QString symbolOf(CompareOp op) {
    static constexpr const char* symbols[] = {"=", "<>", "<", "<=", ">", ">="};
    return QString::fromLatin1(symbols[static_cast<int>(op)]);
}

/// True when SQLite compares the two as they lie.
bool comparesDirectly(const SqlType& a, const SqlType& b) {
    const auto plainNumber = [](TypeId id) { return isInteger(id) || isFloat(id); };
    return (isText(a.id) && isText(b.id)) || (plainNumber(a.id) && plainNumber(b.id)) ||
           (isMoney(a.id) && isMoney(b.id)) || (isDateTime(a.id) && isDateTime(b.id)) ||
           (isBinary(a.id) && isBinary(b.id)) || (a.id == b.id && a.id == TypeId::UniqueIdentifier);
}

/// A decimal constant beside a money column, as money when no digit is lost by it.
std::optional<Bound> asMoney(const Bound& constant, Emission& emission) {
    if (!constant.literal || !isDecimal(constant.type.id) || constant.type.scale > 4) return std::nullopt;
    try {
        const SqlType money{.id = TypeId::Money};
        return boundConstant(convertValue(*constant.literal, constant.type, money, false), money, emission);
    } catch (const SqlError&) {
        return std::nullopt;
    }
}

void meet(Bound& a, Bound& b, Emission& emission) {
    if (isMoney(a.type.id)) {
        if (auto money = asMoney(b, emission)) b = *money;
    } else if (isMoney(b.type.id)) {
        if (auto money = asMoney(a, emission)) a = *money;
    }
    if (comparesDirectly(a.type, b.type)) return;
    const bool decimals = isDecimal(a.type.id) || isDecimal(b.type.id);
    SqlType common = commonType(a, b);
    // A text is read with the scale of the decimal beside it.
    if (decimals && (isText(a.type.id) || isText(b.type.id))) common = isText(a.type.id) ? b.type : a.type;
    a = implicitly(a, common, emission);
    b = implicitly(b, common, emission);
}

void checkComparable(const Bound& a, const Bound& b) {
    if (!isLong(a.type.id) && !isLong(b.type.id)) return;
    throw SqlError(
        306, 16,
        QStringLiteral("The text, ntext, and image data types cannot be used in the WHERE, HAVING, or ON "
                       "clause, except with the LIKE or IS NULL predicates."));
}

}  // namespace

EqualSides equalSides(const Bound& left, const Bound& right, Emission& emission) {
    checkComparable(left, right);
    Bound a = left;
    Bound b = right;
    if (!a.isNull && !b.isNull) meet(a, b, emission);
    return {collated(a), b.sql};
}

Bound comparison(CompareOp op, const Bound& left, const Bound& right, Emission& emission) {
    checkComparable(left, right);
    Bound a = left;
    Bound b = right;
    if (!a.isNull && !b.isNull) meet(a, b, emission);
    const bool ordered = op != CompareOp::Equal && op != CompareOp::NotEqual;
    const bool guids = a.type.id == TypeId::UniqueIdentifier && ordered;
    const QString x = guids ? callText("ts_guidkey", {a.sql}) : collated(a);
    const QString y = guids ? callText("ts_guidkey", {b.sql}) : b.sql;
    Bound result =
        boundWhole(QStringLiteral("(%1 %2 %3)").arg(x, symbolOf(op), y), {.id = TypeId::Bit}, {&a, &b});
    return result;
}

}  // namespace engine
