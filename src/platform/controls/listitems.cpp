#include "platform/controls/listitems.h"

#include "platform/runtimeerror.h"
#include "platform/showntext.h"

#include <algorithm>

namespace controls {

ListItems::ListItems(QObject* parent) : QAbstractTableModel(parent) {}

int ListItems::headerCount() const {
    return static_cast<int>(m_headers.size());
}

QString ListItems::header(int column) const {
    return m_headers.value(column);
}

void ListItems::addHeader(const QString& text) {
    beginInsertColumns({}, headerCount(), headerCount());
    m_headers.append(text);
    endInsertColumns();
}

void ListItems::clearHeaders() {
    if (m_headers.isEmpty()) return;
    beginRemoveColumns({}, 0, headerCount() - 1);
    m_headers.clear();
    m_numeric.clear();
    endRemoveColumns();
}

void ListItems::setNumeric(int column) {
    const auto place = static_cast<size_t>(column);
    if (m_numeric.size() <= place) m_numeric.resize(place + 1);
    m_numeric[place] = true;
}

QVariant ListItems::alignment(int column) const {
    const auto place = static_cast<size_t>(column);
    if (place >= m_numeric.size() || !m_numeric[place]) return {};
    return int(Qt::AlignVCenter | Qt::AlignRight);
}

int ListItems::count() const {
    return m_rows.count();
}

int ListItems::addItem(QStringView text, int icon) {
    m_rows.addRow(text, icon);
    scheduleNotice();
    return count() - 1;
}

void ListItems::setSubItem(int item, int column, QStringView text) {
    checkItem(item);
    m_rows.setText(item, column, text);
    noteChange(item);
}

void ListItems::setMarker(int item, int column, QStringView text) {
    checkItem(item);
    m_rows.setMarker(item, column, text);
    noteChange(item);
}

QString ListItems::text(int item) const {
    return subItem(item, 0);
}

QString ListItems::subItem(int item, int column) const {
    checkItem(item);
    return m_rows.text(item, column);
}

int ListItems::icon(int item) const {
    checkItem(item);
    return m_rows.icon(item);
}

void ListItems::setIcon(int item, int icon) {
    checkItem(item);
    m_rows.setIcon(item, icon);
    noteChange(item);
}

void ListItems::clearItems() {
    m_firstChanged = INT_MAX;
    m_lastChanged = -1;
    const int rows = rowCount();
    // Removing rows, unlike a reset, leaves the widths of the columns alone.
    if (rows > 0) beginRemoveRows({}, 0, rows - 1);
    m_rows.clear();
    m_announced = 0;
    if (m_shown) m_shown->clear();
    if (rows > 0) endRemoveRows();
}

void ListItems::removeRowsFrom(int row) {
    const int last = rowCount() - 1;
    if (row > last) return;
    beginRemoveRows({}, row, last);
    if (!m_shown) m_shown.emplace();
    m_shown->resize(static_cast<size_t>(row));
    endRemoveRows();
}

void ListItems::showOnly(std::vector<int> items) {
    size_t same = 0;
    if (m_shown) {
        const auto ends = std::mismatch(m_shown->begin(), m_shown->end(), items.begin(), items.end());
        same = static_cast<size_t>(ends.second - items.begin());
    }
    removeRowsFrom(static_cast<int>(same));
    const bool more = items.size() > same;
    if (more) beginInsertRows({}, static_cast<int>(same), static_cast<int>(items.size()) - 1);
    m_shown = std::move(items);
    if (more) endInsertRows();
}

void ListItems::showAll() {
    if (!m_shown) return;
    removeRowsFrom(0);
    if (m_announced > 0) beginInsertRows({}, 0, m_announced - 1);
    m_shown.reset();
    if (m_announced > 0) endInsertRows();
}

int ListItems::rowOf(int item) const {
    if (!m_shown) return std::min(item, m_announced);
    return static_cast<int>(std::lower_bound(m_shown->begin(), m_shown->end(), item) - m_shown->begin());
}

void ListItems::notifyViews() {
    m_noticeScheduled = false;
    if (m_firstChanged <= m_lastChanged && headerCount() > 0 && rowCount() > 0) {
        const QModelIndex first = index(m_shown ? 0 : m_firstChanged, 0);
        const QModelIndex last = index(m_shown ? rowCount() - 1 : m_lastChanged, headerCount() - 1);
        m_firstChanged = INT_MAX;
        m_lastChanged = -1;
        Q_EMIT dataChanged(first, last);
    }
    if (m_announced == count()) return;
    if (m_shown) {
        m_announced = count();
        Q_EMIT itemsHeldBack();
        return;
    }
    beginInsertRows({}, m_announced, count() - 1);
    m_announced = count();
    endInsertRows();
}

int ListItems::rowCount(const QModelIndex& parent) const {
    if (parent.isValid()) return 0;
    return m_shown ? static_cast<int>(m_shown->size()) : m_announced;
}

int ListItems::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : headerCount();
}

QVariant ListItems::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const int item = itemOf(index.row());
    if (role == Qt::DisplayRole) return m_rows.text(item, index.column(), RowStore::ShownCharacters);
    if (role == Qt::EditRole) return m_rows.text(item, index.column());
    if (role == Qt::TextAlignmentRole) return alignment(index.column());
    if (role == MarkerRole) return m_rows.isMarker(item, index.column());
    if (role == IconRole && index.column() == 0) return m_rows.icon(item);
    if (!hasMarkWords()) return {};
    if (role == Qt::AccessibleTextRole && index.column() == 0) return accessibleText(item);
    const auto ofWord = index.column() == 0 ? Qt::ToolTipRole : Qt::AccessibleDescriptionRole;
    return role == ofWord ? markWord(item) : QVariant();
}

QVariant ListItems::accessibleText(int item) const {
    const QString word = markWord(item);
    if (word.isEmpty()) return {};
    return platform::shownLine(m_rows.text(item, 0, RowStore::ShownCharacters)) + QStringLiteral(", ") + word;
}

QVariant ListItems::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= headerCount()) return {};
    if (role == Qt::DisplayRole) return platform::shownLine(m_headers.at(section));
    if (role == Qt::TextAlignmentRole) return alignment(section);
    return role == Qt::EditRole ? m_headers.at(section) : QVariant();
}

void ListItems::checkItem(int item) const {
    if (item < 0 || item >= count()) {
        throw platform::RuntimeError(platform::errors::IndexOutOfBounds,
                                     QStringLiteral("Index out of bounds"));
    }
}

void ListItems::noteChange(int item) {
    if (item >= m_announced) return;
    m_firstChanged = std::min(m_firstChanged, item);
    m_lastChanged = std::max(m_lastChanged, item);
    scheduleNotice();
}

void ListItems::scheduleNotice() {
    if (m_noticeScheduled) return;
    m_noticeScheduled = true;
    QMetaObject::invokeMethod(this, &ListItems::notifyViews, Qt::QueuedConnection);
}

}  // namespace controls
