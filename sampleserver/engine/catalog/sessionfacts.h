#pragma once

#include "engine/catalog/world.h"
#include "engine/values/sqltype.h"

#include <QHash>
#include <QString>

#include <memory>
#include <optional>

namespace engine {

/// What statements may ask about the session that runs them.
struct SessionFacts {
    std::shared_ptr<const World> world;
    const Database* database = nullptr;
    QString login;
    QString user;  ///< of the login in `database`
    QString host;
    QString application;
    int spid = 0;
    qint64 rowCount = 0;  ///< @@ROWCOUNT
    int error = 0;        ///< @@ERROR
    int transactions = 0;
    qint64 textSize = 2147483647;
    bool readsScript = false;              ///< what it reads may be written for a later server
    int dateStyle = 0;                     ///< of SET DATEFORMAT, see dateFormatStyle()
    QHash<QString, TypedValue> variables;  ///< of the batch, @x by nameKey
};

/// The user a login has in a database: dbo for sa, its own, guest where guests may enter; nothing when
/// refused.
std::optional<QString> userOfLogin(const Database& database, const QString& login);

/// The same, but throws SqlError 916 when refused.
QString existingUser(const Database& database, const QString& login);

/// Throws SqlError 137.
[[noreturn]] void failVariable(const QString& name);

}  // namespace engine
