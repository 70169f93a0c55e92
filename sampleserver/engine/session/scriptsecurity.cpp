#include "engine/session/scriptsecurity.h"

#include "engine/catalog/catalogprocedures.h"
#include "engine/catalog/securityids.h"
#include "engine/syntax/ddlparser.h"
#include "engine/values/sqlerror.h"

#include <algorithm>

namespace engine {

namespace {

const Login& loginNamed(const World& world, const QString& name) {
    const Login* login = world.findLogin(name);
    if (login == nullptr)
        throw SqlError(15007, 16, QStringLiteral("The login '%1' does not exist.").arg(name));
    return *login;
}

SqlError alreadyThere(const QString& user) {
    return SqlError(15023, 16,
                    QStringLiteral("User or role '%1' already exists in the current database.").arg(user));
}

QString addUser(const World& world, Database& database, const QString& loginName, const QString& userName) {
    // The guest has no login: it is how a database is opened to everyone.
    const bool guest = nameKey(loginName) == QLatin1String("guest");
    const QString login = guest ? QStringLiteral("guest") : loginNamed(world, loginName).name;
    const QString user = guest || userName.isEmpty() ? login : userName;
    if (!database.findUser(user).isEmpty()) throw alreadyThere(user);
    if (database.userOfLogin.contains(nameKey(login))) {
        throw SqlError(15063, 16,
                       QStringLiteral("The login already has an account under a different user name."));
    }
    database.users.append(user);
    if (guest)
        database.guest = true;
    else
        database.userOfLogin.insert(nameKey(login), user);
    return user;
}

void addLogin(World& world, Database&, const ProcedureArguments& arguments) {
    Login login;
    login.name = arguments.required("@loginame");
    login.password = arguments.text("@passwd").value_or(QString());
    const QString database = arguments.text("@defdb").value_or(QString());
    if (!database.isEmpty()) {
        if (world.findDatabase(database) == nullptr) {
            throw SqlError(
                15010, 16,
                QStringLiteral("The database '%1' does not exist. Use sp_helpdb to show available databases.")
                    .arg(database));
        }
        login.defaultDatabase = database;
    }
    world.addLogin(login);
}

void addType(World&, Database& database, const ProcedureArguments& arguments) {
    const QString name = arguments.required("@typename");
    TokenCursor tokens(arguments.required("@phystype"));
    UserType type{.name = name, .type = parseType(tokens, name)};
    if (!tokens.atEnd()) tokens.fail();
    const QString nulls = arguments.text("@nulltype").value_or(QString()).simplified();
    type.nullable = nulls.compare(QLatin1String("not null"), Qt::CaseInsensitive) != 0;
    addUserType(database, type);
}

void addRoleMember(Database& database, const QString& role, const QString& member) {
    if (!isRole(database, role)) {
        throw SqlError(15014, 16,
                       QStringLiteral("The role '%1' does not exist in the current database.").arg(role));
    }
    const QString user = database.findUser(member);
    if (user.isEmpty()) {
        throw SqlError(15410, 11,
                       QStringLiteral("User or role '%1' does not exist in this database.").arg(member));
    }
    database.roleMembers.push_back({.role = role, .user = user});
}

void grantAccess(World& world, Database& database, const ProcedureArguments& arguments) {
    addUser(world, database, arguments.required("@loginame"),
            arguments.text("@name_in_db").value_or(QString()));
}

void addUserToRole(World& world, Database& database, const ProcedureArguments& arguments) {
    const QString user = addUser(world, database, arguments.required("@loginame"),
                                 arguments.text("@name_in_db").value_or(QString()));
    if (const auto role = arguments.text("@grpname")) addRoleMember(database, *role, user);
}

void addRole(World&, Database& database, const ProcedureArguments& arguments) {
    const QString role = arguments.required("@rolename");
    if (isRole(database, role) || !database.findUser(role).isEmpty()) throw alreadyThere(role);
    database.roles.append(role);
}

void addMember(World&, Database& database, const ProcedureArguments& arguments) {
    addRoleMember(database, arguments.required("@rolename"), arguments.required("@membername"));
}

void changeOwner(World& world, Database& database, const ProcedureArguments& arguments) {
    const Login& owner = loginNamed(world, arguments.required("@loginame"));
    database.userOfLogin.insert(nameKey(owner.name), QStringLiteral("dbo"));
}

/// Options of a database change nothing that a client can see.
void setDatabaseOption(World&, Database&, const ProcedureArguments&) {}

struct ScriptProcedure {
    const char* name;
    std::vector<const char*> parameters;
    void (*run)(World&, Database&, const ProcedureArguments&);
};

const ScriptProcedure* findProcedure(const QString& name) {
    static const std::vector<ScriptProcedure> procedures{
        {"sp_addlogin", {"@loginame", "@passwd", "@defdb", "@deflanguage", "@sid", "@encryptopt"}, addLogin},
        {"sp_grantdbaccess", {"@loginame", "@name_in_db"}, grantAccess},
        {"sp_adduser", {"@loginame", "@name_in_db", "@grpname"}, addUserToRole},
        {"sp_addtype", {"@typename", "@phystype", "@nulltype", "@owner"}, addType},
        {"sp_addrole", {"@rolename", "@ownername"}, addRole},
        {"sp_addrolemember", {"@rolename", "@membername"}, addMember},
        {"sp_changedbowner", {"@loginame", "@map"}, changeOwner},
        {"sp_dboption", {"@dbname", "@optname", "@optvalue"}, setDatabaseOption},
    };
    const auto found = std::ranges::find_if(procedures, [&name](const ScriptProcedure& procedure) {
        return name.compare(QLatin1String(procedure.name), Qt::CaseInsensitive) == 0;
    });
    return found == procedures.end() ? nullptr : &*found;
}

}  // namespace

void addUserType(Database& database, const UserType& type) {
    for (const UserType& other : database.userTypes) {
        if (nameKey(other.name) != nameKey(type.name)) continue;
        if (other.type == type.type && other.nullable == type.nullable) return;
        throw SqlError(15180, 16, QStringLiteral("Cannot add type '%1': it exists already.").arg(type.name));
    }
    database.userTypes.push_back(type);
}

PermissionDraft parsePermission(TokenCursor& tokens) {
    PermissionDraft draft;
    draft.deny = tokens.is("deny");
    const bool revoke = tokens.is("revoke");
    tokens.take();
    do {
        const QString permission = tokens.take().text.toLower();
        if (permission == QLatin1String("all")) {
            tokens.accept("privileges");
        } else if (permission != QLatin1String("select") && permission != QLatin1String("insert") &&
                   permission != QLatin1String("update") && permission != QLatin1String("delete") &&
                   permission != QLatin1String("references")) {
            tokens.fail();
        }
        draft.select =
            draft.select || permission == QLatin1String("all") || permission == QLatin1String("select");
    } while (tokens.acceptSymbol(","));
    tokens.expect("on");
    draft.table = tokens.objectName();
    if (!revoke || !tokens.accept("from")) tokens.expect("to");
    do {
        draft.users.append(tokens.is("public") ? tokens.take().text : tokens.name());
    } while (tokens.acceptSymbol(","));
    return draft;
}

void applyPermission(const Database& database, Table& table, const PermissionDraft& draft) {
    for (const QString& name : draft.users) {
        const bool everybody = nameKey(name) == QLatin1String("public");
        const QString user = database.findUser(name);
        if (user.isEmpty() && (!everybody || draft.deny)) {
            throw SqlError(4604, 16, QStringLiteral("There is no such user or group '%1'.").arg(name));
        }
        if (!draft.select || everybody) continue;
        if (draft.deny) {
            if (!table.deniedUsers.contains(user)) table.deniedUsers.append(user);
        } else {
            table.deniedUsers.removeAll(user);
        }
    }
}

bool isScriptProcedure(const QString& name) {
    return findProcedure(name) != nullptr;
}

void runScriptProcedure(World& world, Database& database, const ProcedureRequest& call) {
    const ScriptProcedure* procedure = findProcedure(call.name);
    procedure->run(world, database, ProcedureArguments(call, procedure->parameters));
}

}  // namespace engine
