#include "engine/syntax/tokenreader.h"

#include "engine/values/sqlerror.h"

#include <QSet>

namespace engine {

namespace {

QSet<QString> reservedWords() {
    const QString words = QStringLiteral(
        "add all alter and any as asc authorization backup begin between break browse bulk by cascade case "
        "check "
        "checkpoint close clustered coalesce collate column commit compute constraint contains containstable "
        "continue convert create cross current current_date current_time current_timestamp current_user "
        "cursor "
        "database dbcc deallocate declare default delete deny desc disk distinct distributed double drop "
        "dummy "
        "dump else end errlvl escape except exec execute exists exit fetch file fillfactor for foreign "
        "freetext "
        "freetexttable from full function goto grant group having holdlock identity identity_insert "
        "identitycol "
        "if in index inner insert intersect into is join key kill left like lineno load national nocheck "
        "nonclustered not null nullif of off offsets on open opendatasource openquery openrowset option or "
        "order "
        "outer over percent plan precision primary print proc procedure public raiserror read readtext "
        "reconfigure references replication restore restrict return revoke right rollback rowcount "
        "rowguidcol "
        "rule save schema select session_user set setuser shutdown some statistics system_user table "
        "textsize "
        "then to top tran transaction trigger truncate tsequal union unique update updatetext use user "
        "values "
        "varying view waitfor when where while with writetext");
    QSet<QString> result;
    for (const QString& word : words.split(u' '))
        result.insert(word);
    return result;
}

}  // namespace

bool isReservedWord(const QString& word) {
    static const QSet<QString> words = reservedWords();
    return words.contains(word.toLower());
}

TokenReader::TokenReader(std::vector<Token> tokens, bool quotedIdentifiers) : m_tokens(std::move(tokens)) {
    setQuotedIdentifiers(quotedIdentifiers);
}

void TokenReader::setQuotedIdentifiers(bool on) {
    for (size_t i = m_at; i < m_tokens.size(); ++i) {
        if (m_tokens[i].doubleQuoted) m_tokens[i].kind = on ? TokenKind::Identifier : TokenKind::String;
    }
}

const Token& TokenReader::peek(size_t offset) const {
    return m_tokens[std::min(m_at + offset, m_tokens.size() - 1)];
}

Token TokenReader::take() {
    Token token = peek();
    if (m_at + 1 < m_tokens.size()) ++m_at;
    return token;
}

bool TokenReader::acceptWord(const char* word) {
    if (!isWord(word)) return false;
    take();
    return true;
}

bool TokenReader::acceptSymbol(const char* symbol) {
    if (!isSymbol(symbol)) return false;
    take();
    return true;
}

void TokenReader::expectWord(const char* word) {
    if (!acceptWord(word)) failHere();
}

void TokenReader::expectSymbol(const char* symbol) {
    if (!acceptSymbol(symbol)) failHere();
}

bool TokenReader::isName(size_t offset) const {
    const Token& token = peek(offset);
    return token.kind == TokenKind::Identifier && (token.quoted || !isReservedWord(token.text));
}

QString TokenReader::expectName() {
    if (!isName()) failHere();
    return take().text;
}

int TokenReader::expectInteger() {
    bool valid = false;
    const int number = peek().kind == TokenKind::Number ? peek().text.toInt(&valid) : 0;
    if (!valid) failHere();
    take();
    return number;
}

void TokenReader::failHere() const {
    const bool end = atEnd() && m_at > 0;
    const Token& token = end ? m_tokens[m_at - 1] : peek();
    SqlMessage message{.number = 170, .severity = 15, .line = token.line, .text = {}};
    if (!end && token.kind == TokenKind::Identifier && !token.quoted && isReservedWord(token.text)) {
        message.number = 156;
        message.text = QStringLiteral("Incorrect syntax near the keyword '%1'.").arg(token.text);
    } else {
        message.text = QStringLiteral("Line %1: Incorrect syntax near '%2'.").arg(token.line).arg(token.text);
    }
    throw SqlError(message);
}

}  // namespace engine
