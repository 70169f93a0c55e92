#pragma once

class QCoreApplication;

namespace desktop {

/// Lets Shift+F10 open the context menu of whatever has the focus, as the Menu key does, which many keyboards
/// lack.
void installMenuKey(QCoreApplication& application);

}  // namespace desktop
