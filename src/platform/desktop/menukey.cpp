#include "platform/desktop/menukey.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QWidget>

namespace desktop {

namespace {

class MenuKey final : public QObject {
  public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride) return false;
        const auto* key = static_cast<QKeyEvent*>(event);
        auto* widget = qobject_cast<QWidget*>(watched);
        if (key->key() != Qt::Key_F10 || key->modifiers() != Qt::ShiftModifier || widget == nullptr ||
            widget != QApplication::focusWidget())
            return false;
        event->accept();
        if (event->type() == QEvent::KeyPress) open(*widget);
        return true;
    }

  private:
    static void open(QWidget& widget) {
        const QPoint place = widget.inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
        QContextMenuEvent wanted(QContextMenuEvent::Keyboard, place, widget.mapToGlobal(place));
        QCoreApplication::sendEvent(&widget, &wanted);
    }
};

}  // namespace

void installMenuKey(QCoreApplication& application) {
    application.installEventFilter(new MenuKey(&application));
}

}  // namespace desktop
