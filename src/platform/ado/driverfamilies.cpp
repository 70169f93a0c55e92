#include "platform/ado/driverfamilies.h"

#include <algorithm>
#include <optional>

namespace ado {

namespace {

using Text = QLatin1StringView;

#ifdef Q_OS_WIN
constexpr Text microsoftLocalHost;
#else
constexpr Text microsoftLocalHost{"localhost"};  // "(local)" is documented for Windows only
#endif

// A name is looked for in this order.
constexpr std::array families{
    // A driver that somebody registered under the name itself, and of which no more is known.
    DriverFamily{
        .name = sqlServerName,
        .libraries = {},
        .localHost = Text("127.0.0.1"),
        .port = {},
        .protocol = {},
    },
    // Microsoft's ODBC Driver for SQL Server and its forerunners ("DSN and connection string keywords and
    // attributes" at learn.microsoft.com). It takes "Server=host,port", and "Port" is none of its keywords;
    // encryption and certificates are left to its own words "Encrypt" and "TrustServerCertificate".
    DriverFamily{
        .name = Text("ODBC Driver %1 for SQL Server"),
        .libraries = {Text("libmsodbcsql"), Text("msodbcsql"), Text("libsqlncli"), Text("sqlncli"),
                      Text("sqlsrv32")},
        .localHost = microsoftLocalHost,
        .port = {},
        .protocol = {},
        .takesTicket = true,
    },
    // FreeTDS ("ODBC connection attributes" in the user guide at freetds.org). It looks for no default port
    // and would try one protocol version after the other, each for a whole time-out. Of "host,port" it makes
    // a server name with a NUL in it, and in a data source it reads neither a user nor a password, nor a
    // server beside it.
    DriverFamily{
        .name = Text("FreeTDS"),
        .libraries = {Text("libtdsodbc"), Text("tdsodbc")},
        .localHost = Text("127.0.0.1"),
        .port = Text("1433"),
        .protocol = Text("7.4"),
        .readsSources = false,
    },
};

/// The version in a registered name, 0 where the family's names have none; nothing for another name.
std::optional<int> versionIn(const QString& name, Text pattern) {
    const qsizetype hole = pattern.indexOf(Text("%1"));
    if (hole < 0) return name.compare(pattern, Qt::CaseInsensitive) == 0 ? std::optional(0) : std::nullopt;
    const Text before = pattern.first(hole);
    const Text behind = pattern.sliced(hole + 2);
    if (!name.startsWith(before, Qt::CaseInsensitive) || !name.endsWith(behind, Qt::CaseInsensitive) ||
        name.size() < before.size() + behind.size())
        return std::nullopt;
    bool isNumber = false;
    const int version = QStringView(name).sliced(hole).chopped(behind.size()).toInt(&isNumber);
    return isNumber ? std::optional(version) : std::nullopt;
}

bool hasLibrary(const DriverFamily& family, QStringView file) {
    return std::ranges::any_of(family.libraries, [&](Text start) {
        return !start.isEmpty() && file.startsWith(start, Qt::CaseInsensitive);
    });
}

}  // namespace

const DriverFamily* familyOf(const RegisteredDriver& driver) {
    const qsizetype slash = std::max(driver.file.lastIndexOf(u'/'), driver.file.lastIndexOf(u'\\'));
    const QStringView file = QStringView(driver.file).sliced(slash + 1);
    auto found = std::ranges::find_if(families, [&](const auto& family) { return hasLibrary(family, file); });
    if (found == families.end())
        found = std::ranges::find_if(
            families, [&](const auto& family) { return versionIn(driver.name, family.name).has_value(); });
    return found == families.end() ? nullptr : &*found;
}

const DriverFamily* familyCalled(const QString& name, const std::vector<RegisteredDriver>& drivers) {
    const auto registered = std::ranges::find_if(drivers, [&](const RegisteredDriver& driver) {
        return driver.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return familyOf(registered == drivers.end() ? RegisteredDriver{name, name} : *registered);
}

const RegisteredDriver* sqlServerDriver(const std::vector<RegisteredDriver>& drivers) {
    for (const DriverFamily& family : families) {
        const auto newest = std::ranges::max_element(
            drivers, {}, [&](const RegisteredDriver& driver) { return versionIn(driver.name, family.name); });
        if (newest != drivers.end() && versionIn(newest->name, family.name)) return &*newest;
    }
    const auto other = std::ranges::find_if(drivers, familyOf);
    return other == drivers.end() ? nullptr : &*other;
}

}  // namespace ado
