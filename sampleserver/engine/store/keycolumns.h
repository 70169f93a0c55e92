#pragma once

#include "engine/store/table.h"

namespace engine {

/// The position of a column that a key, index or constraint names. Throws SqlError `errorNumber` when the
/// table has no such column.
int keyColumn(const Table& table, const QString& column, int errorNumber);

/// The positions of the columns of an index. Throws SqlError 1904 (more than sixteen), 1909 (twice),
/// 1911 (no such column), 1919 (of a type that cannot be a key).
std::vector<int> indexColumns(const Table& table, const QStringList& columns);

/// The index of a primary key or other unique index over exactly these columns, in any order; null when
/// there is none.
const Index* candidateKey(const Table& table, const std::vector<int>& columns);

/// The indid for one more index.
int nextIndexId(const Table& table, bool clustered);

/// The table's clustered index, or null.
const Index* clusteredIndex(const Table& table);

}  // namespace engine
