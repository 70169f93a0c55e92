#include "engine/store/database.h"

#include "engine/values/sqlerror.h"

#include <sqlite3.h>

namespace engine {

namespace {

constexpr int firstUserId = 5;  // 3 is INFORMATION_SCHEMA, 4 is kept by the server

QString objectKey(const QString& owner, const QString& name) {
    return nameKey(owner) + QLatin1Char('.') + nameKey(name);
}

}  // namespace

Database::~Database() {
    sqlite3_close_v2(keeper);
}

Table* Database::findTable(const QString& owner, const QString& tableName, const QString& user) {
    const QString dbo = QStringLiteral("dbo");
    const int own = m_byName.value(objectKey(owner.isEmpty() ? user : owner, tableName), -1);
    if (own >= 0) return tables[static_cast<size_t>(own)].get();
    const int shared = m_byName.value(objectKey(dbo, tableName), -1);
    if (shared < 0) return nullptr;
    Table* table = tables[static_cast<size_t>(shared)].get();
    return owner.isEmpty() || table->system ? table : nullptr;
}

const Table* Database::findTable(const QString& owner, const QString& tableName, const QString& user) const {
    return const_cast<Database*>(this)->findTable(owner, tableName, user);
}

int Database::userId(const QString& user) const {
    int next = firstUserId;
    for (const QString& known : users) {
        const bool special = known == QLatin1String("dbo") || known == QLatin1String("guest");
        const int id = known == QLatin1String("dbo") ? 1 : special ? 2 : next++;
        if (nameKey(known) == nameKey(user)) return id;
    }
    return -1;
}

QString Database::findUser(const QString& user) const {
    for (const QString& known : users) {
        if (nameKey(known) == nameKey(user)) return known;
    }
    return {};
}

int Database::newObjectId() {
    // The server's own step: odd, so that every number comes once. Small numbers are the system tables'.
    do {
        m_lastObjectId = (m_lastObjectId + 16000057U) & 0x7fffffffU;
    } while (m_lastObjectId < 1000);
    return static_cast<int>(m_lastObjectId);
}

void Database::claimName(const QString& owner, const QString& objectName) {
    const QString key = objectKey(owner, objectName);
    if (m_byName.contains(key)) {
        throw SqlError(
            2714, 16,
            QStringLiteral("There is already an object named '%1' in the database.").arg(objectName));
    }
    m_byName.insert(key, -1);
}

Table& Database::addTable(std::unique_ptr<Table> table) {
    m_byName.insert(objectKey(table->owner, table->name), static_cast<int>(tables.size()));
    return *tables.emplace_back(std::move(table));
}

void Database::removeLastTable() {
    m_byName.insert(objectKey(tables.back()->owner, tables.back()->name), -1);
    tables.pop_back();
}

}  // namespace engine
