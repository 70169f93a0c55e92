#include "engine/values/codepage.h"

#include <algorithm>
#include <array>

namespace engine {

namespace {

/// Characters 0x80 to 0x9F; the five places without a character stand for themselves.
constexpr std::array<char16_t, 32> upper{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                         0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                         0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                         0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

int byteOf(char16_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return c;
    const auto found = std::ranges::find(upper, c);
    return found == upper.end() ? -1 : 0x80 + static_cast<int>(found - upper.begin());
}

}  // namespace

char codePageByte(char16_t unit) {
    const int byte = byteOf(unit);
    return byte < 0 ? '?' : static_cast<char>(byte);
}

QByteArray toCodePage(QStringView text) {
    QByteArray bytes;
    bytes.reserve(text.size());
    for (const QChar c : text) {
        if (c.isLowSurrogate()) continue;
        bytes += codePageByte(c.unicode());
    }
    return bytes;
}

QString fromCodePage(QByteArrayView bytes) {
    QString text;
    text.reserve(bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += byte >= 0x80 && byte < 0xA0 ? QChar(upper[byte - 0x80]) : QChar(byte);
    }
    return text;
}

QString inCodePage(const QString& text) {
    const bool fits = std::ranges::all_of(text, [](QChar c) { return byteOf(c.unicode()) >= 0; });
    return fits ? text : fromCodePage(toCodePage(text));
}

}  // namespace engine
