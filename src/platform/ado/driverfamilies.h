#pragma once

#include <QLatin1StringView>
#include <QString>

#include <array>
#include <vector>

namespace ado {

/// The name that connection strings and data sources give the driver. It is a role, which one of the
/// registered drivers plays.
inline constexpr QLatin1StringView sqlServerName{"SQL Server"};

/// A driver of the driver manager's registration.
struct RegisteredDriver {
    QString name;
    QString file;  ///< the file that it is in, with or without a path
};

/// What a family of drivers is called, and what it takes in a connection string.
struct DriverFamily {
    QLatin1StringView name;                      ///< as its drivers are registered; "%1" is a version
    std::array<QLatin1StringView, 5> libraries;  ///< what the names of its drivers' files begin with
    QLatin1StringView localHost;  ///< how it finds this machine; empty where it knows "(local)"
    QLatin1StringView port;       ///< for "Port=" where no port is named; empty where it takes "host,port"
    QLatin1StringView
        protocol;              ///< for "TDS_Version=" where none is named; empty where it knows no such item
    bool takesTicket = false;  ///< logs in as the machine's user only when "Trusted_Connection=" says so
    bool readsSources = true;  ///< takes all that may stand in a data source; else it is written out
};

/// The family that a driver belongs to, by its library, else by its name; null when it belongs to none.
const DriverFamily* familyOf(const RegisteredDriver& driver);

/// The family of the driver that is registered under a name, or that a path leads to.
const DriverFamily* familyCalled(const QString& name, const std::vector<RegisteredDriver>& drivers);

/// The driver that plays "SQL Server"; null when none can.
const RegisteredDriver* sqlServerDriver(const std::vector<RegisteredDriver>& drivers);

}  // namespace ado
