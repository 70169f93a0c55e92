#include "platform/ado/rowpages.h"

#include <algorithm>
#include <cstring>

namespace ado {

namespace {

constexpr size_t PageBytes = 256 * 1024;

size_t packedSize(const Cell& cell) {
    const size_t bytes = static_cast<size_t>(std::max<qint64>(cell.size, 0));
    return sizeof cell.size + (bytes + 7) / 8 * 8;
}

}  // namespace

void RowPages::append(const std::vector<Cell>& row) {
    size_t size = 0;
    for (const Cell& cell : row)
        size += packedSize(cell);
    if (m_pages.empty() || m_pages.back().capacity() - m_pages.back().size() < size)
        m_pages.emplace_back().reserve(std::max(size, PageBytes));
    std::vector<std::byte>& page = m_pages.back();
    for (const Cell& cell : row) {
        const size_t start = page.size();
        page.resize(start + packedSize(cell));
        std::memcpy(page.data() + start, &cell.size, sizeof cell.size);
        if (cell.size > 0)
            std::memcpy(page.data() + start + sizeof cell.size, cell.data, static_cast<size_t>(cell.size));
    }
}

bool RowPages::take(std::vector<Cell>& row) {
    if (!m_pages.empty() && m_position == m_pages.front().size()) {
        m_pages.pop_front();
        m_position = 0;
    }
    if (m_pages.empty()) return false;
    for (Cell& cell : row) {
        const std::byte* start = m_pages.front().data() + m_position;
        std::memcpy(&cell.size, start, sizeof cell.size);
        cell.data = cell.size == Cell::Null ? nullptr : start + sizeof cell.size;
        m_position += packedSize(cell);
    }
    return true;
}

}  // namespace ado
