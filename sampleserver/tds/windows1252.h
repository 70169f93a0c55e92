#pragma once

#include <QByteArray>
#include <QString>

namespace tds {

/// Appends a text in Windows-1252, one byte for each UTF-16 unit; what the code page lacks becomes '?'.
void appendWindows1252(QByteArray& out, QStringView text);

}  // namespace tds
