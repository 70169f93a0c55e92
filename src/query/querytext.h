#pragma once

#include <QString>

/// How the parts of a query grow while its names are picked, and what is sent in the end. Names are put into
/// brackets as they are, a bracket in them too.
namespace tw::querytext {

/// The select list with another column; the list of all columns is replaced.
QString withColumn(const QString& columns, const QString& table, const QString& column);
/// The select list of all columns.
QString allColumns();
/// The from clause with a table, which stands in it once.
QString withTable(const QString& tables, const QString& table);
/// The where clause with another column at its end.
QString withConditionColumn(const QString& conditions, const QString& table, const QString& column);
/// The where clause with the operator at its end that an entry of the operator list begins with.
QString withOperator(const QString& conditions, const QString& entry);

/// Whether a select list begins as one; what follows does not matter.
bool isSelect(const QString& columns);
/// The statement; conditions get the keyword that they lack.
QString statement(const QString& columns, const QString& tables, const QString& conditions);

}  // namespace tw::querytext
