#include "platform/desktop/doevents.h"

#include <QCoreApplication>
#include <QElapsedTimer>

namespace desktop {

void DoEvents() {
    static constexpr qint64 MillisecondsBetween = 15;
    thread_local QElapsedTimer sinceLast;

    if (sinceLast.isValid() && !sinceLast.hasExpired(MillisecondsBetween)) return;
    if (!QCoreApplication::instance()) return;
    sinceLast.start();
    QCoreApplication::processEvents();
    // What was clicked meanwhile may have yielded by itself; the pause counts from the end of serving.
    sinceLast.start();
}

}  // namespace desktop
