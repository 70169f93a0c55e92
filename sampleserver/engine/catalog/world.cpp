#include "engine/catalog/world.h"

#include "engine/catalog/systemtables.h"
#include "engine/store/rowstore.h"
#include "engine/values/datetime.h"
#include "engine/values/sqlerror.h"

#include <QUuid>

namespace engine {

World::World() {
    for (const char* name : {"master", "tempdb", "model", "msdb", "distribution"}) {
        Database& database = addDatabase(QString::fromLatin1(name));
        database.guest = database.name != QLatin1String("model");
        if (database.guest) database.users.append(QStringLiteral("guest"));
    }
    addLogin({.name = QStringLiteral("sa"), .password = {}});
}

void World::seal() {
    if (m_sealed) return;
    m_sealed = true;
    for (const auto& database : m_databases)
        fillSystemTables(*this, *database);
}

const Database* World::findDatabase(const QString& name) const {
    return m_byName.value(nameKey(name));
}

Database* World::findDatabase(const QString& name) {
    return m_byName.value(nameKey(name));
}

const Database& World::existingDatabase(const QString& name) const {
    if (const Database* database = findDatabase(name)) return *database;
    throw SqlError(
        911, 16,
        QStringLiteral("Could not locate entry in sysdatabases for database '%1'. No entry found with "
                       "that name. Make sure that the name is entered correctly.")
            .arg(name));
}

const Login* World::findLogin(const QString& name) const {
    const auto found = m_logins.find(nameKey(name));
    return found == m_logins.end() ? nullptr : &found->second;
}

Database& World::addDatabase(const QString& name) {
    if (findDatabase(name) != nullptr) {
        throw SqlError(1801, 16, QStringLiteral("Database '%1' already exists.").arg(name));
    }
    auto database = std::make_unique<Database>();
    database->name = name;
    database->dbid = static_cast<int>(m_databases.size()) + 1;
    database->uri = QStringLiteral("file:%1?mode=memory&cache=shared")
                        .arg(QUuid::createUuid().toString(QUuid::WithoutBraces));
    database->keeper = openKeeper(database->uri);
    database->created = dateTimeTicks(QDateTime::currentDateTime());
    database->users = QStringList{QStringLiteral("dbo")};
    database->guest = false;
    for (const QString& table : systemTableNames(*database)) {
        database->claimName(QStringLiteral("dbo"), table);
    }
    m_byName.insert(nameKey(name), database.get());
    return *m_databases.emplace_back(std::move(database));
}

void World::addLogin(const Login& login) {
    if (!m_logins.emplace(nameKey(login.name), login).second) {
        throw SqlError(15025, 16, QStringLiteral("The login '%1' already exists.").arg(login.name));
    }
}

}  // namespace engine
