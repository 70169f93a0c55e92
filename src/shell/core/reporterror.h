#pragma once

#include <QString>

namespace tw {

/// Shows the failure that is being handled, so it is called in a catch clause. `procedureName` is the
/// caller's own name, `moduleName` that of its form or class; a non-empty `extraText` comes back with two
/// line breaks appended. Never throws.
void ReportError(const QString& procedureName, const QString& moduleName, QString& extraText);

}  // namespace tw
