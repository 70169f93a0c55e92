#pragma once

#include "platform/controls/rowstore.h"

#include <QAbstractTableModel>
#include <QStringList>

#include <climits>
#include <optional>
#include <vector>

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
    /// The column holds numbers, which stand to the right.
    void setNumeric(int column);

    /// Number of items.
    int count() const;
    /// Adds an item at the end, its sub-items empty; returns its index.
    int addItem(QStringView text, int icon = 0);
    /// Sets sub-item `column` (from 1) of an item. Setting the last item's sub-items from left to right is
    /// the cheap way.
    void setSubItem(int item, int column, QStringView text);
    /// Sets a text, in column 0 the item's own, that stands for what is no text: "<NULL>". Latin-1 only.
    void setMarker(int item, int column, QStringView text);
    QString text(int item) const;
    QString subItem(int item, int column) const;
    int icon(int item) const;
    void setIcon(int item, int icon);
    void clearItems();

    /// Says in words what the icon numbers mean, from 1; an empty text for one that needs none.
    void setMarkWords(QStringList words) { m_markWords = std::move(words); }
    bool hasMarkWords() const { return !m_markWords.isEmpty(); }
    /// The word for an item's mark, empty where it has none: the item's tool tip, the end of its accessible
    /// text, and the accessible description of its sub-items.
    QString markWord(int item) const { return m_markWords.value(icon(item) - 1); }

    /// Announces the items added and changed since the last time.
    void notifyViews();

    /// Lets views have these items only, as their rows, in ascending order; whatever is added or cleared
    /// later stays hidden or goes. Rows that stay at the front are not announced anew.
    void showOnly(std::vector<int> items);
    void showAll();
    bool showsAll() const { return !m_shown; }
    /// The item in a row that views have.
    int itemOf(int row) const { return m_shown ? (*m_shown)[static_cast<size_t>(row)] : row; }
    /// The row of an item, or of the first one behind it that is shown; rowCount() when there is none.
    int rowOf(int item) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    /// Qt::DisplayRole gives what can be shown of a text, Qt::EditRole the whole.
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  Q_SIGNALS:
    /// There are new items, none of which shows since only some items do.
    void itemsHeldBack();

  private:
    void checkItem(int item) const;
    QVariant accessibleText(int item) const;
    void removeRowsFrom(int row);
    QVariant alignment(int column) const;
    void noteChange(int item);
    void scheduleNotice();

    QStringList m_headers;
    std::vector<bool> m_numeric;  ///< by column; shorter when the rest is not
    QStringList m_markWords;
    RowStore m_rows;
    std::optional<std::vector<int>> m_shown;  ///< all when there is none
    int m_announced = 0;
    int m_firstChanged = INT_MAX;
    int m_lastChanged = -1;
    bool m_noticeScheduled = false;
};

}  // namespace controls
