#include "engine/store/storeconnection.h"

#include "engine/store/storage.h"
#include "engine/store/storecall.h"
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

void FinalizeStatement::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

StoreConnection::~StoreConnection() {
    sqlite3_close(m_store);
}

void StoreConnection::open() {
    if (m_store) return;
    m_store = openStore(QStringLiteral(":memory:"));
    m_equip(m_store);
    // The stores are only read once sessions exist: no table locks are needed.
    sqlite3_exec(m_store, "PRAGMA read_uncommitted = 1", nullptr, nullptr, nullptr);
    // What a statement sorts and gathers stays where its size can be seen, not in files.
    sqlite3_exec(m_store, "PRAGMA temp_store = MEMORY", nullptr, nullptr, nullptr);
    sqlite3_progress_handler(m_store, instructionsPerWatch, progress, &m_interrupted);
}

void StoreConnection::attach(const std::vector<const Database*>& databases) {
    if (databases.size() > mostAttached) {
        throw SqlError(
            8621, 16,
            QStringLiteral("Internal Query Processor Error: a statement may read from ten databases."));
    }
    const auto run = [this](const QString& sql) {
        if (sqlite3_exec(m_store, sql.toUtf8().constData(), nullptr, nullptr, nullptr) != SQLITE_OK) fail();
    };
    for (const Database* database : databases) {
        const auto known = std::ranges::find(m_attached, database);
        if (known != m_attached.end()) {
            std::rotate(known, known + 1, m_attached.end());
            continue;
        }
        if (m_attached.size() == mostAttached) {
            run(QStringLiteral("DETACH %1").arg(schemaName(*m_attached.front())));
            m_attached.erase(m_attached.begin());
        }
        QString uri = database->uri;
        uri.replace(u'\'', QStringLiteral("''"));
        run(QStringLiteral("ATTACH '%1' AS %2").arg(uri, schemaName(*database)));
        m_attached.push_back(database);
    }
}

void StoreConnection::fail() {
    const QString text = QString::fromUtf8(sqlite3_errmsg(m_store));
    if (auto error = decodedError(text)) throw *error;
    if (text.contains(QLatin1String("integer overflow"))) {
        throw SqlError(8115, 16,
                       QStringLiteral("Arithmetic overflow error converting expression to data type int."));
    }
    throw SqlError(
        8623, 16,
        QStringLiteral("Internal Query Processor Error: The query processor could not produce a query "
                       "plan (%1).")
            .arg(text));
}

StatementPtr StoreConnection::prepare(const QString& sql, const Emission& emission) {
    open();
    attach(emission.databases());
    const QByteArray utf8 = sql.toUtf8();
    sqlite3_stmt* raw = nullptr;
    if (sqlite3_prepare_v2(m_store, utf8.constData(), static_cast<int>(utf8.size()), &raw, nullptr) !=
        SQLITE_OK) {
        fail();
    }
    StatementPtr statement(raw);
    int position = 0;
    for (const TypedValue& parameter : emission.parameters())
        bindStored(raw, ++position, parameter.value, parameter.type);
    return statement;
}

bool StoreConnection::step(sqlite3_stmt* statement) {
    const int code = sqlite3_step(statement);
    if (code != SQLITE_ROW && code != SQLITE_DONE && code != SQLITE_INTERRUPT) fail();
    return code == SQLITE_ROW;
}

}  // namespace engine
