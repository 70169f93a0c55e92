#include "engine/binding/coercion.h"
#include "engine/binding/functions.h"
#include "engine/values/typeinfo.h"

namespace engine {

namespace {

/// A function from a text to a text no longer than it.
Bound textToText(const FunctionCall& c) {
    const Bound text = c.text(0);
    return c.call(c.textType(text.type.length), {text});
}

Bound leftOrRight(const FunctionCall& c) {
    const Bound text = c.text(0);
    const int length = std::min(text.type.length, c.constant(1, text.type.length));
    return c.call(c.textType(length), {text, c.integer(1)});
}

Bound dataLength(const FunctionCall& c) {
    const Bound& argument = c.arguments[0];
    return c.call(integerType, {argument, c.packed(argument.type)});
}

Bound substring(const FunctionCall& c) {
    const Bound& source = c.arguments[0];
    const bool binary = isBinary(source.type.id);
    if (!binary && !isText(source.type.id) && !source.isNull) c.failArgument(0);
    const int whole = isLong(source.type.id) ? 8000 : source.type.length;
    const int length = std::clamp(c.constant(2, whole), 1, std::max(1, whole));
    SqlType type = c.textType(length);
    if (binary) type = {.id = TypeId::VarBinary, .length = length};
    return c.call(binary ? "ts_subbinary" : "ts_substring", type, {source, c.integer(1), c.integer(2)});
}

Bound charIndex(const FunctionCall& c) {
    const Bound start = c.count() > 2 ? c.integer(2) : c.value(qint64(1), integerType);
    // The text that is searched may be a long one.
    const Bound within = isText(c.arguments[1].type.id) ? c.arguments[1] : c.text(1);
    return c.call(integerType, {c.text(0), within, start});
}

Bound patIndex(const FunctionCall& c) {
    const Bound within = isText(c.arguments[1].type.id) ? c.arguments[1] : c.text(1);
    return c.call(integerType, {c.text(0), within});
}

Bound replace(const FunctionCall& c) {
    return c.call(c.textType(8000), {c.text(0), c.text(1), c.text(2)});
}

Bound replicate(const FunctionCall& c) {
    // A long value stays one, as with later servers, so that a script can fill columns of them.
    const Bound& given = c.arguments[0];
    if (isLong(given.type.id)) {
        const Bound most = c.value(qint64(10'000'000), integerType);
        return c.call(isText(given.type.id) ? "ts_replicate" : "ts_replicatebinary", given.type,
                      {given, c.integer(1), most});
    }
    const Bound text = c.text(0);
    const qint64 times = c.constant(1, 8000);
    const auto length = static_cast<int>(std::min<qint64>(8000, times * text.type.length));
    const SqlType type = c.textType(length);
    Bound most = c.value(qint64(isNational(type.id) ? 4000 : 8000), integerType);
    return c.call(type, {text, c.integer(1), most});
}

Bound space(const FunctionCall& c) {
    return c.call(c.textType(c.constant(0, 8000)), {c.integer(0)});
}

Bound str(const FunctionCall& c) {
    const Bound length = c.count() > 1 ? c.integer(1) : c.value(qint64(10), integerType);
    const Bound decimals = c.count() > 2 ? c.integer(2) : c.value(qint64(0), integerType);
    return c.call(c.textType(c.constant(1, c.count() > 1 ? 8000 : 10)), {c.real(0), length, decimals});
}

Bound stuff(const FunctionCall& c) {
    const Bound text = c.text(0);
    const Bound inserted = c.text(3);
    return c.call(c.textType(text.type.length + inserted.type.length),
                  {text, c.integer(1), c.integer(2), inserted});
}

Bound quoteName(const FunctionCall& c) {
    if (c.count() > 1 && (!c.arguments[1].literal || *c.arguments[1].literal != Value(QStringLiteral("[")))) {
        c.failArgument(1);
    }
    return c.call({.id = TypeId::NVarChar, .length = 258}, {c.text(0)});
}

}  // namespace

const std::vector<FunctionEntry>& textFunctions() {
    static const std::vector<FunctionEntry> entries{
        {"len", "t", integerType},
        {"datalength", 1, 1, dataLength},
        {"ascii", "t", integerType},
        {"unicode", "t", integerType},
        {"upper", 1, 1, textToText},
        {"lower", 1, 1, textToText},
        {"ltrim", 1, 1, textToText},
        {"rtrim", 1, 1, textToText},
        {"reverse", 1, 1, textToText},
        {"left", 2, 2, leftOrRight},
        {"right", 2, 2, leftOrRight},
        {"substring", 3, 3, substring},
        {"charindex", 2, 3, charIndex},
        {"patindex", 2, 2, patIndex},
        {"replace", 3, 3, replace},
        {"replicate", 2, 2, replicate},
        {"space", 1, 1, space},
        {"str", 1, 3, str},
        {"stuff", 4, 4, stuff},
        {"char", "i", {.id = TypeId::Char, .length = 1}},
        {"nchar", "i", {.id = TypeId::NChar, .length = 1}},
        {"quotename", 1, 2, quoteName},
    };
    return entries;
}

}  // namespace engine
