#include "platform/desktop/celldelegate.h"

#include "platform/controls/listitems.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QToolTip>

namespace desktop {

QString oneLine(QString text) {
    static constexpr qsizetype MostCharacters = 1000;
    text.truncate(MostCharacters);
    text.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    for (QChar& character : text) {
        const bool breaks = character == QChar::LineSeparator || character == QChar::ParagraphSeparator;
        if (breaks || character.category() == QChar::Other_Control) character = u' ';
    }
    return text;
}

QString CellDelegate::displayText(const QVariant& value, const QLocale&) const {
    return oneLine(value.toString());
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
    // Tooltips that look like markup are shown as such unless escaped.
    const QString shown =
        text.isEmpty() ? QString()
                       : QStringLiteral("<p style='white-space:pre-wrap'>%1</p>").arg(text.toHtmlEscaped());
    QToolTip::showText(event->globalPos(), shown, view);
    return true;
}

}  // namespace desktop
