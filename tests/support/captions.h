#pragma once

#include <QGroupBox>
#include <QStringList>

namespace testsupport {

/// What a window says for good: its title, and the name and the text of every part that has one.
inline QStringList captionsOf(const QWidget& window) {
    QStringList captions{window.windowTitle()};
    for (const QWidget* part : window.findChildren<QWidget*>()) {
        const bool framed = qobject_cast<const QGroupBox*>(part) != nullptr;
        const QString text = part->property(framed ? "title" : "text").toString();
        if (!text.isEmpty()) captions += part->objectName() + QStringLiteral(": ") + text;
    }
    return captions;
}

}  // namespace testsupport
