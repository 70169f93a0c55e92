#include "engine/catalog/securityids.h"
#include "engine/catalog/systemtables.h"

namespace engine {

namespace {

void appendUser(SystemRows& rows, const Database& database, int uid, const QString& name, const Value& sid,
                bool hasAccess, bool role) {
    const qint64 created = database.created;
    rows.append({uid, name, sid, created, created, role ? uid : 0, hasAccess ? 1 : 0, role ? 0 : 1,
                 role ? 0 : 1, role ? 1 : 0});
}

}  // namespace

void fillUsers(const World& world, const Database& database) {
    SystemRows users(database, "sysusers",
                     "uid name sid createdate updatedate gid hasdbaccess islogin issqluser issqlrole");
    appendUser(users, database, 0, QStringLiteral("public"), Value(), false, true);
    for (const QString& user : database.users) {
        appendUser(users, database, database.userId(user), user,
                   securityId(loginOfUser(world, database, user)), true, false);
    }
    if (!database.guest)
        appendUser(users, database, 2, QStringLiteral("guest"), QByteArray(1, '\0'), false, false);
    appendUser(users, database, 3, QStringLiteral("INFORMATION_SCHEMA"), Value(), false, false);
    for (const QString& role : roleNames(database)) {
        appendUser(users, database, roleId(database, role), role, Value(), false, true);
    }

    SystemRows members(database, "sysmembers");
    members.append({1, roleId(database, QStringLiteral("db_owner"))});
    for (const RoleMember& member : database.roleMembers) {
        members.append({database.userId(member.user), roleId(database, member.role)});
    }
}

void fillDatabases(const World& world, const Database& database) {
    SystemRows rows(database, "sysdatabases", "name dbid sid crdate cmptlevel version");
    constexpr int compatibilityLevel = 70;
    constexpr int storeVersion = 515;
    for (const auto& each : world.databases()) {
        rows.append({each->name, each->dbid, securityId(world.findLogin(QStringLiteral("sa"))), each->created,
                     compatibilityLevel, storeVersion});
    }
}

}  // namespace engine
