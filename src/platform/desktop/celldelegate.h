#pragma once

#include "platform/desktop/pictures.h"

#include <QStyledItemDelegate>

namespace desktop {

/// Paints the cells of lists: one line however long the text is, the item's picture in the first column, no
/// frame around a single cell of a selected row.
class CellDelegate : public QStyledItemDelegate {
    Q_OBJECT

  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void setPictures(Pictures pictures) { m_pictures = std::move(pictures); }
    void setBoldPictures(QList<int> numbers) { m_boldPictures = std::move(numbers); }

    QString displayText(const QVariant& value, const QLocale& locale) const override;
    /// A tooltip with the whole text where the cell cuts it.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

  private:
    Pictures m_pictures;
    QList<int> m_boldPictures;
};

}  // namespace desktop
