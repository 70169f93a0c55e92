#include "engine/binding/arithmetic.h"
#include "engine/binding/coercion.h"
#include "engine/binding/functions.h"
#include "engine/values/typeinfo.h"

namespace engine {

namespace {

constexpr SqlType floatType{.id = TypeId::Float};

/// The first argument as a number: a text is read as a float, a bit as an int.
Bound number(const FunctionCall& c) {
    const TypeId id = c.arguments[0].type.id;
    if (id == TypeId::Bit) return c.as(0, TypeId::Int);
    if (isNumber(id)) return c.arguments[0];
    return c.real(0);
}

/// A function from a number to a number of its type.
Bound sameType(const FunctionCall& c) {
    const Bound argument = number(c);
    Bound result = c.call(argument.type, {argument, c.packed(argument.type)});
    if (isInteger(argument.type.id) || isMoney(argument.type.id))
        result.sql = checkedInteger(result.sql, argument.type);
    return result;
}

/// CEILING and FLOOR leave a decimal no digits behind the point.
Bound whole(const FunctionCall& c) {
    const Bound argument = number(c);
    SqlType type = argument.type;
    if (isDecimal(type.id)) type.scale = 0;
    return c.call(type, {argument, c.packed(argument.type), c.packed(type)});
}

Bound round(const FunctionCall& c) {
    const Bound argument = number(c);
    const Bound cut = c.count() > 2 ? c.integer(2) : c.value(qint64(0), integerType);
    return c.call(argument.type, {argument, c.packed(argument.type), c.integer(1), cut});
}

Bound power(const FunctionCall& c) {
    const Bound argument = number(c);
    return c.call(argument.type, {argument, c.packed(argument.type), c.real(1)});
}

Bound pi(const FunctionCall& c) {
    return c.value(3.14159265358979323846, floatType);
}

Bound isNull(const FunctionCall& c) {
    const Bound& first = c.arguments[0];
    if (first.isNull) return c.arguments[1];
    const Bound second = implicitly(c.arguments[1], first.type, c.emission);
    Bound result = boundWhole(callText("ifnull", {first.sql, second.sql}), first.type, {&first, &second});
    result.nullable = first.nullable && second.nullable;
    return result;
}

Bound coalesce(const FunctionCall& c) {
    Bound common = c.arguments[0];
    for (const Bound& argument : c.arguments) {
        common.type = commonType(common, argument);
        common.isNull = common.isNull && argument.isNull;
        common.literal.reset();
    }
    std::vector<Bound> parts;
    bool nullable = true;
    for (const Bound& argument : c.arguments) {
        parts.push_back(implicitly(argument, common.type, c.emission));
        nullable = nullable && parts.back().nullable;
    }
    return c.call(c.name, common.type, parts, nullable);
}

Bound nullIf(const FunctionCall& c) {
    const Bound& first = c.arguments[0];
    const Bound equal = comparison(ast::CompareOp::Equal, first, c.arguments[1], c.emission);
    const QString sql = QStringLiteral("CASE WHEN %1 THEN NULL ELSE %2 END").arg(equal.sql, first.sql);
    Bound result = boundWhole(sql, first.type, {&first, &equal});
    result.nullable = true;
    return result;
}

Bound isNumeric(const FunctionCall& c) {
    const TypeId id = c.arguments[0].type.id;
    if (isNumber(id)) {
        return boundWhole(QStringLiteral("(%1 IS NOT NULL)").arg(c.arguments[0].sql), {.id = TypeId::Int},
                          {&c.arguments[0]});
    }
    return c.call(integerType, {c.text(0)}, false);
}

}  // namespace

const std::vector<FunctionEntry>& numberFunctions() {
    static const std::vector<FunctionEntry> entries{
        {"abs", 1, 1, sameType},        {"sign", 1, 1, sameType},        {"floor", 1, 1, whole},
        {"ceiling", 1, 1, whole},       {"round", 2, 3, round},          {"power", 2, 2, power},
        {"sqrt", "r", floatType},       {"square", "r", floatType},      {"exp", "r", floatType},
        {"log", "r", floatType},        {"log10", "r", floatType},       {"sin", "r", floatType},
        {"cos", "r", floatType},        {"tan", "r", floatType},         {"asin", "r", floatType},
        {"acos", "r", floatType},       {"atan", "r", floatType},        {"pi", 0, 0, pi},
        {"isnull", 2, 2, isNull},       {"coalesce", 2, 1000, coalesce}, {"nullif", 2, 2, nullIf},
        {"isnumeric", 1, 1, isNumeric},
    };
    return entries;
}

}  // namespace engine
