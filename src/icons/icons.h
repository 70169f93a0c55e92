#pragma once

#include <QIcon>
#include <QString>

namespace tw {

/// One of the program's own drawings, named as its file is ("New", "server", "tablewright"). Drawn for a grid
/// of 24 pixels, readable at 16, on light and on dark grounds. An unknown name gives a null icon.
QIcon icon(const QString& name);

}  // namespace tw
