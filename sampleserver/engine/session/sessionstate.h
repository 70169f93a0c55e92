#pragma once

#include "engine/catalog/sessionfacts.h"
#include "engine/session/session.h"
#include "engine/store/storeconnection.h"

#include <QHash>

namespace engine {

/// Options that a client sets and that stay until it sets them anew.
struct SessionOptions {
    qint64 rowLimit = 0;  ///< SET ROWCOUNT; 0 for all
    bool noCount = false;
    bool columnsOnly = false;  ///< SET FMTONLY
    bool quotedIdentifiers = true;
    bool implicitTransactions = false;
};

/// A statement that sp_prepare was given.
struct PreparedStatement {
    QString parameters;  ///< "@a int, @b nvarchar(10)"
    QString text;
};

/// What a session keeps from one batch to the next.
struct SessionState {
    SessionState();

    SessionFacts facts;
    SessionOptions options;
    StoreConnection store;
    QHash<qint64, PreparedStatement> prepared;  ///< by handle
    qint64 lastHandle = 0;
    QueryLimits limits;
};

}  // namespace engine
