#pragma once

#include <QWidget>

namespace desktop {

/// A handle between two panes. While it is dragged only a bar moves, kept 500 twips inside the window; the
/// panes are laid out anew when it is let go. With the focus, which shows, the arrow keys move it, and the
/// panes at once.
class SplitterHandle : public QWidget {
    Q_OBJECT

  public:
    /// `bar` is shown while dragging; `across` is the direction the handle moves in.
    SplitterHandle(Qt::Orientation across, QWidget& bar, QWidget* window);

    /// The bar's position along the direction it moves in, in twips.
    int barPosition() const;

  Q_SIGNALS:
    void released();

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void moveBar(int proposed);

    Qt::Orientation m_across;
    QWidget& m_bar;
    bool m_dragging = false;
};

}  // namespace desktop
