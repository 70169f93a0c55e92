#pragma once

#include "platform/desktop/pictures.h"

#include <QStyledItemDelegate>

namespace desktop {

/// Paints the nodes of trees: text and picture, the text underlined under the mouse where that is wanted.
class NodeDelegate : public QStyledItemDelegate {
    Q_OBJECT

  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void setPictures(Pictures pictures) { m_pictures = std::move(pictures); }
    void setHotTracking(bool on) { m_hotTracking = on; }

    QString displayText(const QVariant& value, const QLocale& locale) const override;

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

  private:
    Pictures m_pictures;
    bool m_hotTracking = false;
};

}  // namespace desktop
