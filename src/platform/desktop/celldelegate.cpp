#include "platform/desktop/celldelegate.h"

#include "platform/controls/listitems.h"
#include "platform/desktop/tooltip.h"
#include "platform/showntext.h"

#include <QAbstractItemView>
#include <QHelpEvent>

namespace desktop {

QString CellDelegate::displayText(const QVariant& value, const QLocale&) const {
    return platform::shownLine(value.toString());
}

void CellDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    option->state &= ~QStyle::State_HasFocus;
    if (!m_boldPictures.isEmpty()) {
        const int picture = index.siblingAtColumn(0).data(controls::ListItems::IconRole).toInt();
        option->font.setBold(m_boldPictures.contains(picture));
        option->fontMetrics = QFontMetrics(option->font);
    }
    if (index.column() != 0 || m_pictures.isEmpty()) return;
    option->icon = m_pictures.at(index.data(controls::ListItems::IconRole).toInt());
    // Items without a picture line up with those that have one.
    option->features |= QStyleOptionViewItem::HasDecoration;
}

bool CellDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                             const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip) return QStyledItemDelegate::helpEvent(event, view, option, index);
    QString text;
    if (index.isValid() && sizeHint(option, index).width() > view->visualRect(index).width()) {
        text = index.data().toString();
    }
    showToolTip(event->globalPos(), text, view);
    return true;
}

}  // namespace desktop
