#include "platform/controls/comboitems.h"

#include "platform/runtimeerror.h"

namespace controls {

ComboItems::ComboItems(QObject* parent) : QAbstractListModel(parent) {}

int ComboItems::count() const {
    return static_cast<int>(m_entries.size());
}

void ComboItems::addItem(const QString& text) {
    beginInsertRows({}, count(), count());
    m_entries.push_back({text, 0});
    endInsertRows();
}

void ComboItems::prependItem(const QString& text) {
    beginInsertRows({}, 0, 0);
    m_entries.insert(m_entries.begin(), {text, 0});
    endInsertRows();
}

QString ComboItems::text(int index) const {
    return entry(index).text;
}

qint32 ComboItems::itemData(int index) const {
    return entry(index).number;
}

void ComboItems::setItemData(int index, qint32 number) {
    entry(index);
    m_entries[static_cast<size_t>(index)].number = number;
    Q_EMIT dataChanged(this->index(index), this->index(index), {Qt::UserRole});
}

void ComboItems::clear() {
    if (m_entries.empty()) return;
    beginRemoveRows({}, 0, count() - 1);
    m_entries.clear();
    endRemoveRows();
}

int ComboItems::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant ComboItems::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const Entry& wanted = entry(index.row());
    if (role == Qt::DisplayRole || role == Qt::EditRole) return wanted.text;
    if (role == Qt::UserRole) return wanted.number;
    return {};
}

const ComboItems::Entry& ComboItems::entry(int index) const {
    if (index < 0 || index >= count()) {
        throw platform::RuntimeError(platform::errors::InvalidPropertyArrayIndex,
                                     QStringLiteral("Invalid property array index"));
    }
    return m_entries[static_cast<size_t>(index)];
}

}  // namespace controls
