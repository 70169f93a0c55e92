#include "platform/ado/packedrows.h"

#include <utility>

namespace ado {

PackedRows::PackedRows(RowSource& rest, std::vector<Cell> row) {
    try {
        do
            m_pages.append(row);
        while (rest.next(row));
    } catch (const Error& error) {
        m_failure = error;
    }
}

bool PackedRows::next(std::vector<Cell>& row) {
    if (m_pages.take(row)) return true;
    if (m_failure) throw *std::exchange(m_failure, std::nullopt);
    return false;
}

}  // namespace ado
