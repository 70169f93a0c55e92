#pragma once

#include "compare/comparisonreport.h"

#include <QString>
#include <QStringList>

#include <array>
#include <variant>

namespace comparetool {

/// One of the two systems as the command line names it.
struct SystemOptions {
    QString connectionString;  ///< with the password
    QString server;            ///< or data source, to be shown
    QString database;
    QString table;  ///< or "(All Tables)"
};

/// What the command line asks for.
struct Options {
    std::array<SystemOptions, 2> systems;
    tw::ComparedKinds kinds;
    tw::ReportFormat format = tw::ReportFormat::Text;
    QString outputFile;  ///< empty for the standard output
    bool differencesOnly = false;
};

/// Why a command line cannot be followed, or the help it asked for.
struct OptionsRefusal {
    QString text;
    bool help = false;
};

/// Reads the passwords, too, from the files or from the standard input, as the command line says.
std::variant<Options, OptionsRefusal> parseOptions(const QStringList& arguments);

}  // namespace comparetool
