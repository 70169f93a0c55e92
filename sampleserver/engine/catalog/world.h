#pragma once

#include "engine/store/database.h"

#include <QHash>
#include <QString>

#include <atomic>
#include <map>
#include <memory>
#include <vector>

namespace engine {

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

    /// Must be called once after the last script and before the first session: fills the system tables.
    void seal();
    bool isSealed() const { return m_sealed; }

    const Database* findDatabase(const QString& name) const;
    Database* findDatabase(const QString& name);
    /// The same, but throws SqlError 911 when there is none.
    const Database& existingDatabase(const QString& name) const;
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
