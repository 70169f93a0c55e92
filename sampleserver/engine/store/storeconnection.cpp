#include "engine/store/storeconnection.h"

#include "engine/store/storage.h"
#include "engine/values/sqlerror.h"

#include <sqlite3.h>

#include <algorithm>

namespace engine {

namespace {

constexpr size_t mostAttached = 10;          // SQLite's own limit
constexpr int instructionsPerWatch = 20000;  // a fraction of a millisecond

int progress(void* context) {
    const auto& interrupted = *static_cast<std::function<bool()>*>(context);
    return interrupted && interrupted() ? 1 : 0;
}

}  // namespace

StoreConnection::~StoreConnection() {
    sqlite3_close(m_store);
}

void StoreConnection::open() {
    if (m_store) return;
    m_store = openStore(QStringLiteral(":memory:"));
    m_equip(m_store);
    // The stores are only read once sessions exist: no table locks are needed.
    executeStore(m_store, "PRAGMA read_uncommitted = 1");
    // What a statement sorts and gathers stays where its size can be seen, not in files.
    executeStore(m_store, "PRAGMA temp_store = MEMORY");
    sqlite3_progress_handler(m_store, instructionsPerWatch, progress, &m_interrupted);
}

void StoreConnection::attach(const std::vector<const Database*>& databases) {
    if (databases.size() > mostAttached) {
        throw SqlError(
            8621, 16,
            QStringLiteral("Internal Query Processor Error: a statement may read from ten databases."));
    }
    for (const Database* database : databases) {
        const auto known = std::ranges::find(m_attached, database);
        if (known != m_attached.end()) {
            std::rotate(known, known + 1, m_attached.end());
            continue;
        }
        if (m_attached.size() == mostAttached) {
            executeStore(m_store, "DETACH " + schemaName(*m_attached.front()).toUtf8());
            m_attached.erase(m_attached.begin());
        }
        executeStore(m_store,
                     QStringLiteral("ATTACH '%1' AS %2").arg(database->uri, schemaName(*database)).toUtf8());
        m_attached.push_back(database);
    }
}

StoreStatement StoreConnection::prepare(const QString& sql, const Emission& emission) {
    open();
    attach(emission.databases());
    StoreStatement statement(m_store, sql.toUtf8());
    statement.bind(emission.parameters());
    return statement;
}

}  // namespace engine
