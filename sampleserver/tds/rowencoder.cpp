#include "tds/rowencoder.h"

#include "engine/values/codepage.h"
#include "tds/decimal.h"
#include "tds/tokens.h"
#include "tds/wirebytes.h"

#include <algorithm>
#include <limits>

namespace tds {

namespace {

using engine::Value;

constexpr qint64 kTicksPerMinute = 60 * 300;
constexpr qint64 kTicksPerDay = 24 * 60 * kTicksPerMinute;

template <typename Number>
bool fits(qint64 value) {
    return value >= std::numeric_limits<Number>::min() && value <= std::numeric_limits<Number>::max();
}

template <typename Number>
bool appendWhole(QByteArray& out, qint64 value) {
    if (!fits<Number>(value)) return false;
    appendNumber(out, Number(value));
    return true;
}

bool appendInteger(QByteArray& out, qint64 value, quint32 bytes) {
    switch (bytes) {
        case 1:
            return appendWhole<quint8>(out, value);
        case 2:
            return appendWhole<qint16>(out, value);
        default:
            return appendWhole<qint32>(out, value);
    }
}

// The high half of a money goes first.
bool appendMoney(QByteArray& out, qint64 value, quint32 bytes) {
    if (bytes == 4) return appendWhole<qint32>(out, value);
    appendNumber(out, qint32(value >> 32));
    appendNumber(out, quint32(value));
    return true;
}

bool appendDateTime(QByteArray& out, qint64 ticks, quint32 bytes) {
    const qint64 rest = ((ticks % kTicksPerDay) + kTicksPerDay) % kTicksPerDay;
    const qint64 days = (ticks - rest) / kTicksPerDay;
    if (bytes == 8 ? !fits<qint32>(days) : !fits<quint16>(days)) return false;
    if (bytes == 8) {
        appendNumber(out, qint32(days));
        appendNumber(out, quint32(rest));
    } else {
        appendNumber(out, quint16(days));
        appendNumber(out, quint16(rest / kTicksPerMinute));
    }
    return true;
}

bool appendFloat(QByteArray& out, double value, quint32 bytes) {
    if (bytes == 8)
        appendNumber(out, value);
    else
        appendNumber(out, float(value));
    return true;
}

// An empty text pointer would mean null, so every value has one, and a timestamp; neither says anything.
void appendTextPointer(QByteArray& out) {
    appendNumber(out, quint8(16));
    out.append(16 + 8, '\0');
}

bool appendNull(QByteArray& out, const ColumnFormat& format) {
    if (format.fixed) return false;
    if (lengthBytes(format.type) == 2)
        appendNumber(out, quint16(0xFFFF));
    else
        appendNumber(out, quint8(0));
    return true;
}

bool appendNumeric(QByteArray& out, const Value& value, const ColumnFormat& format) {
    if (format.type == WireType::DecimalN || format.type == WireType::NumericN) {
        const QString* text = std::get_if<QString>(&value);
        return text && appendDecimal(out, *text, format);
    }
    if (!format.fixed) appendNumber(out, quint8(format.bytes));
    if (format.type == WireType::FloatN) {
        const double* number = std::get_if<double>(&value);
        return number && appendFloat(out, *number, format.bytes);
    }
    const qint64* number = std::get_if<qint64>(&value);
    if (!number) return false;
    switch (format.type) {
        case WireType::MoneyN:
            return appendMoney(out, *number, format.bytes);
        case WireType::DateTimeN:
            return appendDateTime(out, *number, format.bytes);
        case WireType::BitN:
            return appendInteger(out, *number != 0, 1);
        default:
            return appendInteger(out, *number, format.bytes);
    }
}

void appendCodePage(QByteArray& out, QStringView text) {
    const qsizetype start = out.size();
    out.resize(start + text.size());
    std::transform(text.utf16(), text.utf16() + text.size(), out.begin() + start, engine::codePageByte);
}

bool appendText(QByteArray& out, const Value& value, const ColumnFormat& format) {
    const QString* text = std::get_if<QString>(&value);
    if (!text) return false;
    const bool national =
        format.type == WireType::NText || format.type == WireType::NChar || format.type == WireType::NVarChar;
    const qsizetype bytes = national ? 2 * text->size() : text->size();
    if (bytes > qsizetype(format.bytes)) return false;
    if (lengthBytes(format.type) == 4) {
        appendTextPointer(out);
        appendNumber(out, quint32(bytes));
    } else {
        appendNumber(out, quint16(bytes));
    }
    if (national)
        appendUtf16(out, *text);
    else
        appendCodePage(out, *text);
    return true;
}

bool appendBinary(QByteArray& out, const Value& value, const ColumnFormat& format) {
    const QByteArray* bytes = std::get_if<QByteArray>(&value);
    if (!bytes || bytes->size() > qsizetype(format.bytes)) return false;
    if (format.type == WireType::Guid) {
        if (bytes->size() != 16) return false;
        appendNumber(out, quint8(16));
    } else if (format.type == WireType::Image) {
        appendTextPointer(out);
        appendNumber(out, quint32(bytes->size()));
    } else {
        appendNumber(out, quint16(bytes->size()));
    }
    out.append(*bytes);
    return true;
}

}  // namespace

bool appendValue(QByteArray& out, const Value& value, const ColumnFormat& format) {
    if (std::holds_alternative<std::monostate>(value)) return appendNull(out, format);
    if (isText(format.type)) return appendText(out, value, format);
    const bool binary = lengthBytes(format.type) > 1 || format.type == WireType::Guid;
    return binary ? appendBinary(out, value, format) : appendNumeric(out, value, format);
}

RowEncoder::RowEncoder(const std::vector<engine::ResultColumn>& columns) {
    m_formats.reserve(columns.size());
    for (const engine::ResultColumn& column : columns)
        m_formats.push_back(formatOf(column.type, column.nullable));
}

bool RowEncoder::append(QByteArray& out, std::span<const Value> values) const {
    const qsizetype start = out.size();
    appendNumber(out, quint8(Token::Row));
    bool good = values.size() == m_formats.size();
    for (std::size_t i = 0; good && i < values.size(); ++i)
        good = appendValue(out, values[i], m_formats[i]);
    if (!good) out.resize(start);
    return good;
}

}  // namespace tds
