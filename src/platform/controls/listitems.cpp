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
    endRemoveColumns();
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
    if (m_announced == 0) {
        m_rows.clear();
        return;
    }
    // Removing rows, unlike a reset, leaves the widths of the columns alone.
    beginRemoveRows({}, 0, m_announced - 1);
    m_rows.clear();
    m_announced = 0;
    endRemoveRows();
}

void ListItems::notifyViews() {
    m_noticeScheduled = false;
    if (m_firstChanged <= m_lastChanged && headerCount() > 0) {
        const QModelIndex first = index(m_firstChanged, 0);
        const QModelIndex last = index(m_lastChanged, headerCount() - 1);
        m_firstChanged = INT_MAX;
        m_lastChanged = -1;
        Q_EMIT dataChanged(first, last);
    }
    if (m_announced == count()) return;
    beginInsertRows({}, m_announced, count() - 1);
    m_announced = count();
    endInsertRows();
}

int ListItems::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_announced;
}

int ListItems::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : headerCount();
}

QVariant ListItems::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    if (role == Qt::DisplayRole) return m_rows.text(index.row(), index.column(), RowStore::ShownCharacters);
    if (role == IconRole && index.column() == 0) return m_rows.icon(index.row());
    return {};
}

QVariant ListItems::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= headerCount()) return {};
    if (role == Qt::DisplayRole) return platform::shownLine(m_headers.at(section));
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
