#pragma once

#include <QFrame>
#include <QTimer>

namespace tw {

/// The splash window: shown beside the loading frame, over nothing that the user needs, gone at the first
/// tick of its timer. It takes neither the focus nor the mouse.
class frmFlash : public QFrame {
    Q_OBJECT

  public:
    explicit frmFlash(QWidget* parent);

  Q_SIGNALS:
    /// The window has closed by itself or by its user.
    void unloaded();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void Form_Load();
    void Timer1_Timer();

    QTimer m_timer1;
};

}  // namespace tw
