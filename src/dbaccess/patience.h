#pragma once

#include "platform/ado/error.h"

namespace tw {

/// Ends the waiting for a server that has fallen silent, which would last a whole time-out per database. One
/// slow database is no sign of that, two in a row are; nor does anybody go on waiting who has broken off one
/// attempt.
class Patience {
  public:
    bool isOver() const { return m_brokenOff || m_timeOutsInARow >= 2; }
    /// `failure` is the number that reading one database ended with, 0 when it went well.
    void note(qint32 failure) {
        m_brokenOff |= failure == ado::numbers::Cancelled;
        m_timeOutsInARow = failure == ado::numbers::TimeOut ? m_timeOutsInARow + 1 : 0;
    }

  private:
    bool m_brokenOff = false;
    int m_timeOutsInARow = 0;
};

}  // namespace tw
