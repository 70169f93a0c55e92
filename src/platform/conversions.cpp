#include "platform/conversions.h"

#include "platform/runtimeerror.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace platform {

namespace {

[[noreturn]] void throwMismatch() {
    throw RuntimeError(errors::TypeMismatch, QStringLiteral("Type mismatch"));
}

[[noreturn]] void throwOverflow() {
    throw RuntimeError(errors::Overflow, QStringLiteral("Overflow"));
}

/// The number that a text is: digits with a sign, a decimal point and an exponent at most.
template <typename T>
T parsed(const QString& text) {
    const QByteArray characters = text.trimmed().toLatin1();
    const char* begin = characters.constData();
    const char* const end = begin + characters.size();
    if (begin != end && *begin == '+') ++begin;
    const char* const digits =
        begin != end && *begin == '-' && begin == characters.constData() ? begin + 1 : begin;
    // from_chars knows "inf" and "nan" too.
    if (digits == end || !((*digits >= '0' && *digits <= '9') || *digits == '.')) throwMismatch();
    T value{};
    const auto [stop, code] = std::from_chars(begin, end, value);
    if (stop != end || code == std::errc::invalid_argument) throwMismatch();
    if (code == std::errc::result_out_of_range) {
        // Too small counts as zero.
        if (characters.contains("e-") || characters.contains("E-")) return 0;
        throwOverflow();
    }
    return value;
}

template <typename T>
T roundedTo(double value) {
    const double whole = std::nearbyint(value);
    if (!(whole >= std::numeric_limits<T>::min() && whole <= std::numeric_limits<T>::max())) throwOverflow();
    return static_cast<T>(whole);
}

}  // namespace

qint16 toInteger(const QString& text) {
    return roundedTo<qint16>(parsed<double>(text));
}

qint32 toLong(const QString& text) {
    return roundedTo<qint32>(parsed<double>(text));
}

float toSingle(const QString& text) {
    return parsed<float>(text);
}

qint32 roundToLong(double value) {
    return roundedTo<qint32>(value);
}

std::optional<qint32> wholeNumber(QStringView text) {
    const QByteArray digits = text.trimmed().toUtf8();
    quint32 value = 0;
    const auto [stop, code] = std::from_chars(digits.constData(), digits.constData() + digits.size(), value);
    const bool whole = code == std::errc() && stop == digits.constData() + digits.size();
    if (!whole || value > quint32(std::numeric_limits<qint32>::max())) return std::nullopt;
    return static_cast<qint32>(value);
}

QString singleText(float value) {
    if (value == 0) return QStringLiteral("0");
    std::array<char, 128> digits;
    const bool plain = std::abs(value) < 1e12F;
    const auto end = std::to_chars(digits.begin(), digits.end(), value,
                                   plain ? std::chars_format::fixed : std::chars_format::scientific)
                         .ptr;
    return QString::fromLatin1(digits.data(), end - digits.data());
}

}  // namespace platform
