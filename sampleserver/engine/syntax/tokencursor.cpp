#include "engine/syntax/tokencursor.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace engine {

namespace {

bool isReserved(const QString& word) {
    static constexpr std::array words = {
        "add",      "all",     "alter",   "and",       "as",           "asc",        "begin",  "between",
        "by",       "case",    "check",   "clustered", "column",       "constraint", "create", "cross",
        "database", "default", "delete",  "deny",      "desc",         "distinct",   "drop",   "else",
        "end",      "exec",    "execute", "exists",    "foreign",      "from",       "grant",  "group",
        "having",   "if",      "in",      "index",     "inner",        "insert",     "into",   "is",
        "join",     "key",     "left",    "like",      "nonclustered", "not",        "null",   "on",
        "or",       "order",   "outer",   "primary",   "print",        "references", "right",  "select",
        "set",      "table",   "to",      "top",       "union",        "unique",     "update", "use",
        "user",     "values",  "view",    "when",      "where",        "with"};
    return std::any_of(words.begin(), words.end(), [&word](const char* reserved) {
        return word.compare(QLatin1String(reserved), Qt::CaseInsensitive) == 0;
    });
}

}  // namespace

TokenCursor::TokenCursor(const QString& batch, int firstLine) : m_batch(batch) {
    try {
        m_tokens = tokenize(batch);
    } catch (SqlError& error) {
        error.message().line += firstLine - 1;
        throw;
    }
    for (Token& token : m_tokens)
        token.line += firstLine - 1;
}

const Token& TokenCursor::peek(int ahead) const {
    return m_tokens[std::min(m_next + static_cast<size_t>(ahead), m_tokens.size() - 1)];
}

Token TokenCursor::take() {
    const Token token = peek();
    if (token.kind != TokenKind::End) ++m_next;
    return token;
}

bool TokenCursor::accept(const char* word) {
    if (!is(word)) return false;
    take();
    return true;
}

bool TokenCursor::acceptSymbol(const char* symbol) {
    if (!isSymbol(symbol)) return false;
    take();
    return true;
}

void TokenCursor::expect(const char* word) {
    if (!accept(word)) throw unexpected();
}

void TokenCursor::expectSymbol(const char* symbol) {
    if (!acceptSymbol(symbol)) throw unexpected();
}

QString TokenCursor::name() {
    const Token& token = peek();
    if (token.kind != TokenKind::Identifier || token.text.isEmpty()) throw unexpected();
    if (!token.quoted && isReserved(token.text)) {
        SqlError error(156, 15,
                       QStringLiteral("Line %1: Incorrect syntax near the keyword '%2'.")
                           .arg(QString::number(token.line), token.text));
        error.message().line = token.line;
        throw error;
    }
    return take().text;
}

ObjectName TokenCursor::objectName() {
    ObjectName object{.database = {}, .owner = {}, .name = name()};
    for (int parts = 1; acceptSymbol("."); ++parts) {
        if (parts == 3) throw unexpected();
        object.database = object.owner;
        object.owner = object.name;
        // "pubs..authors": the owner may be left out between two points.
        object.name = parts == 1 && isSymbol(".") ? QString() : name();
    }
    return object;
}

QStringList TokenCursor::nameList() {
    QStringList names;
    expectSymbol("(");
    do {
        names.append(name());
    } while (acceptSymbol(","));
    expectSymbol(")");
    return names;
}

QStringList TokenCursor::keyList() {
    QStringList names;
    expectSymbol("(");
    do {
        names.append(name());
        if (!accept("asc")) accept("desc");
    } while (acceptSymbol(","));
    expectSymbol(")");
    return names;
}

void TokenCursor::skip(qsizetype characters) {
    const qsizetype target = peek().begin + characters;
    while (!atEnd() && peek().begin < target)
        take();
}

qint64 TokenCursor::integer() {
    const bool negative = isSymbol("-");
    if (negative || isSymbol("+")) take();
    bool whole = peek().kind == TokenKind::Number;
    const qint64 number = whole ? peek().text.toLongLong(&whole) : 0;
    if (!whole) throw unexpected();
    take();
    return negative ? -number : number;
}

bool TokenCursor::onOrOff() {
    if (accept("on")) return true;
    expect("off");
    return false;
}

QString TokenCursor::parenthesised() {
    const Token first = peek();
    expectSymbol("(");
    for (int depth = 1; depth > 0;) {
        if (atEnd()) throw unexpected();
        const Token token = take();
        if (token.isSymbol(QLatin1String("("))) ++depth;
        if (token.isSymbol(QLatin1String(")"))) --depth;
    }
    return textSince(first);
}

QString TokenCursor::textSince(const Token& first) const {
    const qsizetype end = m_next == 0 ? first.begin : m_tokens[m_next - 1].end;
    return m_batch.mid(first.begin, end - first.begin);
}

SqlError TokenCursor::unexpected() const {
    // At the end of a batch the server names the last token it read.
    const Token& token = atEnd() && m_next > 0 ? m_tokens[m_next - 1] : peek();
    SqlError error(
        102, 15,
        QStringLiteral("Line %1: Incorrect syntax near '%2'.").arg(QString::number(token.line), token.text));
    error.message().line = token.line;
    return error;
}

}  // namespace engine
