#pragma once

#include "engine/sqltype.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <atomic>
#include <map>
#include <memory>
#include <optional>
#include <vector>

struct sqlite3;

namespace engine {

/// Key of a name: names compare without regard to case.
QString nameKey(const QString& name);

struct Column {
    QString name;
    SqlType type;
    bool nullable = true;
    bool identity = false;
    qint64 identitySeed = 1;
    qint64 identityStep = 1;
    qint64 identityNext = 1;  ///< value of the next row that a script inserts
    QString defaultText;      ///< as written, in parentheses as the server keeps it; empty: none
    QString defaultName;      ///< name of the default's constraint
    int defaultId = 0;        ///< its object id
    bool computed = false;
    bool sysname = false;  ///< declared as sysname, an nvarchar(128) with a name of its own
};

struct Index {
    QString name;
    int id = 0;     ///< object id of the constraint, 0 for a plain index
    int indid = 0;  ///< 1 clustered, 2.. others
    bool unique = false;
    bool clustered = false;
    bool primaryKey = false;
    bool uniqueConstraint = false;
    bool statistics = false;   ///< made by CREATE STATISTICS, no index at all
    std::vector<int> columns;  ///< positions in Table::columns, key order
};

struct Check {
    QString name;
    int id = 0;
    QString text;  ///< as written, in parentheses
};

struct ForeignKey {
    QString name;
    int id = 0;
    std::vector<int> columns;  ///< positions in the referencing table
    QString referencedOwner;
    QString referencedTable;
    std::vector<int> referenced;  ///< positions in the referenced table
};

struct Table {
    QString owner;
    QString name;
    int id = 0;  ///< object id
    bool system = false;
    std::vector<Column> columns;  ///< colid is the position plus one
    std::vector<Index> indexes;
    std::vector<Check> checks;
    std::vector<ForeignKey> foreignKeys;
    QStringList deniedUsers;  ///< users who may not select from it
    QString storage;          ///< name of the SQLite table that holds its rows

    int columnIndex(const QString& columnName) const;  ///< -1 when there is none
};

/// A member of a database role.
struct RoleMember {
    QString role;
    QString user;
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

  private:
    QHash<QString, int> m_byName;  ///< objectKey() -> position in tables, -1 for an object that is no table
    quint32 m_lastObjectId = 1977058079;
};

struct Login {
    QString name;
    QString password;
    QString defaultDatabase = QStringLiteral("master");
};

/// Everything the server knows. Filled by scripts before the first client, then only read, so that sessions
/// on their own threads share it without a lock.
class World {
  public:
    /// A server with the five system databases, the login `sa` with an empty password, and nothing else.
    World();

    /// Reads a script (see scriptreader.h for what it may say), beginning in master. Throws SqlError with the
    /// line of the script; what stood before the failing statement stays done.
    void runScript(const QString& script);
    /// Must be called once after the last script and before the first session: fills the system tables.
    void seal();

    const Database* findDatabase(const QString& name) const;
    Database* findDatabase(const QString& name);
    const Login* findLogin(const QString& name) const;
    const std::vector<std::unique_ptr<Database>>& databases() const { return m_databases; }
    QString serverName() const { return QStringLiteral("SAMPLESERVER"); }

    /// Makes an empty database that only sa may enter. Throws SqlError 1801 when the name is taken.
    Database& addDatabase(const QString& name);
    /// Throws SqlError 15025 when the login exists.
    void addLogin(const Login& login);

    /// Connections accepted since the start, as @@CONNECTIONS tells them.
    std::atomic<int>& connectionCount() const { return m_connectionCount; }

  private:
    std::vector<std::unique_ptr<Database>> m_databases;
    QHash<QString, Database*> m_byName;
    std::map<QString, Login> m_logins;  ///< by nameKey
    bool m_sealed = false;
    mutable std::atomic<int> m_connectionCount = 0;
};

}  // namespace engine
