#pragma once

#include <QLabel>

namespace desktop {

/// A label of one line that ends in an ellipsis where its text does not fit, and shows the whole text as a
/// tool tip then.
class TitleLabel : public QLabel {
    Q_OBJECT

  public:
    TitleLabel(const QString& text, QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    /// The text as it is shown.
    QString shownText() const;

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace desktop
