#pragma once

#include <QTimer>

namespace bench {

/// Waits until a window has been painted and nothing is left to do; says so on the standard output, together
/// with the peak of the program's memory in bytes, and ends the event loop.
class StartWatch : public QObject {
    Q_OBJECT

  public:
    /// Needs the application object.
    StartWatch();

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void look();

    QTimer m_look;  ///< fires whenever the event loop has been through its events
    int m_quietLooks = 0;
};

}  // namespace bench
