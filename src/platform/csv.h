#pragma once

#include <QStringList>

class QTextStream;

namespace platform {

/// Writes one record as RFC 4180 has it: fields between commas, in quotes where they hold a comma, a quote or
/// a line end, CR LF behind.
void writeCsvRecord(QTextStream& out, const QStringList& fields);

}  // namespace platform
