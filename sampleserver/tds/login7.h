#pragma once

#include "engine/values/clientsession.h"
#include "tds/tdsversion.h"

#include <QByteArray>

namespace tds {

/// What a client says of itself and asks for when it logs in.
struct Login7 {
    AgreedVersion version;
    int packetSize = 0;    ///< agreed, within what packets may have
    bool trusted = false;  ///< wants to come in as its operating system's user
    engine::LoginRequest request;
};

/// Reads a LOGIN7 (MS-TDS 2.2.6.4). Throws ProtocolError when a length or offset leaves the message.
Login7 parseLogin7(QByteArrayView message);

}  // namespace tds
