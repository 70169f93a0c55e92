#pragma once

#include "engine/syntax/lexer.h"
#include "engine/values/sqlerror.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace engine {

/// "db.owner.name"; what was left out is empty.
struct ObjectName {
    QString database;
    QString owner;
    QString name;
};

/// Walks over the tokens of a batch and names what is wrong with them: SqlError 156 at a reserved word, 170
/// elsewhere; at the end of the batch the token before it is named.
class TokenCursor {
  public:
    /// `firstLine`: the line that the batch begins on. Without quoted identifiers a text in double quotes is
    /// a string. Throws SqlError as tokenize() does.
    explicit TokenCursor(const QString& batch, int firstLine = 1, bool quotedIdentifiers = true);

    const Token& peek(size_t ahead = 0) const;
    Token take();
    bool atEnd() const { return peek().kind == TokenKind::End; }
    int line() const { return peek().line; }

    bool is(const char* word, size_t ahead = 0) const { return peek(ahead).is(QLatin1String(word)); }
    bool isSymbol(const char* symbol, size_t ahead = 0) const {
        return peek(ahead).isSymbol(QLatin1String(symbol));
    }
    /// True for an identifier that is quoted or no reserved word.
    bool isName(size_t ahead = 0) const;
    bool isVariable() const { return peek().kind == TokenKind::Variable; }
    bool accept(const char* word);
    bool acceptSymbol(const char* symbol);
    void expect(const char* word);
    void expectSymbol(const char* symbol);

    QString name();
    ObjectName objectName();
    /// "(a, b)"
    QStringList nameList();
    /// "(a ASC, b DESC)": an order is read over, since no catalog here tells it.
    QStringList keyList();
    /// A whole number with or without a sign.
    qint64 integer();
    /// "ON" or "OFF"
    bool onOrOff();
    /// Skips "( .. )" and gives its text with the parentheses.
    QString parenthesised();
    /// The batch's text from this token's beginning on, up to what has been taken.
    QString textSince(const Token& first) const;

    /// Where the next token stands, to come back to.
    size_t mark() const { return m_next; }
    void rewind(size_t mark) { m_next = mark; }
    /// True for a token that is the first of its line.
    bool startsLine() const { return m_next == 0 || m_tokens[m_next - 1].line < peek().line; }

    /// For the tokens that are still to come.
    void setQuotedIdentifiers(bool on);

    /// Refuses the token that comes next.
    [[noreturn]] void fail() const;

  private:
    QString m_batch;
    std::vector<Token> m_tokens;
    size_t m_next = 0;
};

}  // namespace engine
