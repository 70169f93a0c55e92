#pragma once

#include <QByteArray>

namespace attack {

/// How a process died.
struct Death {
    bool ours = false;  ///< in our own code, or with memory of ours
    QByteArray what;    ///< the complaint and the frame
};

/// Tells from what the sanitizers printed in whose code a process died: that of the innermost frame which is
/// neither the system's nor their own. Without a stack it counts as ours.
Death deathFrom(const QByteArray& printed);

}  // namespace attack
