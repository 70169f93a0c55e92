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
    QString defaultText;  ///< as written, in parentheses as the server keeps it; empty: none
    bool computed = false;
};

struct Index {
    QString name;
    int indid = 0;  ///< 1 clustered, 2.. others
    bool unique = false;
    bool clustered = false;
    bool primaryKey = false;
    bool uniqueConstraint = false;
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

/// One database: its tables by owner and name, and the SQLite store of its rows.
///
/// The store is an in-memory database under a URI of its own ("file:NAME?mode=memory&cache=shared"), so that
/// every session can attach it; `keeper` is the connection that keeps it alive. System tables are ordinary
/// tables of the store, filled once when the script that made the database has ended.
struct Database {
    QString name;
    int dbid = 0;
    QString uri;
    sqlite3* keeper = nullptr;
    std::vector<std::unique_ptr<Table>> tables;
    QStringList users;                    ///< names in sysusers, dbo first; owners of tables are among them
    QHash<QString, QString> userOfLogin;  ///< nameKey(login) -> user; sa is always dbo
    bool guest = true;                    ///< a login without a user may enter as guest

    ~Database();
    Database() = default;
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Looks a table up: with an owner exactly that one; without, the user's own and then dbo's.
    /// System tables are found whatever the owner. Null when there is none.
    const Table* findTable(const QString& owner, const QString& tableName, const QString& user) const;

  private:
    friend class ScriptReader;
    QHash<QString, int> m_byName;  ///< nameKey(owner) + '.' + nameKey(name) -> position in tables
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

    /// Reads a script (see docs of the sample server); throws SqlError with the line of the script.
    void runScript(const QString& script);
    /// Must be called once after the last script and before the first session: fills the system tables.
    void seal();

    const Database* findDatabase(const QString& name) const;
    const Login* findLogin(const QString& name) const;
    const std::vector<std::unique_ptr<Database>>& databases() const { return m_databases; }
    QString serverName() const { return m_serverName; }

    /// Connections accepted since the start, as @@CONNECTIONS tells them.
    std::atomic<int>& connectionCount() const { return m_connectionCount; }

  private:
    friend class ScriptReader;
    std::vector<std::unique_ptr<Database>> m_databases;
    std::map<QString, Login> m_logins;  ///< by nameKey
    QString m_serverName;
    mutable std::atomic<int> m_connectionCount = 0;
};

}  // namespace engine
