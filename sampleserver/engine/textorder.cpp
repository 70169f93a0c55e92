#include "engine/textorder.h"

#include <QList>

#include <algorithm>

namespace engine {

namespace {

unsigned char lowered(unsigned char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<unsigned char>(c + ('a' - 'A')) : c;
}

std::string_view withoutTrailingBlanks(std::string_view text) {
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

/// Texts beyond ASCII, from where they first differ or leave ASCII.
int compareUnicode(std::string_view a, std::string_view b) {
    const auto fold = [](std::string_view text) {
        return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toCaseFolded().toUcs4();
    };
    const auto left = fold(a);
    const auto right = fold(b);
    const auto order =
        std::lexicographical_compare_three_way(left.begin(), left.end(), right.begin(), right.end());
    return order < 0 ? -1 : order > 0 ? 1 : 0;
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
                found = found || (c >= foldedChar(set[i]) && c <= foldedChar(set[i + 2]));
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
        if ((x | y) >= 0x80) return compareUnicode(a.substr(i), b.substr(i));
        const unsigned char p = lowered(x);
        const unsigned char q = lowered(y);
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
