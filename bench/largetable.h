#pragma once

#include "barerows.h"
#include "support/sampleserverprocess.h"

#include <functional>
#include <optional>

namespace desktop {
class CellTable;
}

namespace bench {

/// A server with a generated table of many rows, and the bare loop over it.
class LargeTable {
  public:
    static constexpr const char* Database = "Large";
    static constexpr const char* Table = "Table0001";

    /// False when the server did not start, which has been told.
    bool start(qint64 rows, int columns);
    /// Without a database.
    QString connectionString() const { return m_connectionString; }
    BareRows readBare() const;

  private:
    testsupport::SampleServerProcess m_server;
    QString m_connectionString;
    BareEnvironment m_environment;
    std::optional<BareConnection> m_bare;
};

/// Prints what `fill` takes of memory beside the bytes of the texts that the bare loop made.
void printMemory(const BareRows& bare, const std::function<void()>& fill);
/// Prints how long a view takes to show the rows that `attach` gives it, to scroll and to copy them. Needs a
/// QApplication.
void printViewTimes(const QString& name, desktop::CellTable& view, const std::function<void()>& attach);

}  // namespace bench
