#include "shell/numericentry.h"

#include "platform/conversions.h"
#include "platform/desktop/msgbox.h"

#include <QLineEdit>
#include <QPointer>

namespace tw {

std::optional<qint32> requireNumber(QLineEdit& entry) {
    const std::optional<qint32> number = platform::wholeNumber(entry.text());
    if (number) return number;

    const QPointer<QLineEdit> open(&entry);
    desktop::MsgBox(QStringLiteral("Please enter numeric data     "), desktop::MsgBoxIcon::Exclamation);
    if (open.isNull()) return std::nullopt;
    open->selectAll();
    open->setFocus();
    return std::nullopt;
}

}  // namespace tw
