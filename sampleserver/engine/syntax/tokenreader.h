#pragma once

#include "engine/syntax/lexer.h"

#include <QString>

#include <vector>

namespace engine {

/// Walks over the tokens of a batch and names what is wrong with them.
class TokenReader {
  public:
    /// Without quoted identifiers a text in double quotes is a string.
    TokenReader(std::vector<Token> tokens, bool quotedIdentifiers);

    const Token& peek(size_t offset = 0) const;
    Token take();
    bool atEnd() const { return peek().kind == TokenKind::End; }

    bool isWord(const char* word, size_t offset = 0) const { return peek(offset).is(QLatin1String(word)); }
    bool isSymbol(const char* symbol, size_t offset = 0) const {
        return peek(offset).isSymbol(QLatin1String(symbol));
    }
    bool acceptWord(const char* word);
    bool acceptSymbol(const char* symbol);
    void expectWord(const char* word);
    void expectSymbol(const char* symbol);

    /// True for an identifier that is quoted or no reserved word.
    bool isName(size_t offset = 0) const;
    QString expectName();
    /// A whole number without a sign.
    int expectInteger();

    /// 156 at a reserved word, 170 elsewhere; at the end of the batch the token before it is named.
    [[noreturn]] void failHere() const;

    void setQuotedIdentifiers(bool on);

  private:
    std::vector<Token> m_tokens;
    size_t m_at = 0;
};

/// True for a reserved word of T-SQL.
bool isReservedWord(const QString& word);

}  // namespace engine
