#pragma once

#include "engine/values/sqlerror.h"
#include "tds/tdsversion.h"

#include <QByteArray>
#include <QString>

#include <variant>

namespace tds {

/// The text of a SQL batch (MS-TDS 2.2.6.7). Throws ProtocolError.
QString parseBatch(QByteArrayView message, TdsVersion version);

/// What a remote procedure call comes to here: a statement to run, or the error that refuses it. Only
/// sp_executesql with a statement and nothing else is run. MS-TDS 2.2.6.6. Throws ProtocolError.
std::variant<QString, engine::SqlMessage> parseRpc(QByteArrayView message, TdsVersion version);

/// A transaction manager request (MS-TDS 2.2.6.9).
struct TransactionRequest {
    enum class Kind { Begin, Commit, Rollback, Save, Other };
    Kind kind = Kind::Other;
    bool beginsAnother = false;  ///< a commit or rollback that is followed by a new transaction
};

/// Throws ProtocolError.
TransactionRequest parseTransactionRequest(QByteArrayView message, TdsVersion version);

}  // namespace tds
