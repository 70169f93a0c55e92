#include "platform/desktop/nodedelegate.h"

#include "platform/controls/nodes.h"

namespace desktop {

void NodeDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    CellDelegate::initStyleOption(option, index);
    if (m_hotTracking && option->state.testFlag(QStyle::State_MouseOver)) option->font.setUnderline(true);
}

int NodeDelegate::pictureNumber(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    return index.data(selected ? controls::Nodes::SelectedImageRole : controls::Nodes::ImageRole).toInt();
}

}  // namespace desktop
