#pragma once

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QWindow>

#include <deque>
#include <memory>

namespace desktop {

/// Keeps windows alive while the thread that owns them waits for the wire: they are painted and can be moved.
/// Keys and clicks wait, as they would for a program that stands still, so that nothing can be reached while
/// a routine is half-way; but Escape breaks off what is waited for. Wheels, touches and drags of that time
/// are lost.
///
/// In force from its making to its destruction.
class WaitingWindows : public QObject {
    Q_OBJECT

  public:
    explicit WaitingWindows(QObject* parent = nullptr);
    ~WaitingWindows() override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Held {
        QPointer<QWindow> window;
        std::unique_ptr<QEvent> event;
    };

    bool attend();
    bool holdKey(QObject* watched, QEvent& event);
    void hold(QObject* watched, const QEvent& event);
    void scheduleRelease();
    void release();

    std::deque<Held> m_held;
    bool m_serving = false;
    bool m_escaped = false;
    bool m_releaseScheduled = false;
};

}  // namespace desktop
