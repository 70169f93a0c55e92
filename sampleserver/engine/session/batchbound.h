#pragma once

#include "engine/session/session.h"

namespace engine {

/// Keeps one batch within what it may take. Lives on the thread that runs the batch.
class BatchBound {
  public:
    explicit BatchBound(const QueryLimits& limits);

    /// True once the batch has taken more than it may. Asks the system, so not to be asked for every row.
    bool isExceeded();
    /// Throws SqlError 8649 (time) or 701 (memory) when isExceeded() has been true.
    void check() const;
    /// Counts time that the batch spent in WAITFOR.
    void addWaiting(qint64 milliseconds) { m_waited += milliseconds; }

  private:
    qint64 milliseconds() const;

    const QueryLimits& m_limits;
    const qint64 m_workAtStart;
    const qint64 m_bytesAtStart;
    qint64 m_waited = 0;
    bool m_tooLong = false;
    bool m_tooMuch = false;
};

}  // namespace engine
