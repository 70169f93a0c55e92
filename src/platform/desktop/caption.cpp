#include "platform/desktop/caption.h"

#include "platform/desktop/childkeys.h"
#include "platform/showntext.h"

#include <QEvent>
#include <QMdiArea>
#include <QMdiSubWindow>

namespace desktop {

namespace {

/// Stands between a window's title and the frame's, which would take it as it is.
class Caption final : public QObject {
  public:
    Caption(QMdiSubWindow& frame, QWidget& window) : QObject(&frame), m_frame(frame), m_window(window) {
        m_window.installEventFilter(this);
        show();
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::WindowTitleChange) return QObject::eventFilter(watched, event);
        show();
        return true;
    }

  private:
    void show() {
        static constexpr qsizetype Most = 200;
        m_frame.setWindowTitle(platform::shownLine(m_window.windowTitle(), Most));
    }

    QMdiSubWindow& m_frame;
    QWidget& m_window;
};

}  // namespace

QMdiSubWindow* addCaptioned(QMdiArea& area, QWidget* window) {
    QMdiSubWindow* frame = area.addSubWindow(window);
    new Caption(*frame, *window);
    addChildKeys(*frame);
    return frame;
}

}  // namespace desktop
