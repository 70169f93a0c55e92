#pragma once

#include <QFrame>

class QAbstractScrollArea;
class QLabel;
class QLineEdit;

namespace desktop {

/// The bar that asks for a text to be found; it lies over the foot of its view.
class FindBar : public QFrame {
    Q_OBJECT

  public:
    explicit FindBar(QAbstractScrollArea* view);

    QString text() const;
    /// Shows the bar, ready for another text to be typed.
    void open(const QString& text);
    /// Says how the search has gone; an empty text for what goes without saying.
    void tell(const QString& text);

  Q_SIGNALS:
    void findWanted(bool backward);
    void closeWanted();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void place();

    QAbstractScrollArea* m_view;
    QLineEdit* m_entry;
    QLabel* m_told;
};

}  // namespace desktop
