#pragma once

#include <QObject>
#include <QSize>

class QWidget;

namespace desktop {

/// Gives a window a size that counts its frame. How large the frame is shows only when the window does: until
/// then its inside has the whole size, and is made smaller as soon as the frame is known, unless somebody has
/// changed the size by then. A maximised or minimised window is corrected when it is neither any more.
class OuterSize : public QObject {
    Q_OBJECT

  public:
    /// Owned by the window.
    OuterSize(QWidget& window, const QSize& outer);

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void fit();

    QWidget& m_window;
    QSize m_outer;
};

}  // namespace desktop
