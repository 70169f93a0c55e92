#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

namespace tw {

/// What the frame's status bar tells of a window: how it stands, or for how long something has been running.
class WindowStatus : public QObject {
    Q_OBJECT

  public:
    WindowStatus();

    /// How the window stands, on one line.
    void setText(const QString& text);
    QString text() const;

    /// Something that runs in a window, for the length of a scope. The window may go meanwhile.
    class Running {
      public:
        explicit Running(WindowStatus& status);
        ~Running();
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;

      private:
        QPointer<WindowStatus> m_status;
    };

  Q_SIGNALS:
    /// The text is another one, each second while something runs and events are served.
    void changed();

  private:
    QString m_text;
    int m_running = 0;
    QElapsedTimer m_since;
    QTimer m_tick;
};

}  // namespace tw
