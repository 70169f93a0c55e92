#include "engine/binding/coercion.h"

#include "engine/store/storefunctions.h"
#include "engine/values/conversions.h"
#include "engine/values/decimal.h"
#include "engine/values/typeinfo.h"

namespace engine {

namespace {

qint64 powerOfTen(int exponent) {
    qint64 result = 1;
    while (exponent-- > 0)
        result *= 10;
    return result;
}

SqlType commonDecimal(const SqlType& a, const SqlType& b) {
    SqlType common{.id = typeRank(a.id) >= typeRank(b.id) ? a.id : b.id};
    const SqlType x = asDecimal(a);
    const SqlType y = asDecimal(b);
    const int whole = std::max(x.precision - x.scale, y.precision - y.scale);
    common.scale = std::max(x.scale, y.scale);
    common.precision = std::min(whole + common.scale, Decimal::maxPrecision);
    common.scale = std::max(0, std::min(common.scale, common.precision - whole));
    return common;
}

SqlType commonSized(const SqlType& a, const SqlType& b) {
    SqlType common{.id = typeRank(a.id) >= typeRank(b.id) ? a.id : b.id,
                   .length = std::max(a.length, b.length)};
    // Of fixed lengths that differ a varying one comes.
    if (a.length != b.length && common.id == TypeId::Char) common.id = TypeId::VarChar;
    if (a.length != b.length && common.id == TypeId::NChar) common.id = TypeId::NVarChar;
    if (a.id != b.id && common.id == TypeId::NChar && a.id != TypeId::Char && b.id != TypeId::Char) {
        common.id = TypeId::NVarChar;
    }
    if (isLong(common.id)) common.length = 0;
    if (isNational(common.id)) common.length = std::min(common.length, 4000);
    return common;
}

/// The SQLite text of a conversion that needs no function, or nothing.
std::optional<QString> plainConversion(const Bound& bound, const SqlType& to) {
    const SqlType& from = bound.type;
    if (from == to) return bound.sql;
    if (isInteger(from.id) && isInteger(to.id) && typeRank(to.id) >= typeRank(from.id)) return bound.sql;
    if (isText(from.id) && isText(to.id) && (isNational(to.id) || !isNational(from.id)) &&
        !isFixedText(to.id)) {
        const bool fits = isLong(to.id) || (!isLong(from.id) && to.length >= from.length);
        return fits ? std::optional(bound.sql) : std::nullopt;
    }
    if (to.id == TypeId::VarBinary && (from.id == TypeId::Binary || from.id == TypeId::VarBinary) &&
        to.length >= from.length) {
        return bound.sql;
    }
    if (isNarrowDecimal(to) && (isInteger(from.id) || isNarrowDecimal(from))) {
        const SqlType exact = asDecimal(from);
        const int shift = to.scale - exact.scale;
        if (shift < 0 || to.precision - to.scale < exact.precision - exact.scale) return std::nullopt;
        return shift == 0 ? bound.sql
                          : QStringLiteral("(%1 * %2)").arg(bound.sql, QString::number(powerOfTen(shift)));
    }
    if (to.id == TypeId::Money && isInteger(from.id)) return QStringLiteral("(%1 * 10000)").arg(bound.sql);
    if (to.id == TypeId::Money && from.id == TypeId::SmallMoney) return bound.sql;
    if (to.id == TypeId::Float && isInteger(from.id))
        return QStringLiteral("CAST(%1 AS REAL)").arg(bound.sql);
    if (to.id == TypeId::Float && from.id == TypeId::Real) return bound.sql;
    if (to.id == TypeId::DateTime && from.id == TypeId::SmallDateTime) return bound.sql;
    return std::nullopt;
}

/// A constant converted now; nothing when that fails, for the row that meets it shall tell.
std::optional<Bound> convertedConstant(const Bound& bound, const SqlType& to, int style, Emission& emission) {
    if (!bound.literal) return std::nullopt;
    try {
        return boundConstant(convertValue(*bound.literal, bound.type, to, false, style), to, emission);
    } catch (const SqlError&) {
        return std::nullopt;
    }
}

}  // namespace

QString callText(const char* name, std::initializer_list<QString> arguments) {
    QString text = QString::fromLatin1(name) + u'(';
    bool first = true;
    for (const QString& argument : arguments) {
        if (!first) text += QLatin1String(", ");
        text += argument;
        first = false;
    }
    return text + u')';
}

SqlType exactDecimal(const Bound& bound) {
    SqlType exact = asDecimal(bound.type);
    if (bound.isWritten && bound.literal && bound.type.id == TypeId::Int) {
        exact.precision = std::max(1, Decimal::fromUnscaled(std::get<qint64>(*bound.literal), 0).digits());
    }
    return exact;
}

SqlType commonType(const SqlType& a, const SqlType& b) {
    const SqlType& higher = typeRank(a.id) >= typeRank(b.id) ? a : b;
    const SqlType& lower = &higher == &a ? b : a;
    if (isDecimal(higher.id) && (isDecimal(lower.id) || isInteger(lower.id) || isMoney(lower.id))) {
        return commonDecimal(a, b);
    }
    if ((isText(a.id) && isText(b.id)) || (isBinary(a.id) && isBinary(b.id))) return commonSized(a, b);
    if (isText(higher.id) && !isText(lower.id)) {
        // Room for what the other type converts to.
        SqlType wide = higher;
        if (!isLong(wide.id)) wide.length = std::max(wide.length, 40);
        return wide;
    }
    return higher;
}

SqlType commonType(const Bound& a, const Bound& b) {
    if (a.isNull) return b.type;
    if (b.isNull) return a.type;
    return commonType(a.type, b.type);
}

Bound explicitly(const Bound& bound, const SqlType& to, int style, Emission& emission) {
    if (bound.isNull) {
        Bound null = bound;
        null.type = to;
        null.isNull = false;
        return null;
    }
    if (bound.type == to) return bound;
    if (style == 0 && isText(bound.type.id) && isDateTime(to.id)) style = emission.dateStyle;
    if (auto constant = convertedConstant(bound, to, style, emission)) return *constant;
    const bool plain = style == 0 || (isText(bound.type.id) && !isDateTime(to.id));
    if (const auto text = plain ? plainConversion(bound, to) : std::nullopt) {
        Bound result = boundWhole(*text, to, {&bound});
        result.isColumn = bound.isColumn && *text == bound.sql;
        result.literal = bound.literal && *text == bound.sql ? bound.literal : std::nullopt;
        return result;
    }
    const QString from = QString::number(packType(bound.type));
    return boundWhole(
        callText("ts_convert", {bound.sql, from, QString::number(packType(to)), QString::number(style)}), to,
        {&bound});
}

Bound explicitly(const Bound& bound, const SqlType& to, const Bound& style, Emission& emission) {
    if (style.literal && std::holds_alternative<qint64>(*style.literal)) {
        return explicitly(bound, to, static_cast<int>(std::get<qint64>(*style.literal)), emission);
    }
    const Bound number = implicitly(style, {.id = TypeId::Int}, emission);
    const QString from = QString::number(packType(bound.type));
    return boundWhole(callText("ts_convert", {bound.sql, from, QString::number(packType(to)), number.sql}),
                      to, {&bound, &number});
}

Bound implicitly(const Bound& bound, const SqlType& to, Emission& emission) {
    if (!bound.isNull && !convertsImplicitly(bound.type.id, to.id)) {
        throw SqlError(257, 16,
                       QStringLiteral("Implicit conversion from data type %1 to %2 is not allowed. Use the "
                                      "CONVERT function to run this query.")
                           .arg(typeName(bound.type.id), typeName(to.id)));
    }
    return explicitly(bound, to, 0, emission);
}

}  // namespace engine
