#pragma once

#include <QPointer>
#include <QWidget>

namespace desktop {

/// The hourglass over a window for the length of a scope; the window may go meanwhile.
class Hourglass {
  public:
    explicit Hourglass(QWidget& window) : m_window(&window) { window.setCursor(Qt::WaitCursor); }
    ~Hourglass() {
        if (m_window != nullptr) m_window->unsetCursor();
    }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;

  private:
    QPointer<QWidget> m_window;
};

}  // namespace desktop
