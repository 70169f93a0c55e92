#include "engine/catalog/securityids.h"

#include <QCryptographicHash>

namespace engine {

namespace {

constexpr int firstRoleId = 16384;

const QStringList& fixedRoles() {
    static const QStringList roles{QStringLiteral("db_owner"),
                                   QStringLiteral("db_accessadmin"),
                                   QStringLiteral("db_securityadmin"),
                                   QStringLiteral("db_ddladmin"),
                                   QString(),  // a number that the server left unused
                                   QStringLiteral("db_backupoperator"),
                                   QStringLiteral("db_datareader"),
                                   QStringLiteral("db_datawriter"),
                                   QStringLiteral("db_denydatareader"),
                                   QStringLiteral("db_denydatawriter")};
    return roles;
}

}  // namespace

const Login* loginOfUser(const World& world, const Database& database, const QString& user) {
    if (user == QLatin1String("dbo")) return world.findLogin(QStringLiteral("sa"));
    for (auto entry = database.userOfLogin.begin(); entry != database.userOfLogin.end(); ++entry) {
        if (nameKey(entry.value()) == nameKey(user)) return world.findLogin(entry.key());
    }
    return nullptr;
}

Value securityId(const Login* login) {
    if (login == nullptr) return {};
    if (login->name == QLatin1String("sa")) return QByteArray(1, '\x01');
    return QCryptographicHash::hash(nameKey(login->name).toUtf8(), QCryptographicHash::Md5);
}

QStringList roleNames(const Database& database) {
    QStringList names = fixedRoles() + database.roles;
    names.removeAll(QString());
    return names;
}

bool isRole(const Database& database, const QString& name) {
    return !name.isEmpty() && roleNames(database).contains(name, Qt::CaseInsensitive);
}

int roleId(const Database& database, const QString& role) {
    int id = firstRoleId;
    for (const QString& known : fixedRoles() + database.roles) {
        if (nameKey(known) == nameKey(role)) return id;
        ++id;
    }
    return -1;
}

}  // namespace engine
