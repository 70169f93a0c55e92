#pragma once

#include "compare/comparisonprogress.h"
#include "compare/completeness.h"

#include <QStringList>

#include <functional>
#include <memory>

namespace controls {
class ListItems;
}

namespace tw {

class SchemaReader;

/// The kinds of objects that are compared besides tables and their columns.
struct ComparedKinds {
    bool indexes = false;
    bool constraints = false;
    bool foreignKeys = false;

    bool any() const { return indexes || constraints || foreignKeys; }
};

/// One of the two systems that are compared.
struct ComparedSystem {
    SchemaReader& connection;  ///< its connection object, with the database and the table (or "(All Tables)")
                               ///< set; the table is changed on the way
    controls::ListItems& results;  ///< receives headers and rows
    QString caption;               ///< for the progress window
};

/// Compares the schemas of two systems, item by item, into two lists. Runs once.
class Comparison {
  public:
    /// Icon numbers of result rows.
    enum Icon { Constraint = 1, Index = 2, ForeignKey = 3, Table = 4, Matched = 5, Unmatched = 6 };

    /// `yield` lets events be served, anything may be clicked in it; `cancelled` is asked after each yield
    /// and before each reading.
    /// The systems' models and connections and the progress must live until run() returns.
    Comparison(const ComparedSystem& system1, const ComparedSystem& system2, ComparedKinds kinds,
               ComparisonProgress& progress, std::function<void()> yield, std::function<bool()> cancelled);
    ~Comparison();
    Comparison(const Comparison&) = delete;
    Comparison& operator=(const Comparison&) = delete;

    /// Returns at the end or as soon as it sees the flag; rows added so far stay. Failing steps are passed
    /// over, but for a connection that cannot be opened or is lost: that cancels the comparison.
    Completeness run();
    /// What could not be read, in words: "System 1: Table: Bikes". A table of which no column is told counts.
    const QStringList& unread() const;

  private:
    class Run;
    std::unique_ptr<Run> m_run;
};

}  // namespace tw
