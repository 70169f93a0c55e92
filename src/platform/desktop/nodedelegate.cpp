#include "platform/desktop/nodedelegate.h"

#include "platform/controls/nodes.h"
#include "platform/showntext.h"

namespace desktop {

QString NodeDelegate::displayText(const QVariant& value, const QLocale&) const {
    return platform::shownLine(value.toString());
}

void NodeDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    const bool selected = option->state.testFlag(QStyle::State_Selected);
    if (m_hotTracking && option->state.testFlag(QStyle::State_MouseOver)) option->font.setUnderline(true);
    option->state &= ~QStyle::State_HasFocus;
    const int role = selected ? controls::Nodes::SelectedImageRole : controls::Nodes::ImageRole;
    option->icon = m_pictures.at(index.data(role).toInt());
    if (!option->icon.isNull()) option->features |= QStyleOptionViewItem::HasDecoration;
}

}  // namespace desktop
