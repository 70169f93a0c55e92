#pragma once

#include <QStringList>

#include <vector>

namespace controls {
class ListItems;
}

namespace tw {

/// One line of a schema: a column, or a line of one of the other kinds.
struct ComparedItem {
    QStringList texts;  ///< what is compared
    QStringList shown;  ///< the texts of its result row
};
using ComparedItems = std::vector<ComparedItem>;

/// The columns of a table, from a list that FillLvTblDef filled.
ComparedItems columnsOf(const controls::ListItems& definitions);

/// The groups of a list that FillLvDBDetail filled; each ends at its first row without a key text. An index
/// stands under the table last named above it.
ComparedItems constraintsOf(const controls::ListItems& details);
ComparedItems indexesOf(const controls::ListItems& details);
ComparedItems foreignKeysOf(const controls::ListItems& details);

}  // namespace tw
