#include "engine/syntax/tokencursor.h"

#include <QSet>

namespace engine {

namespace {

// Far more than any statement that SQLite would take; keeps what a batch makes of itself in bounds.
constexpr size_t mostTokens = 1'000'000;

/// A reserved word of T-SQL is a name only in brackets or double quotes.
bool isReserved(const QString& word) {
    static const QStringList words =
        QStringLiteral(
            "add all alter and any as asc authorization backup begin between break browse bulk by cascade "
            "case check checkpoint close clustered coalesce collate column commit compute constraint "
            "contains containstable continue convert create cross current current_date current_time "
            "current_timestamp current_user cursor database dbcc deallocate declare default delete deny desc "
            "disk distinct distributed double drop dummy dump else end errlvl escape except exec execute "
            "exists exit fetch file fillfactor for foreign freetext freetexttable from full function goto "
            "grant group having holdlock identity identity_insert identitycol if in index inner insert "
            "intersect into is join key kill left like lineno load national nocheck nonclustered not null "
            "nullif of off offsets on open opendatasource openquery openrowset option or order outer over "
            "percent plan precision primary print proc procedure public raiserror read readtext reconfigure "
            "references replication restore restrict return revoke right rollback rowcount rowguidcol rule "
            "save schema select session_user set setuser shutdown some statistics system_user table textsize "
            "then to top tran transaction trigger truncate tsequal union unique update updatetext use user "
            "values varying view waitfor when where while with writetext")
            .split(u' ');
    static const QSet<QString> reserved(words.begin(), words.end());
    return reserved.contains(word.toLower());
}

}  // namespace

TokenCursor::TokenCursor(const QString& batch, int firstLine, bool quotedIdentifiers) : m_batch(batch) {
    try {
        m_tokens = tokenize(batch, mostTokens);
    } catch (SqlError& error) {
        error.message().line += firstLine - 1;
        throw;
    }
    for (Token& token : m_tokens)
        token.line += firstLine - 1;
    setQuotedIdentifiers(quotedIdentifiers);
}

void TokenCursor::setQuotedIdentifiers(bool on) {
    for (size_t i = m_next; i < m_tokens.size(); ++i) {
        if (m_tokens[i].doubleQuoted) m_tokens[i].kind = on ? TokenKind::Identifier : TokenKind::String;
    }
}

const Token& TokenCursor::peek(size_t ahead) const {
    return m_tokens[std::min(m_next + ahead, m_tokens.size() - 1)];
}

Token TokenCursor::take() {
    Token token = peek();
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
    if (!accept(word)) fail();
}

void TokenCursor::expectSymbol(const char* symbol) {
    if (!acceptSymbol(symbol)) fail();
}

bool TokenCursor::isName(size_t ahead) const {
    const Token& token = peek(ahead);
    return token.kind == TokenKind::Identifier && !token.text.isEmpty() &&
           (token.quoted || !isReserved(token.text));
}

QString TokenCursor::name() {
    if (!isName()) fail();
    return take().text;
}

ObjectName TokenCursor::objectName() {
    ObjectName object{.database = {}, .owner = {}, .name = name()};
    for (int parts = 1; acceptSymbol("."); ++parts) {
        if (parts == 3) fail();
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

qint64 TokenCursor::integer() {
    const bool negative = isSymbol("-");
    if (negative || isSymbol("+")) take();
    bool whole = peek().kind == TokenKind::Number;
    const qint64 number = whole ? peek().text.toLongLong(&whole) : 0;
    if (!whole) fail();
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
        if (atEnd()) fail();
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

void TokenCursor::fail() const {
    const bool end = atEnd() && m_next > 0;
    const Token& token = end ? m_tokens[m_next - 1] : peek();
    const bool keyword = !end && token.kind == TokenKind::Identifier && !isName();
    const QString text = keyword ? QStringLiteral("Incorrect syntax near the keyword '%1'.").arg(token.text)
                                 : QStringLiteral("Line %1: Incorrect syntax near '%2'.")
                                       .arg(QString::number(token.line), token.text);
    throw SqlError(
        SqlMessage{.number = keyword ? 156 : 170, .severity = 15, .line = token.line, .text = text});
}

}  // namespace engine
