#pragma once

#include <QScrollArea>

namespace desktop {

/// A page of controls that scrolls where it does not fit. It wants what its content wants, as long as a
/// window around it still fits on the screen, and keeps the control with the focus in view.
class ScrollPage : public QScrollArea {
    Q_OBJECT

  public:
    /// Takes the content, which is laid out already, as its child.
    explicit ScrollPage(QWidget* content, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
};

/// The room that a window's inside may take on the screen that `widget` is on.
QSize roomOnScreen(const QWidget& widget);

}  // namespace desktop
