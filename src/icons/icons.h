#pragma once

#include <QIcon>
#include <QString>

namespace tw {

/// One of the program's own drawings, named as its file is ("New", "server", "tablewright"). Drawn for a grid
/// of 24 pixels, readable at 16, on light and on dark grounds. There is one of every name that is asked for.
QIcon icon(const QString& name);

}  // namespace tw
