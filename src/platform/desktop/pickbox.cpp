#include "platform/desktop/pickbox.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QWheelEvent>

namespace desktop {

void PickBox::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

void PickBox::keyPressEvent(QKeyEvent* event) {
    const QString typed = event->text();
    const bool types = !typed.isEmpty() && typed.front().isPrint() && event->key() != Qt::Key_Space &&
                       !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    switch (event->key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
        case Qt::Key_Home:
        case Qt::Key_End:
            showPopup();
            return;
        default:
            if (!types) return ComboBox::keyPressEvent(event);
            showPopup();
            view()->keyboardSearch(typed);
    }
}

}  // namespace desktop
