#pragma once

#include "engine/catalog/world.h"
#include "engine/syntax/tokencursor.h"
#include "engine/values/clientsession.h"

namespace engine {

/// GRANT, DENY or REVOKE of permissions on one table.
struct PermissionDraft {
    bool deny = false;
    bool select = false;  ///< SELECT or ALL is among the permissions
    ObjectName table;
    QStringList users;
};

/// GRANT, DENY or REVOKE comes.
PermissionDraft parsePermission(TokenCursor& tokens);

/// Every user may read every table until denied; GRANT and REVOKE take a denial back.
/// Throws SqlError 4604 when there is no such user.
void applyPermission(const Database& database, Table& table, const PermissionDraft& draft);

/// Adds a type of a user's making. Throws SqlError 15180 when there is another one of its name.
void addUserType(Database& database, const UserType& type);

/// True for the procedures that runScriptProcedure() knows.
bool isScriptProcedure(const QString& name);

/// Runs sp_addlogin, sp_addtype, sp_grantdbaccess, sp_adduser, sp_addrole, sp_addrolemember, sp_changedbowner
/// or sp_dboption. Throws SqlError with the server's numbers for bad arguments.
void runScriptProcedure(World& world, Database& database, const ProcedureRequest& call);

}  // namespace engine
