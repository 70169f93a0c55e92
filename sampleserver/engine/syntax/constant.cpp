#include "engine/syntax/constant.h"

#include "engine/syntax/ddlparser.h"
#include "engine/values/codepage.h"
#include "engine/values/convert.h"
#include "engine/values/typeinfo.h"

#include <QDateTime>
#include <QUuid>

namespace engine {

namespace {

Constant textConstant(const QString& text, bool national) {
    return {.value = national ? text : inCodePage(text),
            .type = {.id = national ? TypeId::NVarChar : TypeId::VarChar,
                     .length = std::max(1, static_cast<int>(text.size()))}};
}

Constant binaryConstant(const QByteArray& bytes) {
    return {.value = bytes,
            .type = {.id = TypeId::VarBinary, .length = std::max(1, static_cast<int>(bytes.size()))}};
}

bool isSpelledText(const Constant& constant) {
    return isText(constant.type.id) && std::holds_alternative<QString>(constant.value);
}

Constant number(TokenCursor& tokens, bool negative) {
    QString text = tokens.take().text;
    if (text.contains(QLatin1Char('e'), Qt::CaseInsensitive)) {
        const double value = text.toDouble();
        return {.value = negative ? -value : value, .type = {.id = TypeId::Float}};
    }
    const qsizetype point = text.indexOf(QLatin1Char('.'));
    bool whole = point < 0;
    const qint64 value = whole ? (negative ? QLatin1Char('-') + text : text).toLongLong(&whole) : 0;
    if (whole && value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max()) {
        return {.value = value, .type = {.id = TypeId::Int}};
    }
    if (point == 0) text.prepend(QLatin1Char('0'));
    if (text.endsWith(QLatin1Char('.'))) text.chop(1);
    const qsizetype digits = text.size() - (text.contains(QLatin1Char('.')) ? 1 : 0);
    const qsizetype scale =
        text.contains(QLatin1Char('.')) ? text.size() - text.indexOf(QLatin1Char('.')) - 1 : 0;
    return {
        .value = negative ? QLatin1Char('-') + text : text,
        .type = {
            .id = TypeId::Numeric, .precision = static_cast<int>(digits), .scale = static_cast<int>(scale)}};
}

Constant money(TokenCursor& tokens, bool negative) {
    const SqlType type{.id = TypeId::Money};
    const Constant spelled =
        textConstant((negative ? QLatin1String("-") : QLatin1String()) + tokens.take().text, false);
    return {.value = convertValue(spelled.value, spelled.type, type, false), .type = type};
}

Constant hexNumber(TokenCursor& tokens) {
    QString digits = tokens.take().text.mid(2);
    if (digits.size() % 2 != 0) digits.prepend(QLatin1Char('0'));
    return binaryConstant(QByteArray::fromHex(digits.toLatin1()));
}

Constant currentTime() {
    const QDateTime now = QDateTime::currentDateTime();
    const QDate day = now.date();
    const QTime time = now.time();
    return {.value = makeDateTime(day.year(), day.month(), day.day(), time.hour(), time.minute(),
                                  time.second(), time.msec() * 3 / 10),
            .type = {.id = TypeId::DateTime}};
}

Constant newId() {
    const SqlType type{.id = TypeId::UniqueIdentifier};
    const Constant spelled = textConstant(QUuid::createUuid().toString(QUuid::WithoutBraces), false);
    return {.value = convertValue(spelled.value, spelled.type, type, false), .type = type};
}

Constant replicate(TokenCursor& tokens) {
    constexpr qint64 longest = 10'000'000;
    const Constant piece = parseConstant(tokens);
    tokens.expectSymbol(",");
    const qint64 count = tokens.integer();
    if (count < 0 || count > longest) throw tokens.unexpected();
    if (isSpelledText(piece)) {
        return textConstant(std::get<QString>(piece.value).repeated(count), isNational(piece.type.id));
    }
    if (!std::holds_alternative<QByteArray>(piece.value)) throw tokens.unexpected();
    return binaryConstant(std::get<QByteArray>(piece.value).repeated(count));
}

Constant character(TokenCursor& tokens, bool national) {
    const qint64 code = tokens.integer();
    if (code < 0 || code > (national ? 0xffff : 0xff)) throw tokens.unexpected();
    return textConstant(QString(QChar(static_cast<char16_t>(code))), national);
}

Constant converted(const Constant& from, const SqlType& type) {
    return {.value = convertValue(from.value, from.type, type, false), .type = type};
}

Constant cast(TokenCursor& tokens) {
    const Constant from = parseConstant(tokens);
    tokens.expect("as");
    return converted(from, parseType(tokens, QStringLiteral("CAST")));
}

Constant convert(TokenCursor& tokens) {
    const SqlType type = parseType(tokens, QStringLiteral("CONVERT"));
    tokens.expectSymbol(",");
    return converted(parseConstant(tokens), type);
}

/// A function's name and "(" have been taken.
Constant function(TokenCursor& tokens, const QString& name) {
    if (name == QLatin1String("getdate")) return currentTime();
    if (name == QLatin1String("newid")) return newId();
    if (name == QLatin1String("user_name")) return textConstant(QStringLiteral("dbo"), true);
    if (name == QLatin1String("suser_sname")) return textConstant(QStringLiteral("sa"), true);
    if (name == QLatin1String("replicate")) return replicate(tokens);
    if (name == QLatin1String("char")) return character(tokens, false);
    if (name == QLatin1String("nchar")) return character(tokens, true);
    if (name == QLatin1String("cast")) return cast(tokens);
    if (name == QLatin1String("convert")) return convert(tokens);
    throw SqlError(195, 15, QStringLiteral("'%1' is not a recognized function name.").arg(name));
}

Constant named(TokenCursor& tokens) {
    if (tokens.accept("null")) return {.value = {}, .type = {.id = TypeId::Int}};
    if (tokens.accept("default")) return {.value = {}, .type = {}, .isDefault = true};
    if (tokens.accept("current_timestamp")) return currentTime();
    if (tokens.accept("user") || tokens.accept("current_user") || tokens.accept("session_user")) {
        return textConstant(QStringLiteral("dbo"), true);
    }
    if (tokens.accept("system_user")) return textConstant(QStringLiteral("sa"), true);
    const QString name = tokens.take().text;
    if (!tokens.acceptSymbol("(")) {
        throw SqlError(128, 15,
                       QStringLiteral("The name '%1' is illegal in this context. Only constants, constant "
                                      "expressions, or variables allowed here. Column names are illegal.")
                           .arg(name));
    }
    const Constant result = function(tokens, name.toLower());
    tokens.expectSymbol(")");
    return result;
}

Constant term(TokenCursor& tokens) {
    const bool negative = tokens.isSymbol("-");
    if (negative || tokens.isSymbol("+")) {
        tokens.take();
        if (tokens.peek().kind != TokenKind::Number && tokens.peek().kind != TokenKind::MoneyNumber) {
            throw tokens.unexpected();
        }
    }
    switch (tokens.peek().kind) {
        case TokenKind::Number:
            return number(tokens, negative);
        case TokenKind::MoneyNumber:
            return money(tokens, negative);
        case TokenKind::HexNumber:
            return hexNumber(tokens);
        case TokenKind::String: {
            const Token text = tokens.take();
            return textConstant(text.text, text.national);
        }
        case TokenKind::Identifier:
            return named(tokens);
        default:
            break;
    }
    tokens.expectSymbol("(");
    const Constant inner = parseConstant(tokens);
    tokens.expectSymbol(")");
    return inner;
}

}  // namespace

Constant parseConstant(TokenCursor& tokens) {
    const TokenCursor::Level level(tokens);
    Constant sum = term(tokens);
    while (tokens.isSymbol("+") && isSpelledText(sum)) {
        tokens.take();
        const Constant next = term(tokens);
        if (!isSpelledText(next)) throw tokens.unexpected();
        sum = textConstant(std::get<QString>(sum.value) + std::get<QString>(next.value),
                           isNational(sum.type.id) || isNational(next.type.id));
    }
    return sum;
}

Constant evaluateDefault(const QString& text) {
    TokenCursor tokens(text, 1);
    const Constant value = parseConstant(tokens);
    if (!tokens.atEnd() || value.isDefault) throw tokens.unexpected();
    return value;
}

}  // namespace engine
