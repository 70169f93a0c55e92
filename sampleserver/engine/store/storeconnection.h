#pragma once

#include "engine/store/emission.h"
#include "engine/store/rowstore.h"

#include <QString>

#include <functional>
#include <vector>

struct sqlite3;

namespace engine {

/// A session's way to the stores of the databases: one SQLite connection, opened when first needed, to which
/// databases are attached as statements name them.
class StoreConnection {
  public:
    /// `equip` gives the connection further functions when it is opened.
    explicit StoreConnection(std::function<void(sqlite3*)> equip) : m_equip(std::move(equip)) {}
    ~StoreConnection();
    StoreConnection(const StoreConnection&) = delete;
    StoreConnection& operator=(const StoreConnection&) = delete;

    /// A statement with its parameters bound and its databases attached. No other statement of this
    /// connection may be alive. Throws SqlError.
    StoreStatement prepare(const QString& sql, const Emission& emission);

    /// `interrupted` is called while a statement works; true ends the statement.
    void watch(std::function<bool()> interrupted) { m_interrupted = std::move(interrupted); }

  private:
    void open();
    void attach(const std::vector<const Database*>& databases);

    const std::function<void(sqlite3*)> m_equip;
    sqlite3* m_store = nullptr;
    std::vector<const Database*> m_attached;  // the one used last at the end
    std::function<bool()> m_interrupted;
};

}  // namespace engine
