#include "platform/controls/rowstore.h"

#include <algorithm>
#include <cstring>

namespace controls {
namespace {

using Bytes = std::vector<uchar>;

// The head of a null: no characters, of two bytes each. Texts without characters are written as Latin-1.
constexpr uchar NullHead = 1;

// Seven bits to a byte, the lowest first; the highest bit says that more follow.
void appendNumber(Bytes& bytes, quint64 number) {
    for (; number >= 0x80; number >>= 7) {
        bytes.push_back(static_cast<uchar>(number | 0x80));
    }
    bytes.push_back(static_cast<uchar>(number));
}

quint64 readNumber(const uchar*& at) {
    quint64 number = 0;
    int shift = 0;
    for (; *at & 0x80; ++at, shift += 7) {
        number |= quint64(*at & 0x7f) << shift;
    }
    return number | quint64(*at++) << shift;
}

bool isLatin1(QStringView text) {
    // Without a way out of the loop it is done many characters at a time.
    char16_t bits = 0;
    for (const QChar c : text)
        bits |= c.unicode();
    return bits < 0x100;
}

// The lowest bit of a text's length says that its characters take two bytes.
void writeText(Bytes& bytes, QStringView text, bool wide = false) {
    const auto length = static_cast<quint64>(text.size());
    const auto* characters = reinterpret_cast<const uchar*>(text.utf16());
    if (wide || !isLatin1(text)) {
        appendNumber(bytes, length << 1 | 1);
        bytes.insert(bytes.end(), characters, characters + text.size() * 2);
        return;
    }
    appendNumber(bytes, length << 1);
    const size_t start = bytes.size();
    bytes.resize(start + length);
    std::transform(text.begin(), text.end(), bytes.data() + start,
                   [](QChar c) { return static_cast<uchar>(c.unicode()); });
}

QString readText(const uchar* at, qsizetype most) {
    const quint64 head = readNumber(at);
    const qsizetype length = std::min(static_cast<qsizetype>(head >> 1), most);
    if (!(head & 1)) return QString::fromLatin1(reinterpret_cast<const char*>(at), length);
    QString text(length, Qt::Uninitialized);
    std::memcpy(text.data(), at, static_cast<size_t>(length) * 2);
    return text;
}

void skipText(const uchar*& at) {
    const quint64 head = readNumber(at);
    at += (head >> 1) << (head & 1);
}

// Small numbers of either sign take one byte.
quint64 foldSign(int number) {
    return (quint64(qint64(number)) << 1) ^ quint64(qint64(number) >> 63);
}

int unfoldSign(quint64 number) {
    return static_cast<int>(qint64(number >> 1) ^ -qint64(number & 1));
}

}  // namespace

void RowStore::addRow(QStringView text, int icon) {
    addRow(icon);
    appendText(text);
}

void RowStore::addRow(int icon) {
    if (m_pages.empty() || m_pages.back().rows == RowsPerPage) {
        if (!m_pages.empty()) m_pages.back().bytes.shrink_to_fit();
        m_pages.emplace_back();
    }
    Page& page = m_pages.back();
    page.starts[static_cast<size_t>(page.rows)] = page.bytes.size();
    ++page.rows;
    ++m_count;
    appendNumber(page.bytes, foldSign(icon));
    m_lastTexts = 0;
}

void RowStore::appendText(QStringView text) {
    writeText(m_pages.back().bytes, text);
    ++m_lastTexts;
}

void RowStore::appendNull() {
    m_pages.back().bytes.push_back(NullHead);
    ++m_lastTexts;
}

void RowStore::setText(int row, int column, QStringView text) {
    if (row == m_count - 1 && column >= m_lastTexts) {
        fillUpTo(column);
        return appendText(text);
    }
    Bytes bytes;
    writeText(bytes, text);
    replaceText(row, column, bytes);
}

void RowStore::setMarker(int row, int column, QStringView text) {
    Bytes bytes;
    writeText(bytes, text, true);
    if (row != m_count - 1 || column < m_lastTexts) return replaceText(row, column, bytes);
    fillUpTo(column);
    Bytes& page = m_pages.back().bytes;
    page.insert(page.end(), bytes.begin(), bytes.end());
    ++m_lastTexts;
}

/// Gives the last row empty texts up to a column that it does not have yet.
void RowStore::fillUpTo(int column) {
    Bytes& bytes = m_pages.back().bytes;
    bytes.insert(bytes.end(), static_cast<size_t>(column - m_lastTexts), 0);
    m_lastTexts = column;
}

void RowStore::replaceText(int row, int column, const Bytes& text) {
    const Place at = place(row);
    const uchar* from = rowBegin(at);
    const uchar* const end = rowEnd(at);
    readNumber(from);
    int passed = 0;
    for (; passed < column && from != end; ++passed) {
        skipText(from);
    }
    const uchar* to = from;
    if (to != end) skipText(to);
    Bytes bytes(static_cast<size_t>(column - passed), 0);
    bytes.insert(bytes.end(), text.begin(), text.end());
    replace(at, from, to, bytes);
}

RowStore::Walk::Walk(const RowStore& store, int row)
    : m_at(store.rowBegin(place(row))), m_end(store.rowEnd(place(row))) {
    readNumber(m_at);  // the icon's
}

void RowStore::Walk::moveTo(int column) {
    for (; m_column < column && m_at != m_end; ++m_column) {
        skipText(m_at);
    }
}

bool RowStore::Walk::isNull() const {
    return m_at != m_end && *m_at == NullHead;
}

bool RowStore::Walk::isMarker() const {
    return m_at != m_end && (*m_at & 1) && isLatin1(text());
}

QString RowStore::Walk::text(qsizetype most) const {
    return m_at == m_end ? QString() : readText(m_at, most);
}

QString RowStore::text(int row, int column, qsizetype most) const {
    Walk walk(*this, row);
    walk.moveTo(column);
    return walk.text(most);
}

bool RowStore::isNull(int row, int column) const {
    Walk walk(*this, row);
    walk.moveTo(column);
    return walk.isNull();
}

bool RowStore::isMarker(int row, int column) const {
    Walk walk(*this, row);
    walk.moveTo(column);
    return walk.isMarker();
}

int RowStore::icon(int row) const {
    const uchar* from = rowBegin(place(row));
    return unfoldSign(readNumber(from));
}

void RowStore::setIcon(int row, int icon) {
    const Place at = place(row);
    const uchar* const from = rowBegin(at);
    const uchar* to = from;
    readNumber(to);
    Bytes bytes;
    appendNumber(bytes, foldSign(icon));
    replace(at, from, to, bytes);
}

void RowStore::clear() {
    m_pages = {};
    m_count = 0;
}

const uchar* RowStore::rowBegin(Place place) const {
    const Page& page = m_pages[static_cast<size_t>(place.page)];
    return page.bytes.data() + page.starts[static_cast<size_t>(place.row)];
}

const uchar* RowStore::rowEnd(Place place) const {
    const Page& page = m_pages[static_cast<size_t>(place.page)];
    const bool isLast = place.row == page.rows - 1;
    return page.bytes.data() + (isLast ? page.bytes.size() : page.starts[static_cast<size_t>(place.row) + 1]);
}

void RowStore::replace(Place place, const uchar* from, const uchar* to, const Bytes& bytes) {
    Page& page = m_pages[static_cast<size_t>(place.page)];
    const auto begin = page.bytes.begin() + (from - page.bytes.data());
    const auto oldSize = static_cast<size_t>(to - from);
    if (oldSize == bytes.size()) {
        std::copy(bytes.begin(), bytes.end(), begin);
        return;
    }
    const auto behind = page.bytes.erase(begin, begin + static_cast<ptrdiff_t>(oldSize));
    page.bytes.insert(behind, bytes.begin(), bytes.end());
    for (int row = place.row + 1; row < page.rows; ++row) {
        size_t& start = page.starts[static_cast<size_t>(row)];
        start = start - oldSize + bytes.size();
    }
}

}  // namespace controls
