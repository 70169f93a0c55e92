#pragma once

#include <QString>

#include <vector>

namespace sampledata {

/// A T-SQL script that is built into the program.
struct SampleScript {
    QString name;  ///< "02-workshop.sql"
    QString text;
};

/// The scripts that make the sample databases, in the order in which they must run.
std::vector<SampleScript> sampleScripts();

}  // namespace sampledata
