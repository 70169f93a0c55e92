#include "tds/parameters.h"

#include "engine/values/codepage.h"
#include "engine/values/datetime.h"
#include "engine/values/decimal.h"
#include "tds/columnformat.h"

#include <algorithm>

namespace tds {

namespace {

using engine::SqlType;
using engine::TypeId;
using engine::Value;

// Types that columns of this server never have.
constexpr int kNull = 0x1F;
constexpr int kOldVarBinary = 0x25;
constexpr int kOldVarChar = 0x27;
constexpr int kDate = 0x28;
constexpr int kTime = 0x29;
constexpr int kDateTime2 = 0x2A;
constexpr int kDateTimeOffset = 0x2B;
constexpr int kOldBinary = 0x2D;
constexpr int kOldChar = 0x2F;
constexpr quint16 kInChunks = 0xFFFF;
constexpr quint16 kNullLength = 0xFFFF;

Value decimalValue(QByteArrayView bytes, int scale) {
    engine::Decimal number;
    const engine::Decimal base = engine::Decimal::fromUnscaled(qint64(1) << 32, 0);
    for (qsizetype at = bytes.size() - 4; at >= 1; at -= 4) {
        const auto part = qFromLittleEndian<quint32>(bytes.data() + at);
        number = number * base + engine::Decimal::fromUnscaled(part, 0);
    }
    QString text = number.text().rightJustified(scale + 1, u'0');
    if (scale > 0) text.insert(text.size() - scale, u'.');
    return bytes[0] == 0 && !number.isZero() ? u'-' + text : text;
}

/// A date of later servers, as many of its parts as it has, in ticks.
Value laterDate(QByteArrayView bytes, int type, int scale) {
    constexpr qint64 daysTo1900 = 693595;  // from the year 1 on
    const auto number = [&bytes](qsizetype at, qsizetype count) {
        quint64 result = 0;
        for (qsizetype i = count; i > 0; --i)
            result = result << 8 | quint8(bytes[at + i - 1]);
        return result;
    };
    const qsizetype zone = type == kDateTimeOffset ? 2 : 0;
    const qsizetype date = type == kTime ? 0 : 3;
    const qsizetype time = bytes.size() - date - zone;
    if (time < 0) throw ProtocolError("a date of too few bytes");
    double unit = engine::ticksPerSecond;
    for (; scale > 0; --scale)
        unit /= 10;
    qint64 ticks = qint64(double(number(0, time)) * unit + 0.5);
    if (date > 0) ticks += (qint64(number(time, date)) - daysTo1900) * engine::ticksPerDay;
    if (zone > 0) ticks += qint64(qint16(number(time + date, zone))) * engine::ticksPerMinute;
    return ticks;
}

class Reader {
  public:
    Reader(WireReader& reader, TdsVersion version) : m_reader(reader), m_version(version) {}

    /// False for an unknown type.
    bool read(SqlType* type, Value* value) {
        const int wire = m_reader.number<quint8>();
        if (wire == kNull) {
            *type = {.id = TypeId::Int};
            return true;
        }
        return readFixed(wire, type, value) || readSized(wire, type, value) || readDate(wire, type, value) ||
               readText(wire, type, value);
    }

  private:
    bool readFixed(int wire, SqlType* type, Value* value) {
        const auto format = std::ranges::find(numberFormats(), WireType(quint8(wire)), &NumberFormat::fixed);
        if (format == numberFormats().end()) return false;
        *type = typeOf(*format);
        *value = number(format->fixed, m_reader.take(format->bytes));
        return true;
    }

    static SqlType typeOf(const NumberFormat& format) {
        return {.id = format.id, .precision = format.id == TypeId::Decimal ? 19 : 0};
    }

    /// A number of the fixed type `wire` from its bytes.
    static Value number(WireType wire, QByteArrayView bytes) {
        WireReader reader(bytes);
        switch (wire) {
            case WireType::Bit:
                return qint64(reader.number<quint8>() != 0);
            case WireType::TinyInt:
                return qint64(reader.number<quint8>());
            case WireType::SmallInt:
                return qint64(reader.number<qint16>());
            case WireType::Int:
            case WireType::SmallMoney:
                return qint64(reader.number<qint32>());
            case WireType::Real:
                return double(reader.number<float>());
            case WireType::Float:
                return reader.number<double>();
            case WireType::Money: {
                const qint64 high = reader.number<qint32>();
                return high * (qint64(1) << 32) + reader.number<quint32>();
            }
            case WireType::DateTime: {
                const qint64 days = reader.number<qint32>();
                return days * engine::ticksPerDay + reader.number<quint32>();
            }
            case WireType::SmallDateTime: {
                const qint64 days = reader.number<quint16>();
                return days * engine::ticksPerDay + reader.number<quint16>() * engine::ticksPerMinute;
            }
            default:
                return QString::number(reader.number<qint64>());
        }
    }

    /// The types that can hold a null and tell the length of a value in a byte.
    bool readSized(int wire, SqlType* type, Value* value) {
        const WireType kind{quint8(wire)};
        const bool isDecimal = kind == WireType::DecimalN || kind == WireType::NumericN;
        const auto isKind = [kind](const NumberFormat& format) { return format.nullable == kind; };
        if (!isDecimal && kind != WireType::Guid && std::ranges::none_of(numberFormats(), isKind))
            return false;
        const int most = m_reader.number<quint8>();
        if (isDecimal) {
            type->id = kind == WireType::DecimalN ? TypeId::Decimal : TypeId::Numeric;
            type->precision = m_reader.number<quint8>();
            type->scale = m_reader.number<quint8>();
            if (type->precision < 1 || type->precision > 38 || type->scale > type->precision)
                throw ProtocolError("digits of a decimal");
        }
        const QByteArrayView bytes = m_reader.take(m_reader.number<quint8>());
        if (isDecimal) {
            if (bytes.size() > 17 || (!bytes.isEmpty() && bytes.size() % 4 != 1))
                throw ProtocolError("size of a decimal");
            if (!bytes.isEmpty()) *value = decimalValue(bytes, type->scale);
        } else if (kind == WireType::Guid) {
            type->id = TypeId::UniqueIdentifier;
            if (!bytes.isEmpty() && bytes.size() != 16) throw ProtocolError("size of a uniqueidentifier");
            if (!bytes.isEmpty()) *value = bytes.toByteArray();
        } else {
            const int size = bytes.isEmpty() ? most : int(bytes.size());
            const auto format = std::ranges::find_if(numberFormats(), [&](const NumberFormat& one) {
                return isKind(one) && int(one.bytes) == size;
            });
            if (format == numberFormats().end()) throw ProtocolError("size of a number");
            *type = typeOf(*format);
            if (!bytes.isEmpty()) *value = number(format->fixed, bytes);
        }
        return true;
    }

    bool readDate(int wire, SqlType* type, Value* value) {
        if (wire < kDate || wire > kDateTimeOffset) return false;
        const int scale = wire == kDate ? 0 : m_reader.number<quint8>();
        const QByteArrayView bytes = m_reader.take(m_reader.number<quint8>());
        type->id = TypeId::DateTime;
        if (!bytes.isEmpty()) *value = laterDate(bytes, wire, scale);
        return true;
    }

    bool readText(int wire, SqlType* type, Value* value) {
        switch (wire) {
            case kOldChar:
            case kOldVarChar:
            case kOldBinary:
            case kOldVarBinary: {
                const bool binary = wire == kOldBinary || wire == kOldVarBinary;
                type->id = binary ? TypeId::VarBinary : TypeId::VarChar;
                type->length = std::max<int>(1, m_reader.number<quint8>());
                const QByteArrayView bytes = m_reader.take(m_reader.number<quint8>());
                if (!bytes.isEmpty()) *value = valueOf(bytes, *type);
                return true;
            }
            case int(WireType::BigChar):
            case int(WireType::BigVarChar):
                return readShort(TypeId::VarChar, TypeId::Text, type, value);
            case int(WireType::NChar):
            case int(WireType::NVarChar):
                return readShort(TypeId::NVarChar, TypeId::NText, type, value);
            case int(WireType::BigBinary):
            case int(WireType::BigVarBinary):
                return readShort(TypeId::VarBinary, TypeId::Image, type, value);
            case int(WireType::Text):
                return readLong(TypeId::Text, type, value);
            case int(WireType::NText):
                return readLong(TypeId::NText, type, value);
            case int(WireType::Image):
                return readLong(TypeId::Image, type, value);
            default:
                return false;
        }
    }

    bool readShort(TypeId id, TypeId longId, SqlType* type, Value* value) {
        const auto most = m_reader.number<quint16>();
        if (id != TypeId::VarBinary && hasCollations(m_version)) m_reader.take(collationBytes().size());
        if (most == kInChunks) {
            type->id = longId;
            if (const auto bytes = readChunks()) *value = valueOf(*bytes, *type);
            return true;
        }
        *type = {.id = id, .length = std::max(1, id == TypeId::NVarChar ? most / 2 : int(most))};
        const auto length = m_reader.number<quint16>();
        if (length != kNullLength) *value = valueOf(m_reader.take(length), *type);
        return true;
    }

    bool readLong(TypeId id, SqlType* type, Value* value) {
        type->id = id;
        m_reader.take(sizeof(quint32));
        if (id != TypeId::Image && hasCollations(m_version)) m_reader.take(collationBytes().size());
        const auto length = m_reader.number<qint32>();
        if (length >= 0) *value = valueOf(m_reader.take(length), *type);
        return true;
    }

    /// A value in chunks, each after its length, until one of no bytes; nothing for a null.
    std::optional<QByteArray> readChunks() {
        constexpr quint64 nullLength = ~quint64(0);
        if (m_reader.number<quint64>() == nullLength) return std::nullopt;
        QByteArray bytes;
        while (const auto length = m_reader.number<quint32>())
            bytes.append(m_reader.take(length));
        return bytes;
    }

    static Value valueOf(QByteArrayView bytes, const SqlType& type) {
        if (type.id == TypeId::VarBinary || type.id == TypeId::Image) return bytes.toByteArray();
        const bool national = type.id == TypeId::NVarChar || type.id == TypeId::NText;
        return national ? utf16Text(bytes) : engine::fromCodePage(bytes);
    }

    WireReader& m_reader;
    TdsVersion m_version;
};

}  // namespace

engine::Parameter readParameter(WireReader& reader, int number, TdsVersion version) {
    constexpr quint8 isOutput = 0x01;
    engine::Parameter parameter;
    parameter.name = reader.text(reader.number<quint8>());
    parameter.output = reader.number<quint8>() & isOutput;
    if (Reader(reader, version).read(&parameter.type, &parameter.value)) return parameter;
    throw engine::SqlError(
        8009, 16,
        QStringLiteral(
            "The incoming tabular data stream (TDS) remote procedure call (RPC) protocol stream is "
            "incorrect. Parameter %1: Data type is unknown.")
            .arg(number));
}

}  // namespace tds
