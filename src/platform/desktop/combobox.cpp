#include "platform/desktop/combobox.h"

#include "platform/showntext.h"

#include <QAbstractItemView>
#include <QScreen>
#include <QStyledItemDelegate>

#include <algorithm>

namespace desktop {

namespace {

class EntryDelegate final : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant& value, const QLocale&) const override {
        return platform::shownLine(value.toString());
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        static constexpr int Distance = 4;
        return QStyledItemDelegate::sizeHint(option, index).grownBy({0, 0, 0, Distance});
    }
};

}  // namespace

ComboBox::ComboBox(QWidget* parent) : QComboBox(parent) {
    // To fit the box to its entries, and for a list in the style of a menu, Qt measures every one of them
    // whole.
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setStyleSheet(QStringLiteral("combobox-popup: 0"));
    setItemDelegate(new EntryDelegate(this));
    view()->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

void ComboBox::showPopup() {
    static constexpr int LongestName = 128;
    int widest = 0;
    for (int entry = 0; entry < count(); ++entry) {
        const QString name = platform::shownLine(itemText(entry), LongestName);
        widest = std::max(widest, fontMetrics().horizontalAdvance(name));
    }
    const int beside = 2 * style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    const int room = screen()->availableGeometry().right() - mapToGlobal(QPoint()).x();
    view()->setMinimumWidth(std::clamp(room, 0, widest + beside));
    QComboBox::showPopup();
}

void ComboBox::initStyleOption(QStyleOptionComboBox* option) const {
    QComboBox::initStyleOption(option);
    option->currentText = platform::shownLine(option->currentText);
}

}  // namespace desktop
