#pragma once

#include "engine/values/clientsession.h"
#include "tds/tdsversion.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace tds {

/// The text of a SQL batch (MS-TDS 2.2.6.7). Throws ProtocolError.
QString parseBatch(QByteArrayView message, TdsVersion version);

/// The remote procedure calls of a message (MS-TDS 2.2.6.6). Throws ProtocolError, and SqlError for a
/// parameter of a type that is unknown.
std::vector<engine::ProcedureRequest> parseRpc(QByteArrayView message, TdsVersion version);

/// A transaction manager request (MS-TDS 2.2.6.9).
struct TransactionRequest {
    enum class Kind { Begin, Commit, Rollback, Save, Other };
    Kind kind = Kind::Other;
    bool beginsAnother = false;  ///< a commit or rollback that is followed by a new transaction
};

/// Throws ProtocolError.
TransactionRequest parseTransactionRequest(QByteArrayView message, TdsVersion version);

}  // namespace tds
