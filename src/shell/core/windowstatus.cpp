#include "shell/core/windowstatus.h"

namespace tw {

WindowStatus::WindowStatus() {
    m_tick.setInterval(1000);
    connect(&m_tick, &QTimer::timeout, this, &WindowStatus::changed);
}

void WindowStatus::setText(const QString& text) {
    m_text = text;
    Q_EMIT changed();
}

QString WindowStatus::text() const {
    if (m_running == 0) return m_text;
    // Some work serves no events until it is done: what would stand still is left out.
    const qint64 seconds = m_since.elapsed() / 1000;
    return seconds == 0 ? QStringLiteral("Running") : QStringLiteral("Running, %1 s").arg(seconds);
}

WindowStatus::Running::Running(WindowStatus& status) : m_status(&status) {
    if (++status.m_running > 1) return;
    status.m_since.start();
    status.m_tick.start();
    Q_EMIT status.changed();
}

WindowStatus::Running::~Running() {
    if (m_status.isNull() || --m_status->m_running > 0) return;
    m_status->m_tick.stop();
    Q_EMIT m_status->changed();
}

}  // namespace tw
