#include "engine/syntax/lexer.h"

#include "engine/values/sqlerror.h"

#include <QRegularExpression>

#include <array>

namespace engine {

namespace {

bool startsName(QChar c) {
    return c.isLetter() || c == u'_' || c == u'#';
}

bool continuesName(QChar c) {
    return c.isLetterOrNumber() || c == u'_' || c == u'#' || c == u'@' || c == u'$';
}

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

bool isHexDigit(QChar c) {
    return isDigit(c) || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

class Lexer {
  public:
    Lexer(const QString& batch, size_t most) : m_batch(batch), m_most(most) {}

    std::vector<Token> run() {
        while (skipBlanks()) {
            m_token = Token{};
            m_token.begin = m_at;
            m_token.line = m_line;
            readToken();
            m_token.end = m_at;
            if (m_tokens.size() >= m_most) throw insufficientMemory();
            m_tokens.push_back(std::move(m_token));
        }
        Token end;
        end.line = m_line;
        end.begin = end.end = m_batch.size();
        m_tokens.push_back(std::move(end));
        return std::move(m_tokens);
    }

  private:
    QChar at(qsizetype offset = 0) const {
        return m_at + offset < m_batch.size() ? m_batch[m_at + offset] : QChar();
    }

    void step() {
        if (m_batch[m_at] == u'\n') ++m_line;
        ++m_at;
    }

    [[noreturn]] void fail(int number, const QString& text) const {
        throw SqlError(SqlMessage{.number = number, .severity = 15, .line = m_token.line, .text = text});
    }

    /// Skips blanks and comments; false at the end of the batch.
    bool skipBlanks() {
        while (m_at < m_batch.size()) {
            const QChar c = at();
            if (c.isSpace() || c == QChar(0xFEFF)) {
                step();
            } else if (c == u'-' && at(1) == u'-') {
                while (m_at < m_batch.size() && at() != u'\n')
                    ++m_at;
            } else if (c == u'/' && at(1) == u'*') {
                skipBlockComment();
            } else {
                return true;
            }
        }
        return false;
    }

    void skipBlockComment() {
        m_token.line = m_line;
        int depth = 0;
        do {
            if (m_at >= m_batch.size()) fail(113, QStringLiteral("Missing end comment mark '*/'."));
            if (at() == u'/' && at(1) == u'*') {
                ++depth;
                m_at += 2;
            } else if (at() == u'*' && at(1) == u'/') {
                --depth;
                m_at += 2;
            } else {
                step();
            }
        } while (depth > 0);
    }

    void readToken() {
        const QChar c = at();
        if (c == u'\'') return readString();
        if ((c == u'N' || c == u'n') && at(1) == u'\'') {
            ++m_at;
            m_token.national = true;
            return readString();
        }
        if (c == u'[' || c == u'"') return readQuotedName();
        if (c == u'@' || startsName(c)) return readName();
        if (c == u'$') return readMoney();
        if (isDigit(c) || (c == u'.' && isDigit(at(1)))) return readNumber();
        readSymbol();
    }

    /// Reads up to the closing mark; a doubled mark stands for itself.
    QString readEnclosed(QChar closing) {
        const qsizetype start = m_at;
        QString text;
        step();
        for (;;) {
            if (m_at >= m_batch.size()) failUnclosed(start);
            if (at() == closing) {
                ++m_at;
                if (at() != closing) return text;
            }
            text += at();
            step();
        }
    }

    [[noreturn]] void failUnclosed(qsizetype start) const {
        fail(105, QStringLiteral("Unclosed quotation mark before the character string '%1'.")
                      .arg(m_batch.mid(start + 1, 128)));
    }

    void readString() {
        m_token.kind = TokenKind::String;
        m_token.text = readEnclosed(u'\'');
    }

    void readQuotedName() {
        m_token.kind = TokenKind::Identifier;
        m_token.quoted = true;
        m_token.doubleQuoted = at() == u'"';
        m_token.text = readEnclosed(m_token.doubleQuoted ? u'"' : u']');
    }

    void readName() {
        m_token.kind = at() == u'@' ? TokenKind::Variable : TokenKind::Identifier;
        const qsizetype start = m_at++;
        while (continuesName(at()))
            ++m_at;
        m_token.text = m_batch.mid(start, m_at - start);
    }

    void readDigits() {
        while (isDigit(at()))
            ++m_at;
    }

    void readMoney() {
        m_token.kind = TokenKind::MoneyNumber;
        const qsizetype start = ++m_at;
        if (at() == u'-' || at() == u'+') ++m_at;
        readDigits();
        if (at() == u'.') ++m_at;
        readDigits();
        m_token.text = m_batch.mid(start, m_at - start);
    }

    void readNumber() {
        const qsizetype start = m_at;
        if (at() == u'0' && (at(1) == u'x' || at(1) == u'X')) {
            m_token.kind = TokenKind::HexNumber;
            m_at += 2;
            while (isHexDigit(at()))
                ++m_at;
        } else {
            m_token.kind = TokenKind::Number;
            readDigits();
            if (at() == u'.') ++m_at;
            readDigits();
            readExponent();
        }
        m_token.text = m_batch.mid(start, m_at - start);
    }

    void readExponent() {
        if (at() != u'e' && at() != u'E') return;
        const qsizetype sign = (at(1) == u'+' || at(1) == u'-') ? 1 : 0;
        if (!isDigit(at(1 + sign))) return;
        m_at += 1 + sign;
        readDigits();
    }

    void readSymbol() {
        static constexpr std::array pairs{u"<=", u">=", u"<>", u"!=", u"!<", u"!>"};
        m_token.kind = TokenKind::Symbol;
        m_token.text = at();
        for (const char16_t* pair : pairs) {
            if (at() == pair[0] && at(1) == pair[1]) m_token.text = QString::fromUtf16(pair);
        }
        if (m_token.text.size() == 1 && !QStringLiteral("+-*/%(),.;=<>&|^~").contains(at())) {
            fail(102, QStringLiteral("Line %1: Incorrect syntax near '%2'.").arg(m_line).arg(at()));
        }
        m_at += m_token.text.size();
    }

    const QString& m_batch;
    const size_t m_most;
    qsizetype m_at = 0;
    int m_line = 1;
    Token m_token;
    std::vector<Token> m_tokens;
};

}  // namespace

bool Token::is(QLatin1String word) const {
    return kind == TokenKind::Identifier && !quoted && text.compare(word, Qt::CaseInsensitive) == 0;
}

bool Token::isSymbol(QLatin1String symbol) const {
    return kind == TokenKind::Symbol && text == symbol;
}

std::vector<Token> tokenize(const QString& batch, size_t most) {
    return Lexer(batch, most).run();
}

std::vector<ScriptBatch> splitBatches(const QString& script) {
    static const QRegularExpression separator(QStringLiteral("^\\s*go(\\s+\\d+)?\\s*;?\\s*$"),
                                              QRegularExpression::CaseInsensitiveOption);
    std::vector<ScriptBatch> batches;
    ScriptBatch batch;
    int line = 1;
    const auto close = [&] {
        if (!batch.text.trimmed().isEmpty()) batches.push_back(batch);
        batch = ScriptBatch{.text = QString(), .firstLine = line + 1};
    };
    for (const QStringView text : QStringView(script).split(u'\n')) {
        if (separator.match(text).hasMatch()) {
            close();
        } else {
            batch.text += text;
            batch.text += u'\n';
        }
        ++line;
    }
    close();
    return batches;
}

}  // namespace engine
