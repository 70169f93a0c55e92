#pragma once

#include "platform/desktop/pictures.h"

#include <QStyledItemDelegate>

namespace desktop {

/// Paints the cells of lists: one line however long the text is, the item's picture in the first column, and
/// markers set off from texts that read the same. A selection is paler while the view has not the focus.
class CellDelegate : public QStyledItemDelegate {
    Q_OBJECT

  public:
    /// What is marked where the focus is: the view does it, or this does it around the one cell.
    enum class FocusMark { OfView, AroundCell };

    explicit CellDelegate(QObject* parent = nullptr, FocusMark mark = FocusMark::OfView)
        : QStyledItemDelegate(parent), m_mark(mark) {}

    void setPictures(Pictures pictures) { m_pictures = std::move(pictures); }
    void setBoldPictures(QList<int> numbers) { m_boldPictures = std::move(numbers); }

    QString displayText(const QVariant& value, const QLocale& locale) const override;
    /// A tooltip with the whole text where the cell cuts it, and what the model has to say of the cell.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
    /// The number of the picture in a cell that has room for one; 0 leaves that room empty.
    virtual int pictureNumber(const QStyleOptionViewItem& option, const QModelIndex& index) const;

  private:
    FocusMark m_mark;
    Pictures m_pictures;
    QList<int> m_boldPictures;
};

/// Marks a rectangle of a view as the place of the focus.
void paintFocusMark(QPainter& painter, const QRect& rect, const QPalette& palette, bool selected);

}  // namespace desktop
