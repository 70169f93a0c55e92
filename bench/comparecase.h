#pragma once

namespace bench {

/// Compares two databases of `tables` tables with `columns` columns each over the wire, all kinds, `runs`
/// times in turn with the bare loop that fetches the same statements over one connection for each of the two,
/// and prints the ratio, the time for a table and the peak of memory. Returns false when the results are not
/// complete.
bool runCompareCase(int tables, int columns, int runs);

/// Compares two lists of `rows` details, and two tables of as many columns, without a server, and prints
/// what that takes.
void runEngineCase(int rows);

}  // namespace bench
