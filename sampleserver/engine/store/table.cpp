#include "engine/store/table.h"

namespace engine {

QString nameKey(const QString& name) {
    return name.toCaseFolded();
}

int Table::columnIndex(const QString& columnName) const {
    for (size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].name.compare(columnName, Qt::CaseInsensitive) == 0) return static_cast<int>(i);
    }
    return -1;
}

}  // namespace engine
