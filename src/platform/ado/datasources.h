#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace ado {

/// A data source of the ODBC driver manager.
struct DataSource {
    QString name;
    QString driver;  ///< the driver's name; "SQL Server" for every driver that speaks to one
};

/// The data sources in the driver manager's order; one whose texts do not fit 1024 characters is cut and is
/// the last. Nothing at all when no ODBC environment can be had.
std::optional<std::vector<DataSource>> dataSources();

/// True when the data-access layer works and the driver manager knows a driver that plays "SQL Server".
bool driverPresent();

}  // namespace ado
