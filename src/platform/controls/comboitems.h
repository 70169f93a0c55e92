#pragma once

#include <QAbstractListModel>
#include <QStringList>

#include <vector>

namespace controls {

/// The entries behind a combo box: texts with a number each ("item data", 0 at first; Qt::UserRole).
/// An index that is not in the list throws RuntimeError 381.
class ComboItems : public QAbstractListModel {
    Q_OBJECT

  public:
    explicit ComboItems(QObject* parent = nullptr);

    using QAbstractListModel::itemData;
    using QAbstractListModel::setItemData;

    int count() const;
    void addItem(const QString& text);
    /// Puts an item before all others.
    void prependItem(const QString& text);
    QString text(int index) const;
    qint32 itemData(int index) const;
    void setItemData(int index, qint32 number);
    void clear();

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

  private:
    struct Entry {
        QString text;
        qint32 number = 0;
    };
    const Entry& entry(int index) const;

    std::vector<Entry> m_entries;
};

}  // namespace controls
