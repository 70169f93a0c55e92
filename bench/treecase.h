#pragma once

namespace bench {

/// Fills the tree of a server of `databases` databases with `tables` tables each, `runs` times in turn with
/// the bare loop over the same connections and rows, and prints the ratio and the bytes per node. Returns
/// false when the tree does not hold what the server has.
bool runTreeCase(int databases, int tables, int runs);

}  // namespace bench
