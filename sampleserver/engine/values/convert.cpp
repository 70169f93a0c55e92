#include "engine/values/convert.h"

#include "engine/values/conversions.h"
#include "engine/values/datetime.h"
#include "engine/values/typeinfo.h"

#include <cmath>
#include <limits>

namespace engine {

namespace {

qint64 ticksOfDays(double dayCount) {
    return std::llround(dayCount * static_cast<double>(ticksPerDay));
}

double daysOfTicks(qint64 ticks) {
    return static_cast<double>(ticks) / static_cast<double>(ticksPerDay);
}

qint64 roundedQuotient(qint64 value, qint64 divisor) {
    const qint64 half = divisor / 2;
    return value >= 0 ? (value + half) / divisor : -((-value + half) / divisor);
}

/// The last bytes of a binary as a big-endian number.
qint64 integerOfBytes(const QByteArray& bytes, qsizetype count) {
    std::uint64_t number = 0;
    const QByteArray last = bytes.right(count);
    for (const char byte : last)
        number = number << 8 | static_cast<unsigned char>(byte);
    if (count == 4) return static_cast<std::int32_t>(number);
    if (count == 2) return static_cast<std::int16_t>(number);
    return static_cast<qint64>(number);
}

struct Range {
    qint64 least;
    qint64 most;
};

Range rangeOf(TypeId id) {
    switch (id) {
        case TypeId::TinyInt:
            return {0, 255};
        case TypeId::SmallInt:
            return {-32768, 32767};
        case TypeId::SmallMoney:
            return {-2147483648LL, 2147483647LL};
        case TypeId::Money:
            return {std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max()};
        default:
            return {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()};
    }
}

bool inRange(qint64 value, TypeId id) {
    const Range range = rangeOf(id);
    return value >= range.least && value <= range.most;
}

}  // namespace

void Conversion::failNotAllowed() const {
    throw SqlError(529, 16,
                   QStringLiteral("Explicit conversion from data type %1 to %2 is not allowed.")
                       .arg(typeName(from.id), typeName(to.id)));
}

void Conversion::failOverflow() const {
    const QString source =
        isInteger(from.id) || isMoney(from.id) ? QStringLiteral("expression") : typeName(from.id);
    throw SqlError(8115, 16,
                   QStringLiteral("Arithmetic overflow error converting %1 to data type %2.")
                       .arg(source, typeName(to.id)));
}

void Conversion::failStyle() const {
    throw SqlError(
        281, 16,
        QStringLiteral("%1 is not a valid style number when converting from %2 to a character string.")
            .arg(style)
            .arg(typeName(from.id).toUpper()));
}

void Conversion::failConverting() const {
    throw SqlError(
        8114, 16,
        QStringLiteral("Error converting data type %1 to %2.").arg(typeName(from.id), typeName(to.id)));
}

qint64 Conversion::integerOfText(const QString& text) const {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty()) return 0;
    const auto number = Decimal::parse(trimmed);
    if (!number || number->scale() > 0 || trimmed.endsWith(u'.')) {
        throw SqlError(
            245, 16,
            QStringLiteral("Syntax error converting the %1 value '%2' to a column of data type %3.")
                .arg(typeName(from.id), text, typeName(to.id)));
    }
    const qint64 value = number->unscaled().value_or(std::numeric_limits<qint64>::max());
    if (to.id == TypeId::Bit || inRange(value, to.id)) return value;
    if (to.id == TypeId::Int) {
        throw SqlError(248, 16,
                       QStringLiteral("The conversion of the %1 value '%2' overflowed an int column. Maximum "
                                      "integer value exceeded.")
                           .arg(typeName(from.id), text));
    }
    throw SqlError(244, 16,
                   QStringLiteral("The conversion of the %1 value '%2' overflowed an %3 column. Use a larger "
                                  "integer column.")
                       .arg(typeName(from.id), text,
                            to.id == TypeId::TinyInt ? QStringLiteral("INT1") : QStringLiteral("INT2")));
}

Value Conversion::toInteger(const Value& value) const {
    qint64 number = 0;
    if (isInteger(from.id)) {
        number = std::get<qint64>(value);
    } else if (isMoney(from.id)) {
        number = roundedQuotient(std::get<qint64>(value), 10000);
    } else if (isDateTime(from.id)) {
        number = roundedQuotient(std::get<qint64>(value), ticksPerDay);
    } else if (isDecimal(from.id)) {
        const Decimal whole = decimalOf(value, from.scale);
        if (to.id == TypeId::Bit) return qint64(whole.isZero() ? 0 : 1);
        const auto cut = whole.rescaled(0, true).unscaled();
        if (!cut) failOverflow();
        number = *cut;
    } else if (isFloat(from.id)) {
        const double real = std::get<double>(value);
        if (to.id == TypeId::Bit) return qint64(real != 0 ? 1 : 0);
        if (!(std::fabs(real) < 9e18)) failOverflow();
        number = static_cast<qint64>(real);
        if (!inRange(number, to.id)) {
            throw SqlError(232, 16,
                           QStringLiteral("Arithmetic overflow error for type %1, value = %2.")
                               .arg(typeName(to.id), QString::number(real, 'f', 6)));
        }
    } else if (isBinary(from.id)) {
        number = integerOfBytes(std::get<QByteArray>(value), typeBytes(to));
    } else if (isText(from.id)) {
        number = integerOfText(std::get<QString>(value));
    } else {
        failNotAllowed();
    }
    if (to.id == TypeId::Bit) return qint64(number != 0 ? 1 : 0);
    if (inRange(number, to.id)) return number;
    if (to.id == TypeId::Int || !isInteger(from.id)) failOverflow();
    throw SqlError(220, 16,
                   QStringLiteral("Arithmetic overflow error for data type %1, value = %2.")
                       .arg(typeName(to.id))
                       .arg(number));
}

Decimal Conversion::decimalOf(const Value& value, int scale) const {
    if (isInteger(from.id)) return Decimal::fromUnscaled(std::get<qint64>(value), 0);
    if (isMoney(from.id)) return Decimal::fromUnscaled(std::get<qint64>(value), 4);
    std::optional<Decimal> number;
    if (isDateTime(from.id)) {
        number = Decimal::fromDouble(daysOfTicks(std::get<qint64>(value)), scale);
    } else if (isFloat(from.id)) {
        number = Decimal::fromDouble(std::get<double>(value), scale);
        if (!number) failOverflow();
    } else if (isDecimal(from.id) || (isText(from.id) && !isLong(from.id))) {
        number = Decimal::parse(QStringView(std::get<QString>(value)).trimmed());
    } else {
        failNotAllowed();
    }
    if (!number) failConverting();
    return *number;
}

Value Conversion::toDecimal(const Value& value) const {
    const Decimal number = decimalOf(value, to.scale).rescaled(to.scale);
    if (number.digits() > to.precision) failOverflow();
    return number.text();
}

Value Conversion::toMoney(const Value& value) const {
    std::optional<qint64> amount;
    if (isMoney(from.id)) {
        amount = std::get<qint64>(value);
    } else if (isText(from.id) && !isLong(from.id)) {
        QString text = std::get<QString>(value).trimmed().remove(u',');
        static const QString signs = QStringLiteral("$\u00A3\u00A5\u20AC");
        const qsizetype start = text.startsWith(u'-') || text.startsWith(u'+') ? 1 : 0;
        if (start < text.size() && signs.contains(text[start])) text.remove(start, 1);
        const auto number = text.isEmpty() ? Decimal() : Decimal::parse(text);
        if (!number) {
            throw SqlError(
                235, 16,
                QStringLiteral("Cannot convert a char value to money. The char value has incorrect syntax."));
        }
        amount = number->rescaled(4).unscaled();
    } else if (isBinary(from.id)) {
        amount = integerOfBytes(std::get<QByteArray>(value), typeBytes(to));
    } else {
        amount = decimalOf(value, 4).rescaled(4).unscaled();
    }
    if (!amount || !inRange(*amount, to.id)) failOverflow();
    return *amount;
}

Value Conversion::toFloat(const Value& value) const {
    double number = 0;
    if (isFloat(from.id)) {
        number = std::get<double>(value);
    } else if (isDateTime(from.id)) {
        number = daysOfTicks(std::get<qint64>(value));
    } else if (isText(from.id) && !isLong(from.id)) {
        const QString text = std::get<QString>(value).trimmed();
        bool valid = text.isEmpty();
        if (!valid) number = text.toDouble(&valid);
        if (!valid || !std::isfinite(number)) failConverting();
    } else {
        number = decimalOf(value, 0).toDouble();
    }
    if (to.id == TypeId::Real) {
        if (std::fabs(number) > std::numeric_limits<float>::max()) failOverflow();
        number = static_cast<double>(static_cast<float>(number));
    }
    return number;
}

void Conversion::failDateRange() const {
    throw SqlError(to.id == TypeId::SmallDateTime ? 296 : 242, 16,
                   QStringLiteral("The conversion of a char data type to a %1 data type resulted in an "
                                  "out-of-range %1 value.")
                       .arg(typeName(to.id)));
}

qint64 Conversion::ticksOf(const Value& value) const {
    if (isDateTime(from.id)) return std::get<qint64>(value);
    if (isText(from.id) && !isLong(from.id)) {
        const QString& text = std::get<QString>(value);
        qint64 ticks = 0;
        const bool small = to.id == TypeId::SmallDateTime;
        const auto form = dateForm(style);
        if (!form) failStyle();
        switch (parseDateTime(text, &ticks, *form)) {
            case DateParse::Done:
                return ticks;
            case DateParse::Malformed:
                if (small) {
                    throw SqlError(
                        295, 16,
                        QStringLiteral(
                            "Syntax error converting character string to smalldatetime data type."));
                }
                throw SqlError(241, 16,
                               QStringLiteral("Syntax error converting datetime from character string."));
            case DateParse::OutOfRange:
                break;
        }
        failDateRange();
    }
    if (isBinary(from.id)) {
        const QByteArray& bytes = std::get<QByteArray>(value);
        return integerOfBytes(bytes.left(std::max<qsizetype>(0, bytes.size() - 4)), 4) * ticksPerDay +
               integerOfBytes(bytes, 4);
    }
    const double dayCount = isFloat(from.id) ? std::get<double>(value) : decimalOf(value, 18).toDouble();
    if (std::fabs(dayCount) > 4e6) failOverflow();
    return ticksOfDays(dayCount);
}

Value Conversion::toDateTime(const Value& value) const {
    qint64 ticks = ticksOf(value);
    if (to.id == TypeId::SmallDateTime) {
        ticks += ticksPerMinute / 2;
        ticks -= (ticks % ticksPerMinute + ticksPerMinute) % ticksPerMinute;
    }
    const bool valid =
        to.id == TypeId::SmallDateTime ? isSmallDateTimeInRange(ticks) : isDateTimeInRange(ticks);
    if (!valid && isDateTime(from.id)) {
        throw SqlError(
            298, 16,
            QStringLiteral("The conversion from datetime data type to smalldatetime data type resulted "
                           "in a smalldatetime overflow error."));
    }
    if (!valid && isText(from.id)) failDateRange();
    if (!valid) failOverflow();
    return ticks;
}

Value Conversion::run(const Value& value) const {
    if (std::holds_alternative<std::monostate>(value)) return value;
    const TypeId id = to.id;
    if (isText(id)) return toText(value);
    if (isBinary(id)) return toBinary(value);
    if (isLong(from.id) && !isText(from.id)) failNotAllowed();
    if (id == TypeId::UniqueIdentifier) return toUniqueIdentifier(value);
    if (from.id == TypeId::UniqueIdentifier || from.id == TypeId::Text || from.id == TypeId::NText)
        failNotAllowed();
    if (isDateTime(id)) return toDateTime(value);
    if (isInteger(id)) return toInteger(value);
    if (isMoney(id)) return toMoney(value);
    if (isDecimal(id)) return toDecimal(value);
    return toFloat(value);
}

Value convertValue(const Value& value, const SqlType& from, const SqlType& to, bool assigning, int style) {
    return Conversion{.from = from, .to = to, .assigning = assigning, .style = style}.run(value);
}

bool convertsImplicitly(TypeId from, TypeId to) {
    if (from == to) return true;
    if (isLong(to) || isLong(from)) return isText(from) == isText(to);
    if (isDateTime(from)) return isDateTime(to) || isText(to);
    if (from == TypeId::UniqueIdentifier) return isText(to) || isBinary(to);
    if (to == TypeId::UniqueIdentifier) return isText(from) || isBinary(from);
    if (isText(from) && (isMoney(to) || isBinary(to))) return false;
    if (isMoney(from) && isText(to)) return false;
    if (isBinary(from) && isFloat(to)) return false;
    return true;
}

}  // namespace engine
