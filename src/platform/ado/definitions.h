#pragma once

#include "platform/ado/driverfamilies.h"

#include <QStringList>

namespace ado {

/// The drivers that the driver manager knows, in its order.
std::vector<RegisteredDriver> registeredDrivers();

/// The names of the entries of a data source's definition (odbc.ini or the registry).
QStringList sourceEntries(const QString& source);
/// An entry of it; empty when there is none.
QString sourceDefinition(const QString& source, const QString& entry);

}  // namespace ado
