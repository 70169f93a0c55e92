#pragma once

#include "platform/ado/error.h"

namespace tw {

/// Ends the waiting for a server that has fallen silent, which would last a whole time-out per database. One
/// slow database is no sign of that, two in a row are.
class Patience {
  public:
    bool isOver() const { return m_timeOutsInARow >= 2; }
    /// `failure` is the number that reading one database ended with, 0 when it went well.
    void note(qint32 failure) {
        m_timeOutsInARow = failure == ado::numbers::TimeOut ? m_timeOutsInARow + 1 : 0;
    }

  private:
    int m_timeOutsInARow = 0;
};

}  // namespace tw
