#include "platform/desktop/celldelegate.h"

#include "platform/controls/listitems.h"
#include "platform/desktop/colours.h"
#include "platform/desktop/tooltip.h"
#include "platform/showntext.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>

namespace desktop {

QString CellDelegate::displayText(const QVariant& value, const QLocale&) const {
    return platform::shownLine(value.toString());
}

void CellDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    option->state &= ~QStyle::State_HasFocus;
    colours::paleWithoutFocus(option->palette);
    if (!m_boldPictures.isEmpty()) {
        const int picture = index.siblingAtColumn(0).data(controls::ListItems::IconRole).toInt();
        option->font.setBold(m_boldPictures.contains(picture));
        option->fontMetrics = QFontMetrics(option->font);
    }
    if (index.data(controls::MarkerRole).toBool()) {
        option->font.setItalic(true);
        option->fontMetrics = QFontMetrics(option->font);
        option->palette.setColor(QPalette::Text, colours::faintText(option->palette));
    }
    if (index.column() != 0 || m_pictures.isEmpty()) return;
    option->icon = m_pictures.at(pictureNumber(*option, index));
    // Items without a picture line up with those that have one.
    option->features |= QStyleOptionViewItem::HasDecoration;
}

int CellDelegate::pictureNumber(const QStyleOptionViewItem&, const QModelIndex& index) const {
    return index.data(controls::ListItems::IconRole).toInt();
}

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    QStyledItemDelegate::paint(painter, option, index);
    if (m_mark != FocusMark::AroundCell || !option.state.testFlag(QStyle::State_HasFocus)) return;
    paintFocusMark(*painter, option.rect, option.palette, option.state.testFlag(QStyle::State_Selected));
}

void paintFocusMark(QPainter& painter, const QRect& rect, const QPalette& palette, bool selected) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(
        QPen(palette.color(selected ? QPalette::HighlightedText : QPalette::Text), 1, Qt::DotLine));
    painter.drawRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5));
    painter.restore();
}

bool CellDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                             const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip) return QStyledItemDelegate::helpEvent(event, view, option, index);
    QStringList texts;
    if (index.isValid()) {
        const bool cut = sizeHint(option, index).width() > view->visualRect(index).width();
        texts = {cut ? index.data().toString() : QString(), index.data(Qt::ToolTipRole).toString()};
        texts.removeAll(QString());
    }
    showToolTip(event->globalPos(), texts.join(u'\n'), view);
    return true;
}

}  // namespace desktop
