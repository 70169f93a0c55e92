#pragma once

#include "engine/catalog/world.h"

namespace engine {

/// The login behind a database's user: sa for dbo, null for guest and for a user without one.
const Login* loginOfUser(const World& world, const Database& database, const QString& user);

/// A login's security number as sysusers and sp_helpuser give it: 0x01 for sa, sixteen bytes made from the
/// name for others, null for no login.
Value securityId(const Login* login);

/// The fixed database roles and then the database's own.
QStringList roleNames(const Database& database);
/// True for a name that roleNames() has, in any case.
bool isRole(const Database& database, const QString& name);
/// The role's number in sysusers.
int roleId(const Database& database, const QString& role);

}  // namespace engine
