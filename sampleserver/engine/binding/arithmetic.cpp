#include "engine/binding/arithmetic.h"

#include "engine/binding/coercion.h"
#include "engine/store/storefunctions.h"
#include "engine/values/decimal.h"
#include "engine/values/sqlerror.h"
#include "engine/values/typeinfo.h"

namespace engine {

using ast::BinaryOp;
using ast::UnaryOp;

namespace {

QString operatorName(BinaryOp op) {
    static constexpr const char* names[] = {"add",    "subtract",    "multiply",   "divide",
                                            "modulo", "boolean AND", "boolean OR", "boolean XOR"};
    return QString::fromLatin1(names[static_cast<int>(op)]);
}

[[noreturn]] void failOperator(const QString& name, const SqlType& type) {
    throw SqlError(403, 16,
                   QStringLiteral("Invalid operator for data type. Operator equals %1, type equals %2.")
                       .arg(name, typeName(type.id)));
}

bool isBitOp(BinaryOp op) {
    return op == BinaryOp::BitAnd || op == BinaryOp::BitOr || op == BinaryOp::BitXor;
}

Bound concatenation(const Bound& a, const Bound& b) {
    if (isLong(a.type.id)) failOperator(operatorName(BinaryOp::Add), a.type);
    if (isLong(b.type.id)) failOperator(operatorName(BinaryOp::Add), b.type);
    if (isBinary(a.type.id)) {
        const SqlType type{.id = TypeId::VarBinary, .length = std::min(8000, a.type.length + b.type.length)};
        return boundWhole(callText("ts_joinbinary", {a.sql, b.sql}), type, {&a, &b});
    }
    const bool national = isNational(a.type.id) || isNational(b.type.id);
    const int most = national ? 4000 : 8000;
    const int length = a.type.length + b.type.length;
    const SqlType type{.id = national ? TypeId::NVarChar : TypeId::VarChar, .length = std::min(most, length)};
    QString sql = QStringLiteral("(%1 || %2)").arg(a.sql, b.sql);
    if (length > most) sql = callText("ts_left", {sql, QString::number(most)});
    return boundWhole(sql, type, {&a, &b});
}

Bound dateArithmetic(BinaryOp op, const Bound& left, const Bound& right, Emission& emission) {
    const bool small = left.type.id != TypeId::DateTime && right.type.id != TypeId::DateTime;
    if (op != BinaryOp::Add && op != BinaryOp::Subtract) {
        failOperator(operatorName(op), isDateTime(left.type.id) ? left.type : right.type);
    }
    const SqlType moment{.id = TypeId::DateTime};
    const Bound a = implicitly(left, moment, emission);
    const Bound b = implicitly(right, moment, emission);
    const char* symbol = op == BinaryOp::Add ? "%1 + %2" : "%1 - %2";
    const QString sql = callText("ts_datetime", {QString::fromLatin1(symbol).arg(a.sql, b.sql)});
    return boundWhole(sql, {.id = small ? TypeId::SmallDateTime : TypeId::DateTime}, {&a, &b});
}

SqlType decimalResult(BinaryOp op, const SqlType& a, const SqlType& b) {
    SqlType result{.id = TypeId::Numeric};
    constexpr int most = Decimal::maxPrecision;
    int least = 0;
    switch (op) {
        case BinaryOp::Multiply:
            result.precision = a.precision + b.precision + 1;
            result.scale = a.scale + b.scale;
            least = 6;
            break;
        case BinaryOp::Divide:
            result.scale = std::max(6, a.scale + b.precision + 1);
            result.precision = a.precision - a.scale + b.scale + result.scale;
            least = 6;
            break;
        default:
            result.scale = std::max(a.scale, b.scale);
            result.precision = std::max(a.precision - a.scale, b.precision - b.scale) + result.scale + 1;
            break;
    }
    if (result.precision > most) {
        // Digits behind the point give way to those before it, down to a few.
        const int whole = result.precision - result.scale;
        result.scale = std::max(std::min(result.scale, least), std::min(result.scale, most - whole));
        result.precision = most;
    }
    return result;
}

Bound asExactDecimal(const Bound& bound, Emission& emission) {
    return implicitly(bound, exactDecimal(bound), emission);
}

Bound decimalArithmetic(BinaryOp op, const Bound& left, const Bound& right, Emission& emission) {
    const Bound a = asExactDecimal(left, emission);
    const Bound b = asExactDecimal(right, emission);
    const SqlType type = decimalResult(op, a.type, b.type);
    const bool sum = op == BinaryOp::Add || op == BinaryOp::Subtract;
    if (isNarrowDecimal(type) && sum) {
        const Bound x = explicitly(a, type, 0, emission);
        const Bound y = explicitly(b, type, 0, emission);
        const char* form = op == BinaryOp::Add ? "(%1 + %2)" : "(%1 - %2)";
        return boundWhole(QString::fromLatin1(form).arg(x.sql, y.sql), type, {&a, &b});
    }
    if (isNarrowDecimal(type) && op == BinaryOp::Multiply) {
        return boundWhole(QStringLiteral("(%1 * %2)").arg(a.sql, b.sql), type, {&a, &b});
    }
    const int code = op == BinaryOp::Add        ? 0
                     : op == BinaryOp::Subtract ? 1
                     : op == BinaryOp::Multiply ? 2
                                                : 3;
    Bound result = boundWhole(decimalCall(code, a, b, type), type, {&a, &b});
    return result;
}

Bound moneyArithmetic(BinaryOp op, const Bound& left, const Bound& right, Emission& emission) {
    const SqlType type = commonType(left.type, right.type);
    const SqlType money{.id = TypeId::Money};
    const Bound a = implicitly(left, money, emission);
    const Bound b = implicitly(right, money, emission);
    QString sql;
    switch (op) {
        case BinaryOp::Add:
            sql = QStringLiteral("%1 + %2").arg(a.sql, b.sql);
            break;
        case BinaryOp::Subtract:
            sql = QStringLiteral("%1 - %2").arg(a.sql, b.sql);
            break;
        case BinaryOp::Multiply:
            sql = callText("ts_moneyproduct", {a.sql, b.sql});
            break;
        default:
            sql = callText("ts_moneyquotient", {a.sql, b.sql});
            break;
    }
    return boundWhole(checkedInteger(sql, type), type, {&a, &b});
}

Bound floatArithmetic(BinaryOp op, const Bound& left, const Bound& right, Emission& emission) {
    const SqlType wide{.id = TypeId::Float};
    const bool real = left.type.id != TypeId::Float && right.type.id != TypeId::Float;
    const Bound a = implicitly(left, wide, emission);
    const Bound b = implicitly(right, wide, emission);
    static constexpr const char* forms[] = {"%1 + %2", "%1 - %2", "%1 * %2"};
    const QString sql = op == BinaryOp::Divide
                            ? callText("ts_floatquotient", {a.sql, b.sql})
                            : QString::fromLatin1(forms[static_cast<int>(op)]).arg(a.sql, b.sql);
    return boundWhole(callText(real ? "ts_real" : "ts_float", {sql}),
                      {.id = real ? TypeId::Real : TypeId::Float}, {&a, &b});
}

Bound integerArithmetic(BinaryOp op, const Bound& left, const Bound& right, Emission& emission) {
    const SqlType type = commonType(left.type, right.type);
    if (type.id == TypeId::Bit && !isBitOp(op)) failOperator(operatorName(op), type);
    const Bound a = implicitly(left, type, emission);
    const Bound b = implicitly(right, type, emission);
    QString sql;
    switch (op) {
        case BinaryOp::Divide:
            sql = checkedInteger(callText("ts_quotient", {a.sql, b.sql}), type);
            break;
        case BinaryOp::Modulo:
            sql = callText("ts_remainder", {a.sql, b.sql});
            break;
        case BinaryOp::BitXor:
            sql = QStringLiteral("((%1 | %2) - (%1 & %2))").arg(a.sql, b.sql);
            break;
        case BinaryOp::BitAnd:
            sql = QStringLiteral("(%1 & %2)").arg(a.sql, b.sql);
            break;
        case BinaryOp::BitOr:
            sql = QStringLiteral("(%1 | %2)").arg(a.sql, b.sql);
            break;
        default: {
            static constexpr const char* forms[] = {"%1 + %2", "%1 - %2", "%1 * %2"};
            sql = checkedInteger(QString::fromLatin1(forms[static_cast<int>(op)]).arg(a.sql, b.sql), type);
            break;
        }
    }
    return boundWhole(sql, type, {&a, &b});
}

}  // namespace

QString decimalCall(int op, const Bound& a, const Bound& b, const SqlType& result) {
    return callText("ts_decimal", {QString::number(op), a.sql, QString::number(packType(a.type)), b.sql,
                                   QString::number(packType(b.type)), QString::number(packType(result))});
}

QString checkedInteger(const QString& sql, const SqlType& type) {
    switch (type.id) {
        case TypeId::TinyInt:
            return callText("ts_tinyint", {sql});
        case TypeId::SmallInt:
            return callText("ts_smallint", {sql});
        case TypeId::Money:
            return callText("ts_money", {sql});
        case TypeId::SmallMoney:
            return callText("ts_smallmoney", {sql});
        default:
            return callText("ts_int", {sql});
    }
}

Bound arithmetic(BinaryOp op, Bound a, Bound b, Emission& emission) {
    if (a.isNull || b.isNull) {
        Bound null = boundWhole(QStringLiteral("NULL"), a.isNull ? b.type : a.type, {&a, &b});
        null.isNull = a.isNull && b.isNull;
        null.nullable = true;
        return null;
    }
    const bool texts = isText(a.type.id) && isText(b.type.id);
    const bool binaries = isBinary(a.type.id) && isBinary(b.type.id);
    if (op == BinaryOp::Add && (texts || binaries)) return concatenation(a, b);
    const SqlType& higher = typeRank(a.type.id) >= typeRank(b.type.id) ? a.type : b.type;
    if (isDateTime(higher.id)) return dateArithmetic(op, a, b, emission);
    if (!isNumber(higher.id)) failOperator(operatorName(op), higher);
    if ((isBitOp(op) || op == BinaryOp::Modulo) && !isInteger(higher.id))
        failOperator(operatorName(op), higher);
    // A text or binary beside a number is read as a number of its type.
    const SqlType meeting = higher;
    if (!isNumber(a.type.id)) a = implicitly(a, meeting, emission);
    if (!isNumber(b.type.id)) b = implicitly(b, meeting, emission);
    if (isFloat(meeting.id)) return floatArithmetic(op, a, b, emission);
    if (isDecimal(meeting.id)) return decimalArithmetic(op, a, b, emission);
    if (isMoney(meeting.id)) return moneyArithmetic(op, a, b, emission);
    return integerArithmetic(op, a, b, emission);
}

Bound unaryArithmetic(UnaryOp op, const Bound& operand, Emission& emission) {
    if (op == UnaryOp::Plus || operand.isNull) return operand;
    SqlType type = operand.type;
    if (op == UnaryOp::BitNot) {
        if (!isInteger(type.id)) failOperator(QStringLiteral("boolean NOT"), type);
        const QString form = type.id == TypeId::TinyInt ? QStringLiteral("(255 - %1)")
                             : type.id == TypeId::Bit   ? QStringLiteral("(1 - %1)")
                                                        : QStringLiteral("(~%1)");
        return boundWhole(form.arg(operand.sql), type, {&operand});
    }
    if (!isNumber(type.id) || type.id == TypeId::Bit) failOperator(QStringLiteral("minus"), type);
    if (operand.literal && std::holds_alternative<qint64>(*operand.literal)) {
        Bound negative = boundConstant(-std::get<qint64>(*operand.literal), type, emission);
        negative.isWritten = operand.isWritten;
        return negative;
    }
    if (isDecimal(type.id)) {
        if (operand.literal && std::holds_alternative<QString>(*operand.literal)) {
            const auto number = Decimal::parse(std::get<QString>(*operand.literal)).value_or(Decimal());
            return boundConstant(number.negated().text(), type, emission);
        }
        const Bound zero = boundConstant(Decimal().rescaled(type.scale).text(), type, emission);
        if (!isNarrowDecimal(type)) return boundWhole(decimalCall(1, zero, operand, type), type, {&operand});
    }
    if (type.id == TypeId::TinyInt) type.id = TypeId::SmallInt;
    const QString negative = QStringLiteral("(-%1)").arg(operand.sql);
    const bool checked = isInteger(type.id) || isMoney(type.id);
    return boundWhole(checked ? checkedInteger(negative, type) : negative, type, {&operand});
}

}  // namespace engine
