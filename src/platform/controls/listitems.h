#pragma once

#include "platform/controls/rowstore.h"

#include <QAbstractTableModel>
#include <QStringList>

#include <climits>

namespace controls {

/// The rows behind a list view in report style: column headers; items of a text, sub-items and an icon
/// number.
///
/// Sized for a million rows: texts lie packed in pages, a row costs its texts and a few bytes. Rows are
/// announced to views in batches, when the event loop is next served or at notifyViews(): count() and the
/// texts are always up to date, rowCount() says what was announced. An index of an item that is not there
/// throws RuntimeError 35600.
class ListItems : public QAbstractTableModel {
    Q_OBJECT

  public:
    /// Role of an item's icon number: an int, 0 for none. Views map it to pictures.
    static constexpr int IconRole = Qt::UserRole;

    explicit ListItems(QObject* parent = nullptr);

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

    /// Announces the items added and changed since the last time.
    void notifyViews();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    void checkItem(int item) const;
    void noteChange(int item);
    void scheduleNotice();

    QStringList m_headers;
    RowStore m_rows;
    int m_announced = 0;
    int m_firstChanged = INT_MAX;
    int m_lastChanged = -1;
    bool m_noticeScheduled = false;
};

}  // namespace controls
