#include "engine/store/storecall.h"
#include "engine/store/storefunctions.h"
#include "engine/values/conversions.h"
#include "engine/values/decimal.h"
#include "engine/values/typeinfo.h"

#include <QStringList>

#include <cmath>
#include <limits>

namespace engine {

namespace {

[[noreturn]] void failZero() {
    throw SqlError(8134, 16, QStringLiteral("Divide by zero error encountered."));
}

[[noreturn]] void failOverflow(TypeId id) {
    throw SqlError(
        8115, 16,
        QStringLiteral("Arithmetic overflow error converting expression to data type %1.").arg(typeName(id)));
}

[[noreturn]] void failDomain() {
    throw SqlError(3623, 16, QStringLiteral("A domain error occurred."));
}

/// Lets a number of a type's range pass. SQLite turns what overflows 64 bits into a REAL.
template <TypeId id, qint64 least, qint64 most>
void checked(StoreCall& c) {
    const qint64 number = c.integer(0);
    if (!c.isInteger(0) || number < least || number > most) failOverflow(id);
    c.result(number);
}

void checkedDateTime(StoreCall& c) {
    const SqlType type{.id = TypeId::DateTime};
    c.result(convertValue(c.integer(0), type, type, false), type);
}

void checkedFloat(StoreCall& c) {
    if (!std::isfinite(c.real(0))) failOverflow(TypeId::Float);
    c.result(c.real(0));
}

void checkedReal(StoreCall& c) {
    if (!(std::fabs(c.real(0)) <= std::numeric_limits<float>::max())) failOverflow(TypeId::Real);
    c.result(static_cast<double>(static_cast<float>(c.real(0))));
}

void quotient(StoreCall& c) {
    if (c.integer(1) == 0) failZero();
    c.result(c.integer(0) / c.integer(1));
}

void remainder(StoreCall& c) {
    if (c.integer(1) == 0) failZero();
    c.result(c.integer(0) % c.integer(1));
}

void floatQuotient(StoreCall& c) {
    if (c.real(1) == 0) failZero();
    c.result(c.real(0) / c.real(1));
}

void moneyResult(StoreCall& c, const Decimal& amount) {
    const auto unscaled = amount.rescaled(4).unscaled();
    if (!unscaled) failOverflow(TypeId::Money);
    c.result(*unscaled);
}

void moneyProduct(StoreCall& c) {
    moneyResult(c, Decimal::fromUnscaled(c.integer(0), 4) * Decimal::fromUnscaled(c.integer(1), 4));
}

void moneyQuotient(StoreCall& c) {
    if (c.integer(1) == 0) failZero();
    moneyResult(c, Decimal::quotient(Decimal::fromUnscaled(c.integer(0), 4),
                                     Decimal::fromUnscaled(c.integer(1), 4), 4));
}

Decimal decimalOf(const StoreCall& c, int i, const SqlType& type) {
    if (isNarrowDecimal(type)) return Decimal::fromUnscaled(c.integer(i), type.scale);
    return Decimal::parse(c.text(i)).value_or(Decimal());
}

void decimalResult(StoreCall& c, const Decimal& number, const SqlType& type) {
    const Decimal rounded = number.rescaled(type.scale);
    if (rounded.digits() > type.precision) {
        throw SqlError(8115, 16,
                       QStringLiteral("Arithmetic overflow error converting numeric to data type numeric."));
    }
    c.result(rounded.text(), type);
}

/// ts_decimal(op, a, type of a, b, type of b, type of the result)
void decimalOperation(StoreCall& c) {
    const SqlType type = c.type(5);
    const Decimal a = decimalOf(c, 1, c.type(2));
    const Decimal b = decimalOf(c, 3, c.type(4));
    switch (c.integer(0)) {
        case 0:
            return decimalResult(c, a + b, type);
        case 1:
            return decimalResult(c, a - b, type);
        case 2:
            return decimalResult(c, a * b, type);
        default:
            break;
    }
    if (b.isZero()) failZero();
    decimalResult(c, Decimal::quotient(a, b, type.scale), type);
}

void absolute(StoreCall& c) {
    const SqlType type = c.type(1);
    if (isFloat(type.id)) return c.result(std::fabs(c.real(0)));
    if (isNarrowDecimal(type) || !isDecimal(type.id)) {
        if (c.integer(0) == std::numeric_limits<qint64>::min()) failOverflow(type.id);
        return c.result(qAbs(c.integer(0)));
    }
    const Decimal number = decimalOf(c, 0, type);
    decimalResult(c, number.isNegative() ? number.negated() : number, type);
}

void sign(StoreCall& c) {
    const SqlType type = c.type(1);
    if (isFloat(type.id)) return c.result(c.real(0) > 0 ? 1.0 : c.real(0) < 0 ? -1.0 : 0.0);
    if (isDecimal(type.id)) {
        const Decimal number = decimalOf(c, 0, type);
        return decimalResult(c,
                             Decimal::fromUnscaled(number.isZero()       ? 0
                                                   : number.isNegative() ? -1
                                                                         : 1,
                                                   0),
                             type);
    }
    const qint64 unit = isMoney(type.id) ? 10000 : 1;
    c.result(c.integer(0) > 0 ? unit : c.integer(0) < 0 ? -unit : 0);
}

/// The whole number at or below (at or above) a decimal.
Decimal wholeDecimal(const Decimal& number, bool up) {
    const Decimal cut = number.rescaled(0, true);
    const bool exact = Decimal::compare(cut, number) == 0;
    if (exact || number.isNegative() == up) return cut;
    return up ? cut + Decimal::fromUnscaled(1, 0) : cut - Decimal::fromUnscaled(1, 0);
}

/// ts_floor(value, type, type of the result)
template <bool up>
void wholeNumber(StoreCall& c) {
    const SqlType type = c.type(1);
    if (isFloat(type.id)) return c.result(up ? std::ceil(c.real(0)) : std::floor(c.real(0)));
    if (isInteger(type.id)) return c.resultOf(0);
    if (isMoney(type.id)) return moneyResult(c, wholeDecimal(Decimal::fromUnscaled(c.integer(0), 4), up));
    decimalResult(c, wholeDecimal(decimalOf(c, 0, type), up), c.type(2));
}

/// A decimal rounded (or cut) at `places` behind the point; negative places lie before it.
Decimal roundedAt(const Decimal& number, int places, bool cut) {
    if (places >= number.scale()) return number;
    if (places >= 0) return number.rescaled(places, cut);
    // Moved behind the point, rounded there, and moved back.
    const int shift = std::min(-places, Decimal::maxPrecision);
    const Decimal power = Decimal::fromUnscaled(1, 0).rescaled(shift);
    const Decimal scaled =
        Decimal::quotient(number, *Decimal::parse(power.text().remove(u'.')), number.scale() + shift);
    return scaled.rescaled(0, cut) * *Decimal::parse(power.text().remove(u'.'));
}

/// ts_round(value, type, places, cut)
void roundNumber(StoreCall& c) {
    const SqlType type = c.type(1);
    const int places = static_cast<int>(std::clamp<qint64>(c.integer(2), -40, 40));
    const bool cut = c.integer(3) != 0;
    if (isFloat(type.id)) {
        const double factor = std::pow(10.0, places);
        const double scaled = c.real(0) * factor;
        const double result = (cut ? std::trunc(scaled) : std::round(scaled)) / factor;
        return c.result(std::isfinite(result) ? result : c.real(0));
    }
    if (isDecimal(type.id)) return decimalResult(c, roundedAt(decimalOf(c, 0, type), places, cut), type);
    const int scale = isMoney(type.id) ? 4 : 0;
    const auto rounded =
        roundedAt(Decimal::fromUnscaled(c.integer(0), scale), places, cut).rescaled(scale).unscaled();
    if (!rounded || (isInteger(type.id) && *rounded != static_cast<qint32>(*rounded))) failOverflow(type.id);
    c.result(*rounded);
}

/// ts_power(value, type, exponent)
void power(StoreCall& c) {
    const SqlType type = c.type(1);
    const SqlType real{.id = TypeId::Float};
    const double base = std::get<double>(convertValue(c.value(0, type), type, real, false));
    const double result = std::pow(base, c.real(2));
    if (std::isnan(result)) failDomain();
    if (!std::isfinite(result)) failOverflow(type.id);
    if (isInteger(type.id) && std::fabs(result) > 2147483647.0) failOverflow(type.id);
    c.result(convertValue(result, real, type, false), type);
}

template <double (*function)(double)>
void ofFloat(StoreCall& c) {
    const double result = function(c.real(0));
    if (!std::isfinite(result)) failDomain();
    c.result(result);
}

double square(double x) {
    return x * x;
}

void isNumeric(StoreCall& c) {
    if (c.isNull(0)) return c.result(qint64(0));
    const QString text = c.text(0);
    // A sign, a point or a comma alone is a number, too.
    static const QStringList marks{QStringLiteral("+"), QStringLiteral("-"), QStringLiteral("$"),
                                   QStringLiteral("."), QStringLiteral(",")};
    if (marks.contains(text.trimmed())) return c.result(qint64(1));
    const SqlType from{.id = TypeId::VarChar, .length = 8000};
    bool valid = false;
    for (const TypeId id : {TypeId::Float, TypeId::Money}) {
        try {
            convertValue(text, from, {.id = id}, false);
            valid = !text.trimmed().isEmpty();
        } catch (const SqlError&) {
            continue;
        }
    }
    c.result(qint64(valid ? 1 : 0));
}

constexpr StoreFunction functions[] = {
    {"ts_int", 1, checked<TypeId::Int, -2147483648LL, 2147483647LL>},
    {"ts_smallint", 1, checked<TypeId::SmallInt, -32768, 32767>},
    {"ts_tinyint", 1, checked<TypeId::TinyInt, 0, 255>},
    {"ts_money", 1,
     checked<TypeId::Money, std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max()>},
    {"ts_smallmoney", 1, checked<TypeId::SmallMoney, -2147483648LL, 2147483647LL>},
    {"ts_datetime", 1, checkedDateTime},
    {"ts_float", 1, checkedFloat},
    {"ts_real", 1, checkedReal},
    {"ts_quotient", 2, quotient},
    {"ts_remainder", 2, remainder},
    {"ts_floatquotient", 2, floatQuotient},
    {"ts_moneyproduct", 2, moneyProduct},
    {"ts_moneyquotient", 2, moneyQuotient},
    {"ts_decimal", 6, decimalOperation},
    {"ts_abs", 2, absolute},
    {"ts_sign", 2, sign},
    {"ts_floor", 3, wholeNumber<false>},
    {"ts_ceiling", 3, wholeNumber<true>},
    {"ts_round", 4, roundNumber},
    {"ts_power", 3, power},
    {"ts_sqrt", 1, ofFloat<std::sqrt>},
    {"ts_square", 1, ofFloat<square>},
    {"ts_exp", 1, ofFloat<std::exp>},
    {"ts_log", 1, ofFloat<std::log>},
    {"ts_log10", 1, ofFloat<std::log10>},
    {"ts_sin", 1, ofFloat<std::sin>},
    {"ts_cos", 1, ofFloat<std::cos>},
    {"ts_tan", 1, ofFloat<std::tan>},
    {"ts_asin", 1, ofFloat<std::asin>},
    {"ts_acos", 1, ofFloat<std::acos>},
    {"ts_atan", 1, ofFloat<std::atan>},
    {"ts_isnumeric", 1, isNumeric, true},
};

}  // namespace

void registerNumberFunctions(sqlite3* store) {
    for (const StoreFunction& function : functions)
        registerStoreFunction(store, function);
}

}  // namespace engine
