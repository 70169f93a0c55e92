#include "engine/store/storecall.h"
#include "engine/store/storefunctions.h"
#include "engine/values/codepage.h"
#include "engine/values/decimal.h"
#include "engine/values/textorder.h"
#include "engine/values/typeinfo.h"

#include <algorithm>

namespace engine {

namespace {

[[noreturn]] void failLength(const char* function) {
    throw SqlError(
        536, 16,
        QStringLiteral("Invalid length parameter passed to the %1 function.").arg(QLatin1String(function)));
}

QStringView withoutBlanks(QStringView text) {
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

void len(StoreCall& c) {
    c.result(qint64(withoutBlanks(c.text(0)).size()));
}

void dataLength(StoreCall& c) {
    const SqlType type = c.type(1);
    if (isText(type.id)) {
        c.result(qint64(c.text(0).size() * (isNational(type.id) ? 2 : 1)));
    } else if (isBinary(type.id)) {
        c.result(qint64(c.bytes(0).size()));
    } else {
        c.result(qint64(typeBytes(type)));
    }
}

void ascii(StoreCall& c) {
    const QString text = c.text(0);
    if (text.isEmpty()) return c.resultNull();
    c.result(qint64(static_cast<unsigned char>(toCodePage(text.left(1)).at(0))));
}

void unicode(StoreCall& c) {
    const QString text = c.text(0);
    if (text.isEmpty()) return c.resultNull();
    c.result(qint64(text[0].unicode()));
}

/// Letter by letter, for the text must not grow.
QString withEach(QString text, QChar (*change)(QChar)) {
    std::ranges::transform(text, text.begin(), change);
    return text;
}

void upper(StoreCall& c) {
    c.result(withEach(c.text(0), [](QChar letter) { return letter.toUpper(); }));
}

void lower(StoreCall& c) {
    c.result(withEach(c.text(0), [](QChar letter) { return letter.toLower(); }));
}

void ltrim(StoreCall& c) {
    std::string_view text = c.utf8(0);
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    c.result(text);
}

void rtrim(StoreCall& c) {
    const std::string_view text = c.utf8(0);
    c.result(text.substr(0, text.find_last_not_of(' ') + 1));
}

void reverse(StoreCall& c) {
    QString text = c.text(0);
    std::ranges::reverse(text);
    c.result(text);
}

void left(StoreCall& c) {
    if (c.integer(1) < 0) failLength("left");
    c.result(c.text(0).left(c.integer(1)));
}

void right(StoreCall& c) {
    if (c.integer(1) < 0) failLength("right");
    c.result(c.text(0).right(c.integer(1)));
}

/// Positions count from 1; what lies before the text takes part in the length.
template <class Text>
Text part(const Text& text, qint64 start, qint64 length) {
    if (length < 0) failLength("substring");
    const qint64 from = std::max<qint64>(start, 1);
    const qint64 end = std::min<qint64>(start + length, text.size() + 1);
    return end > from ? text.mid(from - 1, end - from) : Text();
}

void substring(StoreCall& c) {
    const QString text = part(c.text(0), c.integer(1), c.integer(2));
    c.result(text);
}

void subBinary(StoreCall& c) {
    c.result(part(c.bytes(0), c.integer(1), c.integer(2)));
}

void joinBinary(StoreCall& c) {
    c.result(c.bytes(0) + c.bytes(1));
}

void charIndex(StoreCall& c) {
    const QString wanted = foldedCase(c.text(0));
    if (wanted.isEmpty()) return c.result(qint64(0));
    c.result(qint64(foldedCase(c.text(1)).indexOf(wanted, std::max<qint64>(0, c.integer(2) - 1)) + 1));
}

void patIndex(StoreCall& c) {
    QString pattern = c.text(0);
    const QString text = c.text(1);
    if (!pattern.startsWith(u'%')) return c.result(qint64(matchesPattern(text, pattern, QChar()) ? 1 : 0));
    pattern.remove(0, 1);
    if (pattern.isEmpty()) return c.result(qint64(1));
    for (qsizetype at = 0; at <= text.size(); ++at) {
        if (matchesPattern(QStringView(text).mid(at), pattern, QChar())) return c.result(qint64(at + 1));
    }
    c.result(qint64(0));
}

void replace(StoreCall& c) {
    const QString wanted = c.text(1);
    QString text = c.text(0);
    if (!wanted.isEmpty()) text.replace(wanted, c.text(2), Qt::CaseInsensitive);
    c.result(text);
}

/// ts_replicate(text, times, most characters), and the same of binary values
template <auto read>
void replicate(StoreCall& c) {
    if (c.integer(1) < 0) return c.resultNull();
    const auto piece = (c.*read)(0);
    const qint64 most = piece.isEmpty() ? 0 : c.integer(2) / piece.size() + 1;
    c.result(piece.repeated(std::min(c.integer(1), most)).left(c.integer(2)));
}

void space(StoreCall& c) {
    if (c.integer(0) < 0) return c.resultNull();
    c.result(QString(std::min<qint64>(c.integer(0), 8000), u' '));
}

void str(StoreCall& c) {
    const qint64 length = c.integer(1);
    if (length < 1 || length > 8000 || c.integer(2) < 0) return c.resultNull();
    const int decimals = static_cast<int>(std::clamp<qint64>(c.integer(2), 0, 16));
    QString text = QString::number(c.real(0), 'f', decimals);
    const qsizetype whole = text.indexOf(u'.') < 0 ? text.size() : text.indexOf(u'.');
    if (whole > length) return c.result(QString(length, u'*'));
    // Too few places for all digits behind the point: as many as fit, rounded.
    if (text.size() > length)
        text = QString::number(c.real(0), 'f', static_cast<int>(std::max<qint64>(0, length - whole - 1)));
    c.result(text.rightJustified(length, u' '));
}

void stuff(StoreCall& c) {
    const QString text = c.text(0);
    const qint64 start = c.integer(1);
    const qint64 length = c.integer(2);
    if (start < 1 || start > text.size() || length < 0) return c.resultNull();
    c.result(text.left(start - 1) + c.text(3) + text.mid(start - 1 + length));
}

void character(StoreCall& c) {
    const qint64 code = c.integer(0);
    if (code < 0 || code > 255) return c.resultNull();
    const char byte = static_cast<char>(code);
    c.result(fromCodePage(QByteArrayView(&byte, 1)));
}

void nationalCharacter(StoreCall& c) {
    const qint64 code = c.integer(0);
    if (code < 0 || code > 65535) return c.resultNull();
    c.result(QString(QChar(static_cast<char16_t>(code))));
}

void quoteName(StoreCall& c) {
    QString text = c.text(0);
    if (text.size() > 128) return c.resultNull();
    c.result(u'[' + text.replace(u']', QStringLiteral("]]")) + u']');
}

/// ts_like(text, pattern, national[, escape])
void like(StoreCall& c) {
    const QString text = c.text(0);
    const QString pattern = c.text(1);
    QChar escape;
    if (c.count() > 3) {
        const QString mark = c.text(3);
        if (mark.size() != 1) {
            throw SqlError(
                506, 16,
                QStringLiteral("Invalid escape character '%1' was specified in a LIKE predicate.").arg(mark));
        }
        escape = mark[0];
    }
    const bool trims = c.integer(2) == 0 && text.endsWith(u' ');
    const bool found = matchesPattern(text, pattern, escape) ||
                       (trims && matchesPattern(withoutBlanks(text), pattern, escape));
    c.result(qint64(found ? 1 : 0));
}

constexpr StoreFunction functions[] = {
    {"ts_len", 1, len},
    {"ts_datalength", 2, dataLength},
    {"ts_ascii", 1, ascii},
    {"ts_unicode", 1, unicode},
    {"ts_upper", 1, upper},
    {"ts_lower", 1, lower},
    {"ts_ltrim", 1, ltrim},
    {"ts_rtrim", 1, rtrim},
    {"ts_reverse", 1, reverse},
    {"ts_left", 2, left},
    {"ts_right", 2, right},
    {"ts_substring", 3, substring},
    {"ts_subbinary", 3, subBinary},
    {"ts_joinbinary", 2, joinBinary},
    {"ts_charindex", 3, charIndex},
    {"ts_patindex", 2, patIndex},
    {"ts_replace", 3, replace},
    {"ts_replicate", 3, replicate<&StoreCall::text>},
    {"ts_replicatebinary", 3, replicate<&StoreCall::bytes>},
    {"ts_space", 1, space},
    {"ts_str", 3, str},
    {"ts_stuff", 4, stuff},
    {"ts_char", 1, character},
    {"ts_nchar", 1, nationalCharacter},
    {"ts_quotename", 1, quoteName},
    {"ts_like", 3, like},
    {"ts_like", 4, like},
};

}  // namespace

void registerTextFunctions(sqlite3* store) {
    for (const StoreFunction& function : functions)
        registerStoreFunction(store, function);
}

}  // namespace engine
