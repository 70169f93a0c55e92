#pragma once

#include <QCursor>
#include <QGuiApplication>

namespace desktop {

/// The hourglass over the whole program for the length of a scope: also over controls that have a pointer of
/// their own. Message boxes show their own.
class Hourglass {
  public:
    Hourglass() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~Hourglass() { QGuiApplication::restoreOverrideCursor(); }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;
};

}  // namespace desktop
