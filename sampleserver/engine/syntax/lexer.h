#pragma once

#include <QString>

#include <vector>

namespace engine {

enum class TokenKind {
    Identifier,   ///< and keywords; text as written, brackets or double quotes removed; `quoted` tells
    Number,       ///< 12, 1.5, 1e3
    HexNumber,    ///< 0x800, text with its prefix
    MoneyNumber,  ///< $1.50, text without the sign
    String,       ///< 'it''s', text unescaped; `national` for N'..'
    Symbol,       ///< + - * / % ( ) , . ; = < > <= >= <> != !< !> & | ^ ~
    Variable,     ///< @x and @@x, text with its signs
    End
};

/// One token of a batch. Comments (-- and nested /* */) leave no token.
struct Token {
    TokenKind kind = TokenKind::End;
    QString text;
    bool quoted = false;        ///< written in brackets or double quotes
    bool doubleQuoted = false;  ///< written in double quotes
    bool national = false;
    int line = 1;         ///< counted from 1
    qsizetype begin = 0;  ///< offset of its first character in the batch
    qsizetype end = 0;    ///< offset behind its last character

    /// True for an unquoted identifier that equals `word` without regard to case.
    bool is(QLatin1String word) const;
    /// True for the symbol `symbol`.
    bool isSymbol(QLatin1String symbol) const;
};

/// Splits a batch into tokens, the last of kind End.
/// Throws SqlError 105 (unclosed quotation mark), 113 (missing end comment mark), 102 (anything else).
/// With `most`, 701 for more tokens than that.
std::vector<Token> tokenize(const QString& batch, size_t most = SIZE_MAX);

/// Splits a script at lines that hold nothing but GO; `line` of a batch is the line it begins on.
struct ScriptBatch {
    QString text;
    int firstLine = 1;
};
std::vector<ScriptBatch> splitBatches(const QString& script);

}  // namespace engine
