#include "engine/values/textorder.h"

#include <QList>

#include <algorithm>
#include <array>
#include <compare>
#include <string_view>
#include <vector>

namespace engine {

namespace {

/// The place of a character among all: marks, then digits, then letters, each by their code.
constexpr unsigned markPlace = 0;
constexpr unsigned digitPlace = 1U << 24;
constexpr unsigned letterPlace = 2U << 24;

constexpr unsigned placeOfAscii(unsigned char c) {
    if (c >= 'A' && c <= 'Z') return letterPlace + c + ('a' - 'A');
    if (c >= 'a' && c <= 'z') return letterPlace + c;
    return (c >= '0' && c <= '9' ? digitPlace : markPlace) + c;
}

constexpr auto asciiPlaces = [] {
    std::array<unsigned, 128> places{};
    for (unsigned char c = 0; c < places.size(); ++c)
        places[c] = placeOfAscii(c);
    return places;
}();

/// The plain letters that a letter without a decomposition is sorted with, or nothing.
std::u32string_view plainLetters(char32_t letter) {
    switch (letter) {
        case U'\u00DF':  // sharp s
            return U"ss";
        case U'\u00E6':  // ae
            return U"ae";
        case U'\u0153':  // oe
            return U"oe";
        case U'\u00F8':  // o with stroke
            return U"o";
        case U'\u0142':  // l with stroke
            return U"l";
        case U'\u0111':  // d with stroke
        case U'\u00F0':  // eth
            return U"d";
        default:
            return {};
    }
}

/// The places of a text's characters without their accents.
std::vector<unsigned> placesOf(const QString& folded) {
    std::vector<unsigned> places;
    for (const char32_t c : folded.normalized(QString::NormalizationForm_D).toUcs4()) {
        if (c < asciiPlaces.size()) {
            places.push_back(asciiPlaces[c]);
        } else if (const auto plain = plainLetters(c); !plain.empty()) {
            for (const char32_t letter : plain)
                places.push_back(asciiPlaces[letter]);
        } else if (!QChar::isMark(c)) {
            places.push_back((QChar::isLetter(c)   ? letterPlace
                              : QChar::isNumber(c) ? digitPlace
                                                   : markPlace) +
                             c);
        }
    }
    return places;
}

int signOf(std::strong_ordering order) {
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

std::string_view withoutTrailingBlanks(std::string_view text) {
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

/// Texts beyond ASCII. An accent counts only where nothing else differs.
int compareUnicode(const QString& a, const QString& b) {
    const QString left = a.toCaseFolded();
    const QString right = b.toCaseFolded();
    if (left == right) return 0;
    const auto order = placesOf(left) <=> placesOf(right);
    if (order != 0) return signOf(order);
    return signOf(left.toStdU32String() <=> right.toStdU32String());
}

QString fromStored(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

int compareChars(QChar a, QChar b) {
    if (std::max(a, b).unicode() < asciiPlaces.size()) {
        return signOf(asciiPlaces[a.unicode()] <=> asciiPlaces[b.unicode()]);
    }
    return compareUnicode(QString(a), QString(b));
}

QChar foldedChar(QChar c) {
    return c.toCaseFolded();
}

class PatternMatcher {
  public:
    PatternMatcher(QStringView text, QStringView pattern, QChar escape)
        : m_text(text), m_pattern(pattern), m_escape(escape) {}

    bool run(qsizetype at, qsizetype in) const {
        // Only the last % needs another try: what stood before it has matched as early as can be.
        qsizetype retryAt = -1;
        qsizetype retryIn = -1;
        for (;;) {
            if (in < m_pattern.size() && m_pattern[in] == u'%' && !isEscape(in)) {
                retryIn = ++in;
                retryAt = at;
                continue;
            }
            if (in == m_pattern.size() && at == m_text.size()) return true;
            qsizetype next = in;
            if (in < m_pattern.size() && at < m_text.size() && matchesOne(m_text[at], &next)) {
                ++at;
                in = next;
                continue;
            }
            if (retryIn < 0 || retryAt >= m_text.size()) return false;
            at = ++retryAt;
            in = retryIn;
        }
    }

  private:
    bool isEscape(qsizetype in) const {
        return !m_escape.isNull() && m_pattern[in] == m_escape && in + 1 < m_pattern.size();
    }

    bool matchesOne(QChar c, qsizetype* in) const {
        const QChar p = m_pattern[*in];
        if (isEscape(*in)) {
            *in += 2;
            return foldedChar(c) == foldedChar(m_pattern[*in - 1]);
        }
        if (p == u'[') {
            const qsizetype end = m_pattern.indexOf(u']', *in + 1);
            if (end < 0) return false;
            const QStringView set = m_pattern.mid(*in + 1, end - *in - 1);
            *in = end + 1;
            return inSet(foldedChar(c), set);
        }
        ++*in;
        return p == u'_' || foldedChar(c) == foldedChar(p);
    }

    static bool inSet(QChar c, QStringView set) {
        const bool inverted = set.startsWith(u'^');
        if (inverted) set = set.mid(1);
        bool found = false;
        for (qsizetype i = 0; i < set.size(); ++i) {
            if (i + 2 < set.size() && set[i + 1] == u'-') {
                found = found || (compareChars(c, set[i]) >= 0 && compareChars(c, set[i + 2]) <= 0);
                i += 2;
            } else {
                found = found || c == foldedChar(set[i]);
            }
        }
        return found != inverted;
    }

    QStringView m_text;
    QStringView m_pattern;
    QChar m_escape;
};

}  // namespace

int compareTexts(std::string_view a, std::string_view b) {
    a = withoutTrailingBlanks(a);
    b = withoutTrailingBlanks(b);
    const size_t shared = std::min(a.size(), b.size());
    for (size_t i = 0; i < shared; ++i) {
        const auto x = static_cast<unsigned char>(a[i]);
        const auto y = static_cast<unsigned char>(b[i]);
        if ((x | y) >= 0x80) return compareUnicode(fromStored(a.substr(i)), fromStored(b.substr(i)));
        const unsigned p = asciiPlaces[x];
        const unsigned q = asciiPlaces[y];
        if (p != q) return p < q ? -1 : 1;
    }
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

int compareStoredTexts(void*, int sizeA, const void* a, int sizeB, const void* b) {
    return compareTexts({static_cast<const char*>(a), static_cast<size_t>(sizeA)},
                        {static_cast<const char*>(b), static_cast<size_t>(sizeB)});
}

QString foldedCase(QStringView text) {
    QString folded = text.toString();
    std::ranges::transform(folded, folded.begin(), foldedChar);
    return folded;
}

bool matchesPattern(QStringView text, QStringView pattern, QChar escape) {
    return PatternMatcher(text, pattern, escape).run(0, 0);
}

}  // namespace engine
