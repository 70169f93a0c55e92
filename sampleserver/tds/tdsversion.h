#pragma once

#include <QtGlobal>

namespace tds {

/// A version of the protocol that both sides agreed on.
enum class TdsVersion { V70, V71, V72, V73, V74 };

/// 7.1 brought collations.
constexpr bool hasCollations(TdsVersion version) {
    return version >= TdsVersion::V71;
}

/// 7.2 brought headers before a request, eight-byte row counts, four-byte line numbers and user types, and
/// table names in parts.
constexpr bool isWide(TdsVersion version) {
    return version >= TdsVersion::V72;
}

/// What LOGIN7 asks for and LOGINACK answers.
struct AgreedVersion {
    TdsVersion version = TdsVersion::V70;
    quint32 answer = 0;  ///< TDSVersion of LOGINACK, to be sent big-endian
};

/// Agrees with the TDSVersion of a LOGIN7 (MS-TDS 2.2.6.4 and 2.2.7.14): the client's own version, 7.4 for a
/// later one. Throws ProtocolError for one before 7.0.
AgreedVersion agreeOnVersion(quint32 requested);

}  // namespace tds
