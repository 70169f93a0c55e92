#include "platform/ado/celltext.h"

#include "platform/ado/odbc.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace ado {

namespace {

[[noreturn]] void throwMismatch() {
    throw Error(platform::errors::TypeMismatch, QStringLiteral("Type mismatch"), {}, 0);
}

template <typename T>
T valueOf(const Cell& cell) {
    T value{};
    std::memcpy(&value, cell.data, sizeof value);
    return value;
}

QStringView unitsOf(const Cell& cell) {
    return {reinterpret_cast<const char16_t*>(cell.data), cell.size / qsizetype(sizeof(char16_t))};
}

/// Writes Latin-1 characters as UTF-16 units.
class Writer {
  public:
    explicit Writer(TextRoom& room) : m_room(room) {}

    void put(char16_t unit) { m_room[m_size++] = unit; }
    void put(std::string_view characters) {
        for (const char c : characters)
            put(static_cast<char16_t>(c));
    }
    void putDigits(unsigned value, int digits) {
        for (int i = digits - 1; i >= 0; --i, value /= 10)
            m_room[m_size + static_cast<size_t>(i)] = static_cast<char16_t>(u'0' + value % 10);
        m_size += static_cast<size_t>(digits);
    }
    QStringView text() const { return {m_room.data(), qsizetype(m_size)}; }

  private:
    TextRoom& m_room;
    size_t m_size = 0;
};

QStringView integerText(qint64 value, TextRoom& room) {
    std::array<char, 24> digits;
    const auto end = std::to_chars(digits.begin(), digits.end(), value).ptr;
    Writer writer(room);
    writer.put({digits.data(), static_cast<size_t>(end - digits.data())});
    return writer.text();
}

template <typename T>
QStringView floatText(T value, TextRoom& room) {
    Writer writer(room);
    if (value == 0) {
        writer.put(u'0');
        return writer.text();
    }
    const T size = std::abs(value);
    const bool plain = size >= T(1e-5) && size < T(1e15);
    std::array<char, 48> digits;
    const auto end = std::to_chars(digits.begin(), digits.end(), value,
                                   plain ? std::chars_format::fixed : std::chars_format::scientific)
                         .ptr;
    for (const char* c = digits.data(); c != end; ++c)
        writer.put(static_cast<char16_t>(*c == 'e' ? 'E' : *c));
    return writer.text();
}

void putFraction(Writer& writer, unsigned nanoseconds) {
    if (!nanoseconds) return;
    writer.put(u'.');
    if (nanoseconds % 1'000'000 == 0)
        writer.putDigits(nanoseconds / 1'000'000, 3);
    else
        writer.putDigits(nanoseconds / 100, 7);
}

QStringView dateText(const SQL_TIMESTAMP_STRUCT& value, bool withTime, TextRoom& room) {
    Writer writer(room);
    writer.putDigits(static_cast<unsigned>(value.year), 4);
    writer.put(u'-');
    writer.putDigits(value.month, 2);
    writer.put(u'-');
    writer.putDigits(value.day, 2);
    if (withTime) {
        writer.put(u' ');
        writer.putDigits(value.hour, 2);
        writer.put(u':');
        writer.putDigits(value.minute, 2);
        writer.put(u':');
        writer.putDigits(value.second, 2);
        putFraction(writer, value.fraction);
    }
    return writer.text();
}

/// Some drivers leave out the zero before the point.
QStringView exactText(QStringView digits, TextRoom& room) {
    const bool negative = digits.startsWith(u'-');
    const QStringView size = digits.sliced(negative ? 1 : 0);
    if (!size.startsWith(u'.')) return digits;
    Writer writer(room);
    if (negative) writer.put(u'-');
    writer.put(u'0');
    for (const QChar c : size)
        writer.put(c.unicode());
    return writer.text();
}

QStringView guidText(QStringView digits, TextRoom& room) {
    Writer writer(room);
    writer.put(u'{');
    for (const QChar c : digits)
        writer.put(c.toUpper().unicode());
    writer.put(u'}');
    return writer.text();
}

qint64 rounded(double value) {
    constexpr double limit = 9223372036854775808.0;
    const double whole = std::nearbyint(value);
    if (!(whole >= -limit && whole < limit)) throwMismatch();
    return static_cast<qint64>(whole);
}

qint64 parsedInteger(QStringView text) {
    const QByteArray characters = text.trimmed().toLatin1();
    const char* const end = characters.constData() + characters.size();
    qint64 whole = 0;
    const auto asWhole = std::from_chars(characters.constData(), end, whole);
    if (asWhole.ec == std::errc{} && asWhole.ptr == end) return whole;
    double value = 0;
    const auto asDouble = std::from_chars(characters.constData(), end, value);
    if (asDouble.ec != std::errc{} || asDouble.ptr != end) throwMismatch();
    return rounded(value);
}

}  // namespace

QStringView cellText(const Column& column, const Cell& cell, TextRoom& room) {
    if (cell.size == Cell::Null) throwMismatch();
    switch (column.type) {
        case FieldType::Text:
            return unitsOf(cell);
        case FieldType::Exact:
            return exactText(unitsOf(cell), room);
        case FieldType::Integer:
            return integerText(valueOf<qint64>(cell), room);
        case FieldType::Boolean:
            return valueOf<qint64>(cell) ? QStringView(u"True") : QStringView(u"False");
        case FieldType::Float:
            return floatText(valueOf<double>(cell), room);
        case FieldType::Real:
            return floatText(valueOf<float>(cell), room);
        case FieldType::DateTime:
            return dateText(valueOf<SQL_TIMESTAMP_STRUCT>(cell), true, room);
        case FieldType::Date:
            return dateText(valueOf<SQL_TIMESTAMP_STRUCT>(cell), false, room);
        case FieldType::Guid:
            return guidText(unitsOf(cell), room);
        case FieldType::Binary:
            break;
    }
    throwMismatch();
}

qint64 cellInteger(const Column& column, const Cell& cell) {
    if (cell.size == Cell::Null) throwMismatch();
    switch (column.type) {
        case FieldType::Integer:
        case FieldType::Boolean:
            return valueOf<qint64>(cell);
        case FieldType::Float:
            return rounded(valueOf<double>(cell));
        case FieldType::Real:
            return rounded(static_cast<double>(valueOf<float>(cell)));
        case FieldType::Text:
        case FieldType::Exact:
            return parsedInteger(unitsOf(cell));
        default:
            throwMismatch();
    }
}

}  // namespace ado
