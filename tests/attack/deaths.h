#pragma once

#include <QByteArray>

namespace attack {

/// How a process died.
struct Death {
    bool ours = false;  ///< in our own code, or with memory of ours
    QByteArray what;    ///< the complaint and the frame
};

/// To be called by a process that is to leave a trace of its stack on its standard error when it dies. The
/// address sanitizer, where it is built in, does that by itself.
void leaveTraces();

/// Tells from what a process left on its standard error in whose code it died: that of the innermost frame
/// which is neither the system's nor the sanitizer's.
Death deathFrom(const QByteArray& errors);

}  // namespace attack
