#pragma once

#include "platform/ado/error.h"

#include <vector>

namespace ado {

/// One diagnostic record of the driver or the driver manager.
struct DiagnosticRecord {
    QString sqlState;
    qint32 nativeError = 0;
    QString text;  ///< with the driver's bracketed prefixes
};

enum class Phase { Opening, Statement };

/// The failure that a call's records tell: the first entry of the table of numbers that matches one of them
/// decides, and that record's text is the description; where the driver only says that there is no
/// connection, the server's reason is.
Error errorFrom(const std::vector<DiagnosticRecord>& records, Phase phase);

/// True when a call that returned "success with information" has failed all the same: an error that comes
/// behind the first rows of a block arrives in this way.
bool tellsFailure(const DiagnosticRecord& record);

}  // namespace ado
