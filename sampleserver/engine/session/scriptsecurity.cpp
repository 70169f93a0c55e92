#include "engine/session/scriptsecurity.h"

#include "engine/catalog/securityids.h"
#include "engine/syntax/ddlparser.h"
#include "engine/values/sqlerror.h"

namespace engine {

namespace {

QString argument(const ScriptArguments& arguments, int position, const char* name) {
    const QString named = arguments.value(QLatin1String(name));
    return named.isEmpty() ? arguments.value(QString::number(position)) : named;
}

QString required(const ScriptArguments& arguments, int position, const char* name, const QString& procedure) {
    const QString value = argument(arguments, position, name);
    if (value.isEmpty()) {
        throw SqlError(201, 16,
                       QStringLiteral("Procedure '%1' expects parameter '%2', which was not supplied.")
                           .arg(procedure, QLatin1String(name)));
    }
    return value;
}

const Login& loginNamed(const World& world, const QString& name) {
    const Login* login = world.findLogin(name);
    if (login == nullptr)
        throw SqlError(15007, 16, QStringLiteral("The login '%1' does not exist.").arg(name));
    return *login;
}

void addUser(const World& world, Database& database, const QString& loginName, const QString& userName) {
    // The guest has no login: it is how a database is opened to everyone.
    if (nameKey(loginName) == QLatin1String("guest")) {
        if (database.guest)
            throw SqlError(15023, 16,
                           QStringLiteral("User or role 'guest' already exists in the current database."));
        database.guest = true;
        database.users.append(QStringLiteral("guest"));
        return;
    }
    const Login& login = loginNamed(world, loginName);
    const QString user = userName.isEmpty() ? login.name : userName;
    if (!database.findUser(user).isEmpty()) {
        throw SqlError(15023, 16,
                       QStringLiteral("User or role '%1' already exists in the current database.").arg(user));
    }
    if (database.userOfLogin.contains(nameKey(login.name))) {
        throw SqlError(15063, 16,
                       QStringLiteral("The login already has an account under a different user name."));
    }
    database.users.append(user);
    database.userOfLogin.insert(nameKey(login.name), user);
}

void addLogin(World& world, const ScriptArguments& arguments) {
    Login login;
    login.name = required(arguments, 1, "@loginame", QStringLiteral("sp_addlogin"));
    login.password = argument(arguments, 2, "@passwd");
    const QString database = argument(arguments, 3, "@defdb");
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

void addType(Database& database, const ScriptArguments& arguments, const QString& procedure) {
    const QString name = required(arguments, 1, "@typename", procedure);
    TokenCursor tokens(required(arguments, 2, "@phystype", procedure), 1);
    UserType type{.name = name, .type = parseType(tokens, name)};
    if (!tokens.atEnd()) throw tokens.unexpected();
    const QString nulls = argument(arguments, 3, "@nulltype").simplified();
    type.nullable = nulls.compare(QLatin1String("not null"), Qt::CaseInsensitive) != 0;
    for (const UserType& other : database.userTypes) {
        if (nameKey(other.name) == nameKey(name))
            throw SqlError(15180, 16, QStringLiteral("Cannot add type '%1': it exists already.").arg(name));
    }
    database.userTypes.push_back(type);
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

}  // namespace

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
            throw tokens.unexpected();
        }
        draft.select =
            draft.select || permission == QLatin1String("all") || permission == QLatin1String("select");
    } while (tokens.acceptSymbol(","));
    tokens.expect("on");
    draft.table = tokens.objectName();
    if (!revoke || !tokens.accept("from")) tokens.expect("to");
    do {
        draft.users.append(tokens.name());
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

ScriptArguments parseArguments(TokenCursor& tokens) {
    ScriptArguments arguments;
    int position = 0;
    const auto startsArgument = [&tokens] {
        const TokenKind kind = tokens.peek().kind;
        return kind == TokenKind::String || kind == TokenKind::Variable || kind == TokenKind::Identifier ||
               kind == TokenKind::Number;
    };
    if (!startsArgument() || tokens.is("exec") || tokens.is("execute")) return arguments;
    do {
        QString key = QString::number(++position);
        if (tokens.peek().kind == TokenKind::Variable) {
            key = tokens.take().text.toLower();
            tokens.expectSymbol("=");
        }
        if (!startsArgument() || tokens.peek().kind == TokenKind::Variable) throw tokens.unexpected();
        const bool null = tokens.is("null");
        const QString text = tokens.take().text;
        if (!null) arguments.insert(key, text);
    } while (tokens.acceptSymbol(","));
    return arguments;
}

bool isScriptProcedure(const QString& name) {
    static const QStringList known{QStringLiteral("sp_addlogin"),      QStringLiteral("sp_grantdbaccess"),
                                   QStringLiteral("sp_adduser"),       QStringLiteral("sp_addtype"),
                                   QStringLiteral("sp_addrole"),       QStringLiteral("sp_addrolemember"),
                                   QStringLiteral("sp_changedbowner"), QStringLiteral("sp_dboption")};
    return known.contains(name, Qt::CaseInsensitive);
}

void runScriptProcedure(World& world, Database& database, const QString& name,
                        const ScriptArguments& arguments) {
    const QString procedure = name.toLower();
    if (procedure == QLatin1String("sp_addlogin")) {
        addLogin(world, arguments);
    } else if (procedure == QLatin1String("sp_grantdbaccess") || procedure == QLatin1String("sp_adduser")) {
        addUser(world, database, required(arguments, 1, "@loginame", procedure),
                argument(arguments, 2, "@name_in_db"));
        const QString role =
            procedure == QLatin1String("sp_adduser") ? argument(arguments, 3, "@grpname") : QString();
        if (!role.isEmpty()) addRoleMember(database, role, database.users.last());
    } else if (procedure == QLatin1String("sp_addtype")) {
        addType(database, arguments, procedure);
    } else if (procedure == QLatin1String("sp_addrole")) {
        const QString role = required(arguments, 1, "@rolename", procedure);
        if (isRole(database, role) || !database.findUser(role).isEmpty()) {
            throw SqlError(
                15023, 16,
                QStringLiteral("User or role '%1' already exists in the current database.").arg(role));
        }
        database.roles.append(role);
    } else if (procedure == QLatin1String("sp_addrolemember")) {
        addRoleMember(database, required(arguments, 1, "@rolename", procedure),
                      required(arguments, 2, "@membername", procedure));
    } else if (procedure == QLatin1String("sp_changedbowner")) {
        const Login& owner = loginNamed(world, required(arguments, 1, "@loginame", procedure));
        database.userOfLogin.insert(nameKey(owner.name), QStringLiteral("dbo"));
    } else if (procedure != QLatin1String("sp_dboption")) {
        throw SqlError(2812, 16, QStringLiteral("Could not find stored procedure '%1'.").arg(name));
    }
}

}  // namespace engine
