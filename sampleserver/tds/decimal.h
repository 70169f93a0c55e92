#pragma once

#include "tds/columnformat.h"

namespace tds {

/// Appends a decimal from its text ("-0.50"): length, sign (1 for plus), digits as a little-endian number.
/// False, with the bytes already appended to be dropped by the caller, for what is no number or is too large.
bool appendDecimal(QByteArray& out, QStringView text, const ColumnFormat& format);

}  // namespace tds
