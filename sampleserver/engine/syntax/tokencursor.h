#pragma once

#include "engine/syntax/lexer.h"
#include "engine/values/sqlerror.h"

#include <QString>

#include <vector>

namespace engine {

/// "db.owner.name"; what was left out is empty.
struct ObjectName {
    QString database;
    QString owner;
    QString name;
};

/// Walks the tokens of one batch of a script. What does not fit is refused with SqlError 102 (156 for a
/// keyword that stands where a name should), which names the line of the script.
class TokenCursor {
  public:
    /// `firstLine`: the line of the script that the batch begins on.
    TokenCursor(const QString& batch, int firstLine);

    const Token& peek(int ahead = 0) const;
    Token take();
    bool atEnd() const { return peek().kind == TokenKind::End; }
    int line() const { return peek().line; }

    bool is(const char* word, int ahead = 0) const { return peek(ahead).is(QLatin1String(word)); }
    bool isSymbol(const char* symbol) const { return peek().isSymbol(QLatin1String(symbol)); }
    bool accept(const char* word);
    bool acceptSymbol(const char* symbol);
    void expect(const char* word);
    void expectSymbol(const char* symbol);

    /// An identifier; a reserved word only in brackets or double quotes.
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

    /// All text from the next token on.
    QString rest() const { return m_batch.mid(peek().begin); }
    /// Goes on with the first token that begins `characters` or more behind the next one's beginning.
    void skip(qsizetype characters);
    /// Where the next token stands, to come back to.
    size_t mark() const { return m_next; }
    void rewind(size_t mark) { m_next = mark; }
    /// True for a token that is the first of its line.
    bool startsLine() const { return m_next == 0 || m_tokens[m_next - 1].line < peek().line; }

    /// Counts one level of nested syntax while it lives; refuses what would be nested too deeply.
    class Level {
      public:
        explicit Level(TokenCursor& tokens) : m_tokens(tokens) {
            if (++m_tokens.m_depth > maximumDepth) {
                --m_tokens.m_depth;
                throw m_tokens.unexpected();
            }
        }
        ~Level() { --m_tokens.m_depth; }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;

      private:
        static constexpr int maximumDepth = 100;
        TokenCursor& m_tokens;
    };

    /// The error for the token that comes next.
    SqlError unexpected() const;

  private:
    QString m_batch;
    std::vector<Token> m_tokens;
    size_t m_next = 0;
    int m_depth = 0;
};

}  // namespace engine
