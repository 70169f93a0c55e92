#include "engine/catalog/sessionfacts.h"

#include "engine/values/sqlerror.h"

namespace engine {

std::optional<QString> userOfLogin(const Database& database, const QString& login) {
    if (nameKey(login) == QLatin1String("sa")) return QStringLiteral("dbo");
    const auto own = database.userOfLogin.find(nameKey(login));
    if (own != database.userOfLogin.end()) return *own;
    if (database.guest) return QStringLiteral("guest");
    return std::nullopt;
}

QString existingUser(const Database& database, const QString& login) {
    if (const auto user = userOfLogin(database, login)) return *user;
    throw SqlError(
        916, 14,
        QStringLiteral("Server user '%1' is not a valid user in database '%2'.").arg(login, database.name));
}

void failVariable(const QString& name) {
    throw SqlError(137, 15, QStringLiteral("Must declare the variable '%1'.").arg(name));
}

}  // namespace engine
