#pragma once

#include <QString>

namespace ado {

/// An entry of a data source's definition (odbc.ini or the registry); empty when there is none.
QString sourceDefinition(const QString& source, const QString& entry);

}  // namespace ado
