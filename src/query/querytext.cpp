#include "query/querytext.h"

namespace tw::querytext {

namespace {

const QString AllColumns = QStringLiteral("SELECT *");
const QString Where = QStringLiteral("WHERE");

QString bracketed(const QString& name) {
    return u'[' + name + u']';
}

QString qualified(const QString& table, const QString& column) {
    return bracketed(table) + u'.' + bracketed(column);
}

bool beginsWith(const QString& text, const QString& keyword) {
    return text.left(keyword.size()).toUpper() == keyword;
}

}  // namespace

QString allColumns() {
    return AllColumns;
}

QString withColumn(const QString& columns, const QString& table, const QString& column) {
    const bool anew = columns.isEmpty() || columns == AllColumns;
    return (anew ? QStringLiteral("SELECT ") : columns + QStringLiteral(", ")) + qualified(table, column);
}

QString withTable(const QString& tables, const QString& table) {
    const QString name = bracketed(table);
    if (tables.isEmpty()) return QStringLiteral("FROM ") + name;
    return tables.contains(name) ? tables : tables + QStringLiteral(", ") + name;
}

QString withConditionColumn(const QString& conditions, const QString& table, const QString& column) {
    const QString before = conditions.isEmpty() ? Where + u' ' : conditions;
    return before + qualified(table, column);
}

QString withOperator(const QString& conditions, const QString& entry) {
    return conditions + u' ' + entry.left(entry.indexOf(u' ')) + u' ';
}

bool isSelect(const QString& columns) {
    return beginsWith(columns, QStringLiteral("SELECT"));
}

QString statement(const QString& columns, const QString& tables, const QString& conditions) {
    const bool lacksKeyword = !conditions.isEmpty() && !beginsWith(conditions, Where);
    return columns.trimmed() + u' ' + tables + u' ' + (lacksKeyword ? Where + u' ' : QString()) + conditions;
}

}  // namespace tw::querytext
