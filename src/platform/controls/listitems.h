#pragma once

#include <QAbstractTableModel>
#include <QStringList>

#include <memory>

namespace controls {

/// The rows behind a list view in report style: column headers; items of a text, sub-items and an icon
/// number.
///
/// Sized for a million rows: texts lie packed in pages, a row costs its texts and a few bytes. Rows are
/// announced to views in batches, when the event loop is next served or at notifyViews().
class ListItems : public QAbstractTableModel {
    Q_OBJECT

  public:
    /// Role of an item's icon number: an int, 0 for none. Views map it to pictures.
    static constexpr int IconRole = Qt::UserRole;

    explicit ListItems(QObject* parent = nullptr);
    ~ListItems() override;

    int headerCount() const;
    QString header(int column) const;
    void addHeader(const QString& text);
    void clearHeaders();

    /// Number of items.
    int count() const;
    /// Adds an item at the end, its sub-items empty; returns its index.
    int addItem(QStringView text, int icon = 0);
    /// Sets sub-item `column` (from 1) of an item. Setting the last item's sub-items from left to right is
    /// the cheap way.
    void setSubItem(int item, int column, QStringView text);
    QString text(int item) const;
    QString subItem(int item, int column) const;
    int icon(int item) const;
    void setIcon(int item, int icon);
    void clearItems();

    /// Announces the items added since the last time.
    void notifyViews();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    struct Store;
    std::unique_ptr<Store> m_store;
};

}  // namespace controls
