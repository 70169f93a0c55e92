#pragma once

#include "engine/store/table.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

struct sqlite3;

namespace engine {

/// A member of a database role.
struct RoleMember {
    QString role;
    QString user;
};

/// A type of a user's making.
struct UserType {
    QString name;
    SqlType type;
    bool nullable = true;
};

/// One database: its tables by owner and name, and the SQLite store of its rows.
///
/// The store is an in-memory database under a URI of its own ("file:NAME?mode=memory&cache=shared"), so that
/// every session can attach it; `keeper` is the connection that keeps it alive. System tables are ordinary
/// tables of the store, filled once when the last script has ended.
struct Database {
    QString name;
    int dbid = 0;
    QString uri;
    sqlite3* keeper = nullptr;
    qint64 created = 0;           ///< as a datetime value
    qint64 lastTimestamp = 2000;  ///< of the timestamp columns
    std::vector<std::unique_ptr<Table>> tables;
    QStringList users;                    ///< names in sysusers, dbo first; owners of tables are among them
    QHash<QString, QString> userOfLogin;  ///< nameKey(login) -> user; sa is always dbo
    QStringList roles;                    ///< beside the fixed ones
    std::vector<UserType> userTypes;      ///< made by sp_addtype
    std::vector<RoleMember> roleMembers;  ///< beside dbo, who is always in db_owner
    bool guest = true;                    ///< a login without a user may enter as guest

    ~Database();
    Database() = default;
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Looks a table up: with an owner exactly that one; without, the user's own and then dbo's.
    /// System tables are found whatever the owner. Null when there is none.
    const Table* findTable(const QString& owner, const QString& tableName, const QString& user) const;
    Table* findTable(const QString& owner, const QString& tableName, const QString& user);

    /// The user's number in sysusers; -1 for a name that is no user.
    int userId(const QString& user) const;
    /// The user as sysusers spells it, empty when there is none.
    QString findUser(const QString& user) const;

    /// A number that no object of this database has yet.
    int newObjectId();
    /// Takes a name for an object of `owner`. Throws SqlError 2714 when it is taken.
    void claimName(const QString& owner, const QString& objectName);
    /// Takes a table in; its name must have been claimed.
    Table& addTable(std::unique_ptr<Table> table);
    /// Takes the table away that came last; its name stays claimed.
    void removeLastTable();

  private:
    QHash<QString, int> m_byName;  ///< objectKey() -> position in tables, -1 for an object that is no table
    quint32 m_lastObjectId = 1977058079;
};

}  // namespace engine
