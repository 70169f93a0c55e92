#include "tds/windows1252.h"

#include <algorithm>
#include <array>

namespace tds {

namespace {

// The characters of 0x80 to 0x9F; five bytes stand for the control character of their own number.
constexpr std::array<char16_t, 32> kUpperControls{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char windows1252(char16_t unit) {
    if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) return char(unit);
    const auto found = std::find(kUpperControls.begin(), kUpperControls.end(), unit);
    return found == kUpperControls.end() ? '?' : char(0x80 + (found - kUpperControls.begin()));
}

}  // namespace

void appendWindows1252(QByteArray& out, QStringView text) {
    const qsizetype start = out.size();
    out.resize(start + text.size());
    std::transform(text.utf16(), text.utf16() + text.size(), out.begin() + start, windows1252);
}

}  // namespace tds
