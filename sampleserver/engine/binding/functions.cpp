#include "engine/binding/functions.h"

#include "engine/binding/coercion.h"
#include "engine/store/storefunctions.h"
#include "engine/values/sqlerror.h"
#include "engine/values/typeinfo.h"

#include <QHash>

#include <limits>

namespace engine {

namespace {

const FunctionEntry* findFunction(const QString& name) {
    static const QHash<QString, const FunctionEntry*> entries = [] {
        QHash<QString, const FunctionEntry*> result;
        for (const auto* table :
             {&textFunctions(), &numberFunctions(), &dateFunctions(), &systemFunctions()}) {
            for (const FunctionEntry& entry : *table)
                result.insert(QString::fromLatin1(entry.name), &entry);
        }
        return result;
    }();
    return entries.value(name);
}

void checkCount(const FunctionEntry& entry, const QString& name, size_t dropped, size_t given) {
    const size_t least = entry.least + dropped;
    const size_t most = entry.most + dropped;
    if (given + dropped >= least && given + dropped <= most) return;
    if (least == most) {
        throw SqlError(174, 15,
                       QStringLiteral("The %1 function requires %2 arguments.").arg(name).arg(least));
    }
    throw SqlError(
        189, 15,
        QStringLiteral("The %1 function requires %2 to %3 arguments.").arg(name).arg(least).arg(most));
}

}  // namespace

void FunctionCall::failArgument(size_t i) const {
    throw SqlError(8116, 16,
                   QStringLiteral("Argument data type %1 is invalid for argument %2 of %3 function.")
                       .arg(typeName(arguments[i].type.id))
                       .arg(i + 1)
                       .arg(name));
}

Bound FunctionCall::text(size_t i) const {
    const Bound& argument = arguments[i];
    if (argument.isNull) return explicitly(argument, {.id = TypeId::VarChar, .length = 1}, 0, emission);
    if (isLong(argument.type.id)) failArgument(i);
    if (isText(argument.type.id)) return argument;
    // Room for the longest text of a number or a date; a binary keeps its length.
    const int length = isBinary(argument.type.id) ? std::max(1, argument.type.length) : 40;
    return implicitly(argument, {.id = TypeId::VarChar, .length = length}, emission);
}

Bound FunctionCall::as(size_t i, TypeId id) const {
    if (isLong(arguments[i].type.id)) failArgument(i);
    return implicitly(arguments[i], {.id = id}, emission);
}

int FunctionCall::constant(size_t i, int otherwise) const {
    if (i >= count() || !arguments[i].literal) return otherwise;
    const auto* whole = std::get_if<qint64>(&*arguments[i].literal);
    if (!whole || !isInteger(arguments[i].type.id)) return otherwise;
    return static_cast<int>(
        std::clamp<qint64>(*whole, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

SqlType FunctionCall::textType(int length) const {
    const bool national =
        std::ranges::any_of(arguments, [](const Bound& b) { return isNational(b.type.id); });
    return {.id = national ? TypeId::NVarChar : TypeId::VarChar,
            .length = std::clamp(length, 1, national ? 4000 : 8000)};
}

Bound FunctionCall::call(const QString& function, const SqlType& type, const std::vector<Bound>& parts,
                         bool nullable) const {
    Bound whole;
    whole.type = type;
    whole.nullable = nullable;
    whole.sql = function + u'(';
    for (const Bound& part : parts) {
        if (&part != &parts.front()) whole.sql += QLatin1String(", ");
        whole.sql += part.sql;
        addUses(whole, part);
    }
    whole.sql += u')';
    return whole;
}

Bound FunctionCall::packed(const SqlType& type) const {
    Bound bound = value(qint64(0), integerType);
    bound.sql = QString::number(packType(type));
    return bound;
}

bool takesDatePart(const QString& function) {
    static const QStringList names{QStringLiteral("dateadd"), QStringLiteral("datediff"),
                                   QStringLiteral("datepart"), QStringLiteral("datename")};
    return names.contains(function, Qt::CaseInsensitive);
}

Bound callFunction(const QString& name, const QString& datePart, std::vector<Bound> arguments,
                   const SessionFacts& facts, Emission& emission) {
    QString key = name.toLower();
    if (facts.readsScript && key == QLatin1String("schema_id")) key = QStringLiteral("user_id");
    const FunctionEntry* entry = findFunction(key);
    if (!entry) {
        throw SqlError(195, 15, QStringLiteral("'%1' is not a recognized function name.").arg(name));
    }
    const size_t dropped = takesDatePart(key) ? 1 : 0;
    checkCount(*entry, key, dropped, arguments.size());
    const FunctionCall call{key, datePart.toLower(), std::move(arguments), facts, emission};
    if (entry->bind) return entry->bind(call);
    std::vector<Bound> parts;
    for (const char kind : QByteArrayView(entry->arguments)) {
        const size_t i = parts.size();
        parts.push_back(kind == 't' ? call.text(i) : kind == 'i' ? call.integer(i) : call.real(i));
    }
    return call.call(entry->result, parts);
}

}  // namespace engine
