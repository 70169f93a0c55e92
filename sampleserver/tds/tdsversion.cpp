#include "tds/tdsversion.h"

#include "tds/wirebytes.h"

namespace tds {

AgreedVersion agreeOnVersion(quint32 requested) {
    switch (requested >> 24) {
        case 0x70:
            return {TdsVersion::V70, 0x07000000};
        // The first release of 7.1 is answered in another spelling than its service pack.
        case 0x71:
            return {TdsVersion::V71, requested == 0x71000001 ? 0x71000001u : 0x07010000u};
        case 0x72:
            return {TdsVersion::V72, 0x72090002};
        case 0x73:
            return {TdsVersion::V73, requested == 0x730A0003 ? 0x730A0003u : 0x730B0003u};
        default:
            break;
    }
    if (requested < 0x70000000) throw ProtocolError("protocol version before 7.0");
    return {TdsVersion::V74, 0x74000004};
}

}  // namespace tds
