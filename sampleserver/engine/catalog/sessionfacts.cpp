#include "engine/catalog/sessionfacts.h"

namespace engine {

std::optional<QString> userOfLogin(const Database& database, const QString& login) {
    if (nameKey(login) == QLatin1String("sa")) return QStringLiteral("dbo");
    const auto own = database.userOfLogin.find(nameKey(login));
    if (own != database.userOfLogin.end()) return *own;
    if (database.guest) return QStringLiteral("guest");
    return std::nullopt;
}

}  // namespace engine
