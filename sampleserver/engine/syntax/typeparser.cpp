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
    if (tokens.accept("double")) {
        tokens.expect("precision");
        return QStringLiteral("float");
    }
    const bool national = tokens.accept("national");
    QString name = tokens.name().toLower();
    if (name == QLatin1String("character")) name = QStringLiteral("char");
    const bool varies = tokens.accept("varying");
    return (national ? QStringLiteral("n") : QString()) + (varies ? QStringLiteral("var") : QString()) + name;
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
    const bool sized = (isText(id) || isBinary(id)) && !isLong(id) && id != TypeId::Timestamp;
    return !sized ? 0 : isNational(id) ? 4000 : 8000;
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
    const QString name = tokens.peek().text.toLower();
    return name == QLatin1String("national") || name == QLatin1String("double") || laterType(name, false) ||
           typeNamed(name);
}

SqlType parseType(TokenCursor& tokens, const QString& column, int defaultLength, bool* sysname) {
    const bool longest = tokens.isSymbol("(", 1) && tokens.is("max", 2);
    if (const auto later = laterType(tokens.peek().text, longest)) {
        tokens.take();
        if (tokens.isSymbol("(")) tokens.parenthesised();
        return *later;
    }
    const QString name = typeName(tokens);
    const Measures measures = parseMeasures(tokens);
    if (sysname != nullptr) *sysname = name == QLatin1String("sysname");
    const auto known = typeNamed(name);
    if (!known && column.isEmpty())
        throw SqlError(243, 16, QStringLiteral("Type %1 is not a defined system type.").arg(name));
    if (!known) {
        throw SqlError(
            2715, 16,
            QStringLiteral("Column or parameter '%1': Cannot find data type %2.").arg(column, name));
    }
    SqlType type = *known;
    checkMeasures(measures, type.id, name, column);
    if (isDecimal(type.id)) {
        type.precision = measures.count > 0 ? measures.first : 18;
        type.scale = std::max(0, measures.second);
    } else if (maximumLength(type.id) > 0 && type.length == 0) {
        type.length = measures.count > 0 ? measures.first : defaultLength;
    } else if (type.id == TypeId::Float && measures.count > 0 && measures.first <= 24) {
        type.id = TypeId::Real;
    }
    return type;
}

}  // namespace engine
