#pragma once

#include <QByteArray>
#include <QStringView>

namespace platform {

/// The text in the single-byte code page Windows-1252 (Unicode Consortium, MAPPINGS/VENDORS/MICSFT/WINDOWS/
/// CP1252.TXT). Each character outside it becomes one question mark, a surrogate pair one for both.
QByteArray toWindows1252(QStringView text);

}  // namespace platform
