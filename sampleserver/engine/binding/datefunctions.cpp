#include "engine/binding/coercion.h"
#include "engine/binding/functions.h"
#include "engine/values/dateparts.h"
#include "engine/values/datetime.h"
#include "engine/values/sqlerror.h"
#include "engine/values/typeinfo.h"

namespace engine {

namespace {

Bound partArgument(const FunctionCall& c) {
    const auto part = datePartOf(c.datePart);
    if (!part) {
        throw SqlError(155, 15,
                       QStringLiteral("'%1' is not a recognized %2 option.").arg(c.datePart, c.name));
    }
    return c.value(qint64(static_cast<int>(*part)), integerType);
}

Bound moment(const FunctionCall& c, size_t i) {
    if (isDateTime(c.arguments[i].type.id)) return c.arguments[i];
    return c.as(i, TypeId::DateTime);
}

Bound add(const FunctionCall& c) {
    const Bound when = moment(c, 1);
    const Bound number = explicitly(c.arguments[0], integerType, 0, c.emission);
    return c.call(when.type, {partArgument(c), number, when});
}

Bound difference(const FunctionCall& c) {
    return c.call(integerType, {partArgument(c), moment(c, 0), moment(c, 1)});
}

Bound part(const FunctionCall& c) {
    return c.call(integerType, {partArgument(c), moment(c, 0)});
}

Bound name(const FunctionCall& c) {
    return c.call({.id = TypeId::NVarChar, .length = 30}, {partArgument(c), moment(c, 0)});
}

template <DatePart wanted>
Bound fixedPart(const FunctionCall& c) {
    const Bound code = c.value(qint64(static_cast<int>(wanted)), integerType);
    return c.call(QStringLiteral("ts_datepart"), integerType, {code, moment(c, 0)});
}

// One moment for the whole of a statement.
Bound now(const FunctionCall& c) {
    return c.value(dateTimeTicks(QDateTime::currentDateTime()), {.id = TypeId::DateTime});
}

Bound nowUtc(const FunctionCall& c) {
    return c.value(dateTimeTicks(QDateTime::currentDateTimeUtc()), {.id = TypeId::DateTime});
}

Bound isDate(const FunctionCall& c) {
    const Bound style = c.value(qint64(c.emission.dateStyle), integerType);
    return c.call(integerType, {c.text(0), style}, false);
}

}  // namespace

const std::vector<FunctionEntry>& dateFunctions() {
    static const std::vector<FunctionEntry> entries{
        {"dateadd", 2, 2, add},
        {"datediff", 2, 2, difference},
        {"datepart", 1, 1, part},
        {"datename", 1, 1, name},
        {"year", 1, 1, fixedPart<DatePart::Year>},
        {"month", 1, 1, fixedPart<DatePart::Month>},
        {"day", 1, 1, fixedPart<DatePart::Day>},
        {"getdate", 0, 0, now},
        {"current_timestamp", 0, 0, now},
        {"getutcdate", 0, 0, nowUtc},
        {"isdate", 1, 1, isDate},
    };
    return entries;
}

}  // namespace engine
