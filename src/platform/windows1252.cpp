#include "platform/windows1252.h"

#include <algorithm>
#include <array>

namespace platform {

namespace {

// Qt's own converter knows this code page only where it was built with ICU.
constexpr uchar FirstOfTable = 0x80;
constexpr char16_t Unassigned = 0;
constexpr std::array<char16_t, 32> Table = {
    0x20AC,     Unassigned, 0x201A, 0x0192, 0x201E, 0x2026,     0x2020, 0x2021,      // 0x80
    0x02C6,     0x2030,     0x0160, 0x2039, 0x0152, Unassigned, 0x017D, Unassigned,  // 0x88
    Unassigned, 0x2018,     0x2019, 0x201C, 0x201D, 0x2022,     0x2013, 0x2014,      // 0x90
    0x02DC,     0x2122,     0x0161, 0x203A, 0x0153, Unassigned, 0x017E, 0x0178};     // 0x98

char byteOf(char16_t character) {
    const bool asInLatin1 = character < FirstOfTable || (character >= 0xA0 && character <= 0xFF);
    if (asInLatin1) return static_cast<char>(character);
    const auto* const found = std::find(Table.begin(), Table.end(), character);
    return found == Table.end() ? '?' : static_cast<char>(FirstOfTable + (found - Table.begin()));
}

}  // namespace

QByteArray toWindows1252(QStringView text) {
    QByteArray bytes;
    bytes.reserve(text.size());
    for (qsizetype at = 0; at < text.size(); ++at) {
        bytes.append(byteOf(text[at].unicode()));
        if (text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate()) ++at;
    }
    return bytes;
}

}  // namespace platform
