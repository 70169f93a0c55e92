#include "engine/session/batchbound.h"

#include <sqlite3.h>

#ifdef Q_OS_UNIX
#include <ctime>
#else
#include <chrono>
#endif

namespace engine {

namespace {

/// Time that this thread has worked, so that a client that reads slowly uses nothing up.
qint64 workedMilliseconds() {
#ifdef Q_OS_UNIX
    timespec worked{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &worked);
    return qint64(worked.tv_sec) * 1000 + worked.tv_nsec / 1'000'000;
#else
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
#endif
}

}  // namespace

BatchBound::BatchBound(const QueryLimits& limits)
    : m_limits(limits), m_workAtStart(workedMilliseconds()), m_bytesAtStart(sqlite3_memory_used()) {}

qint64 BatchBound::milliseconds() const {
    return workedMilliseconds() - m_workAtStart + m_waited;
}

bool BatchBound::isExceeded() {
    m_tooLong = milliseconds() > m_limits.milliseconds;
    // What the batches of other clients take counts as well: it is one server that may run short of memory.
    m_tooMuch = sqlite3_memory_used() - m_bytesAtStart > m_limits.bytes;
    return m_tooLong || m_tooMuch;
}

void BatchBound::check() const {
    if (m_tooMuch) throw insufficientMemory();
    if (!m_tooLong) return;
    throw SqlError(8649, 17,
                   QStringLiteral("The query has been canceled because the estimated cost of this query (%1) "
                                  "exceeds the configured threshold of %2. Contact the system administrator.")
                       .arg(milliseconds() / 1000)
                       .arg(m_limits.milliseconds / 1000));
}

}  // namespace engine
