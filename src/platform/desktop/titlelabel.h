#pragma once

#include <QLabel>
#include <QPointer>

namespace desktop {

/// A label of one line that ends in an ellipsis where its text does not fit, and shows the whole text as a
/// tool tip then.
class TitleLabel : public QLabel {
    Q_OBJECT

  public:
    TitleLabel(const QString& text, QWidget* parent);

    /// Makes the title the accessible name of a view, for which no label's buddy is.
    void setTitled(QWidget* view);
    /// Hides that of QLabel.
    void setText(const QString& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    /// The text as it is shown.
    QString shownText() const;

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QPointer<QWidget> m_titled;
};

}  // namespace desktop
