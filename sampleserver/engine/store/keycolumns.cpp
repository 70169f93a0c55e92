#include "engine/store/keycolumns.h"

#include "engine/values/sqlerror.h"

#include <algorithm>

namespace engine {

namespace {

constexpr qsizetype maximumKeyColumns = 16;

bool canBeKey(TypeId type) {
    return type != TypeId::Text && type != TypeId::NText && type != TypeId::Image;
}

}  // namespace

int keyColumn(const Table& table, const QString& column, int errorNumber) {
    const int position = table.columnIndex(column);
    if (position < 0) {
        throw SqlError(errorNumber, 16,
                       QStringLiteral("Column name '%1' does not exist in the target table '%2'.")
                           .arg(column, table.name));
    }
    return position;
}

std::vector<int> indexColumns(const Table& table, const QStringList& columns) {
    if (columns.size() > maximumKeyColumns) {
        throw SqlError(
            1904, 16,
            QStringLiteral("Cannot specify more than %1 column names for index key list. %2 specified.")
                .arg(QString::number(maximumKeyColumns), QString::number(columns.size())));
    }
    std::vector<int> positions;
    for (const QString& column : columns) {
        const int position = keyColumn(table, column, 1911);
        if (std::find(positions.begin(), positions.end(), position) != positions.end()) {
            throw SqlError(
                1909, 16,
                QStringLiteral("Cannot use duplicate column names in index key list. Column name '%1' "
                               "listed more than once.")
                    .arg(column));
        }
        if (!canBeKey(table.columns[static_cast<size_t>(position)].type.id)) {
            throw SqlError(
                1919, 16,
                QStringLiteral("Column '%1' is of a type that is invalid for use as a key column in an "
                               "index or statistics.")
                    .arg(column));
        }
        positions.push_back(position);
    }
    return positions;
}

const Index* candidateKey(const Table& table, const std::vector<int>& columns) {
    for (const Index& index : table.indexes) {
        if (index.unique &&
            std::is_permutation(index.columns.begin(), index.columns.end(), columns.begin(), columns.end())) {
            return &index;
        }
    }
    return nullptr;
}

int nextIndexId(const Table& table, bool clustered) {
    if (clustered) return 1;
    int last = 1;
    for (const Index& index : table.indexes)
        last = std::max(last, index.indid);
    return last + 1;
}

const Index* clusteredIndex(const Table& table) {
    const auto found = std::find_if(table.indexes.begin(), table.indexes.end(),
                                    [](const Index& index) { return index.clustered; });
    return found == table.indexes.end() ? nullptr : &*found;
}

}  // namespace engine
