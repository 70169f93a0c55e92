#pragma once

#include "engine/catalog/sessionfacts.h"
#include "engine/store/storeconnection.h"
#include "engine/syntax/constant.h"

#include <vector>

namespace engine {

/// What a script computes by a query or an expression, with the words of clients, as the owner of a database.
class ScriptQueries {
  public:
    explicit ScriptQueries(const World& world);

    /// A value of INSERT that is more than a constant. Throws SqlError.
    Constant expression(TokenCursor& tokens, const Database& database);
    /// The rows of the SELECT of an INSERT. Throws SqlError.
    std::vector<std::vector<Constant>> rows(TokenCursor& tokens, const Database& database);

  private:
    SessionFacts m_facts;
    StoreConnection m_store;
};

}  // namespace engine
