#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <variant>
#include <vector>

namespace sampleserver {

/// The measures of a generated database that is large.
struct LargeDatabase {
    int tables = 0;
    int columns = 0;
    qint64 rows = 0;  ///< of each table
};

/// The measures of many small databases.
struct ManyDatabases {
    int databases = 0;
    int tables = 0;  ///< of each database
};

/// The measures of a generated database with many objects besides tables.
struct DetailsDatabase {
    int checks = 0;
    int indexRows = 0;  ///< columns of all indexes
    int foreignKeys = 0;
};

/// What the command line asks for.
struct Options {
    quint16 port = 1433;        ///< 0: any free one
    bool nextFreePort = false;  ///< try the ports that follow when it is taken
    bool sampleData = true;
    bool stayWithStdin = false;        ///< end when the standard input closes
    int idleMinutes = 30;              ///< until a client that is silent is let go
    int querySeconds = 300;            ///< of work for one batch
    int queryMegabytes = 512;          ///< of memory for one batch
    QStringList scripts;               ///< files, in order
    bool strict = false;               ///< refuse scripts with statements that would be passed over
    std::vector<LargeDatabase> large;  ///< two at most, named Large and Large2
    std::optional<ManyDatabases> many;
    std::optional<DetailsDatabase> details;  ///< named Details
};

/// Why a command line cannot be followed, or the help it asked for.
struct OptionsRefusal {
    QString text;
    bool help = false;
};

std::variant<Options, OptionsRefusal> parseOptions(const QStringList& arguments);

}  // namespace sampleserver
