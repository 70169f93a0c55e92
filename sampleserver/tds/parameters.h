#pragma once

#include "engine/values/resultsink.h"
#include "tds/tdsversion.h"
#include "tds/wirebytes.h"

namespace tds {

/// Reads one parameter of a remote procedure call (MS-TDS 2.2.6.6): name, status, type and value. Types of
/// later servers become the nearest one there is: bigint decimal(19, 0), the dates datetime, and "max" the
/// long types. `number` counts from 1 for messages. Throws ProtocolError, and SqlError 8009 for a type that
/// is unknown.
engine::Parameter readParameter(WireReader& reader, int number, TdsVersion version);

}  // namespace tds
