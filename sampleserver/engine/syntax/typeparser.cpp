#include "engine/syntax/ddlparser.h"
#include "engine/values/typeinfo.h"

#include <QHash>

namespace engine {

namespace {

struct Measures {
    int count = 0;
    int first = -1;
    int second = -1;
};

/// "national character varying" and its like are one type.
QString typeName(TokenCursor& tokens) {
    QString name = tokens.name().toLower();
    if (name == QLatin1String("national")) name = QLatin1Char('n') + tokens.name().toLower();
    static const QHash<QString, QString> synonyms{
        {QStringLiteral("character"), QStringLiteral("char")},
        {QStringLiteral("ncharacter"), QStringLiteral("nchar")},
        {QStringLiteral("dec"), QStringLiteral("decimal")},
        {QStringLiteral("integer"), QStringLiteral("int")},
    };
    name = synonyms.value(name, name);
    if (name == QLatin1String("double")) {
        tokens.expect("precision");
        return QStringLiteral("float");
    }
    if (!tokens.accept("varying")) return name;
    if (name == QLatin1String("nchar")) return QStringLiteral("nvarchar");
    if (name == QLatin1String("char") || name == QLatin1String("binary")) return QStringLiteral("var") + name;
    throw tokens.unexpected();
}

Measures parseMeasures(TokenCursor& tokens) {
    Measures measures;
    if (!tokens.acceptSymbol("(")) return measures;
    const int line = tokens.line();
    measures.first = static_cast<int>(std::min<qint64>(tokens.integer(), 1'000'000));
    measures.count = 1;
    if (tokens.acceptSymbol(",")) {
        measures.second = static_cast<int>(std::min<qint64>(tokens.integer(), 1'000'000));
        measures.count = 2;
    }
    tokens.expectSymbol(")");
    if (measures.first <= 0 || (measures.count == 2 && measures.second < 0)) {
        throw SqlError(1001, 15,
                       QStringLiteral("Line %1: Length or precision %2 is invalid.")
                           .arg(line)
                           .arg(measures.first <= 0 ? measures.first : measures.second));
    }
    return measures;
}

/// The longest declared length; 0 for a type that has none.
int maximumLength(TypeId id) {
    switch (id) {
        case TypeId::Char:
        case TypeId::VarChar:
        case TypeId::Binary:
        case TypeId::VarBinary:
            return 8000;
        case TypeId::NChar:
        case TypeId::NVarChar:
            return 4000;
        default:
            return 0;
    }
}

void checkDecimal(const Measures& measures, const QString& column) {
    constexpr int maximum = 38;
    const int precision = measures.first < 0 ? 18 : measures.first;
    if (precision > maximum) {
        throw SqlError(
            2750, 16,
            QStringLiteral("Column or parameter '%1': Specified column precision %2 is greater than "
                           "the maximum precision of %3.")
                .arg(column, QString::number(precision), QString::number(maximum)));
    }
    if (measures.second > precision) {
        throw SqlError(
            2751, 16,
            QStringLiteral("Column or parameter '%1': Specified column scale %2 is greater than the "
                           "specified precision of %3.")
                .arg(column, QString::number(measures.second), QString::number(precision)));
    }
}

void checkMeasures(const Measures& measures, TypeId id, const QString& name, const QString& column) {
    const int maximum = id == TypeId::Float || id == TypeId::Real ? 53 : maximumLength(id);
    const bool allowed = isDecimal(id) ? true
                         : name == QLatin1String("sysname") || name == QLatin1String("real")
                             ? measures.count == 0
                             : measures.count <= (maximum > 0 ? 1 : 0);
    if (!allowed) {
        throw SqlError(
            2716, 16,
            QStringLiteral("Column or parameter '%1': Cannot specify a column width on data type %2.")
                .arg(column, name));
    }
    if (maximum > 0 && measures.first > maximum) {
        throw SqlError(
            131, 15,
            QStringLiteral("The size (%1) given to the column '%2' exceeds the maximum allowed for "
                           "any data type (%3).")
                .arg(QString::number(measures.first), column, QString::number(maximum)));
    }
    if (isDecimal(id)) checkDecimal(measures, column);
}

}  // namespace

bool isTypeName(const TokenCursor& tokens) {
    static const QStringList spelled{QStringLiteral("national"), QStringLiteral("character"),
                                     QStringLiteral("dec"), QStringLiteral("integer"),
                                     QStringLiteral("double")};
    SqlType type;
    const QString& name = tokens.peek().text;
    return spelled.contains(name, Qt::CaseInsensitive) || laterType(name, false, &type) ||
           resolveType(name, -1, -1, -1, &type);
}

SqlType parseType(TokenCursor& tokens, const QString& column, bool* sysname) {
    const bool longest = tokens.peek(1).isSymbol(QLatin1String("(")) && tokens.is("max", 2);
    if (SqlType later; laterType(tokens.peek().text, longest, &later)) {
        if (sysname != nullptr) *sysname = false;
        tokens.take();
        if (tokens.isSymbol("(")) tokens.parenthesised();
        return later;
    }
    const QString name = typeName(tokens);
    const Measures measures = parseMeasures(tokens);
    if (sysname != nullptr) *sysname = name == QLatin1String("sysname");
    SqlType type;
    if (!resolveType(name, -1, -1, -1, &type)) {
        throw SqlError(
            2715, 16,
            QStringLiteral("Column or parameter '%1': Cannot find data type %2.").arg(column, name));
    }
    checkMeasures(measures, type.id, name, column);
    if (measures.count == 0) return type;
    if (isDecimal(type.id)) {
        type.precision = measures.first;
        type.scale = std::max(0, measures.second);
    } else if (maximumLength(type.id) > 0) {
        type.length = measures.first;
    } else if (measures.first <= 24) {
        resolveType(QStringLiteral("real"), -1, -1, -1, &type);
    }
    return type;
}

}  // namespace engine
