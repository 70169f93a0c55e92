#pragma once

#include "platform/desktop/celldelegate.h"

namespace desktop {

/// Paints the nodes of trees: text and picture, the text underlined under the mouse where that is wanted.
class NodeDelegate : public CellDelegate {
    Q_OBJECT

  public:
    explicit NodeDelegate(QObject* parent) : CellDelegate(parent, FocusMark::AroundCell) {}

    void setHotTracking(bool on) { m_hotTracking = on; }

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
    int pictureNumber(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

  private:
    bool m_hotTracking = false;
};

}  // namespace desktop
