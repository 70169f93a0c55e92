#include "platform/showntext.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace platform {

namespace {

constexpr QChar Ellipsis(0x2026);

/// Whether a text engine obeys a character, other than by its letter's own direction.
bool isObeyed(char16_t c) {
    constexpr char16_t LastControl = 0x1f;
    constexpr std::pair<char16_t, char16_t> Obeyed[] = {
        {0x007f, 0x009f},  // the other control characters
        {0x061c, 0x061c},  // Arabic letter mark
        {0x200e, 0x200f},  // left-to-right mark, right-to-left mark
        {0x2028, 0x202e},  // separators, embeddings and overrides
        {0x2066, 0x206f},  // isolates, and formats of old
    };
    if (c <= LastControl) return true;
    return std::any_of(std::begin(Obeyed), std::end(Obeyed),
                       [c](const auto& range) { return c >= range.first && c <= range.second; });
}

QString signOf(char16_t c) {
    static constexpr const char* Names[] = {"NUL", "SOH", "STX", "ETX", "EOT", "ENQ", "ACK", "BEL",
                                            "BS",  "TAB", "LF",  "VT",  "FF",  "CR",  "SO",  "SI",
                                            "DLE", "DC1", "DC2", "DC3", "DC4", "NAK", "SYN", "ETB",
                                            "CAN", "EM",  "SUB", "ESC", "FS",  "GS",  "RS",  "US"};
    const QString sign = QStringLiteral("⟨%1⟩");
    if (c < std::size(Names)) return sign.arg(QLatin1StringView(Names[c]));
    return sign.arg(QStringLiteral("U+") + QString::number(c, 16).toUpper().rightJustified(4, u'0'));
}

/// Whether the character at a place stands for itself, in a text where `kept` does too.
bool showsItself(QStringView text, qsizetype at, QStringView kept) {
    const QChar c = text[at];
    if (c.isHighSurrogate()) return at + 1 < text.size() && text[at + 1].isLowSurrogate();
    if (c.isLowSurrogate()) return at > 0 && text[at - 1].isHighSurrogate();
    return !isObeyed(c.unicode()) || kept.contains(c);
}

QString shown(const QString& text, qsizetype most, QStringView kept) {
    qsizetype at = 0;
    while (at < text.size() && at < most && showsItself(text, at, kept))
        ++at;
    if (at == text.size()) return text;
    QString result = text.left(at);
    for (; at < text.size() && result.size() < most; ++at) {
        if (showsItself(text, at, kept)) {
            result.append(text[at]);
        } else {
            result.append(signOf(text[at].unicode()));
        }
    }
    if (at == text.size()) return result;
    if (result.back().isHighSurrogate()) result.chop(1);
    return result.append(Ellipsis);
}

}  // namespace

QString shownLine(const QString& text, qsizetype most) {
    return shown(text, most, {});
}

QString shownLines(const QString& text, qsizetype most) {
    QString lines = text;
    lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    const auto end = std::find_if(lines.crbegin(), lines.crend(),
                                  [](QChar c) { return !QStringView(u" \t\r\n").contains(c); });
    lines.truncate(lines.crend() - end);
    return shown(lines, most, u"\n\t");
}

}  // namespace platform
