#pragma once

#include "engine/catalog/world.h"
#include "engine/session/session.h"

#include <memory>

namespace sampleserver {

/// A session of the engine whose login counts as a connection once it is accepted.
class CountedSession : public engine::Session {
  public:
    CountedSession(std::shared_ptr<const engine::World> world, int spid, const engine::QueryLimits& limits)
        : engine::Session(world, spid, limits), m_world(std::move(world)) {}

    std::vector<engine::SqlMessage> login(const engine::LoginRequest& request) override {
        std::vector<engine::SqlMessage> refusals = engine::Session::login(request);
        if (refusals.empty()) ++m_world->connectionCount();
        return refusals;
    }

  private:
    std::shared_ptr<const engine::World> m_world;
};

}  // namespace sampleserver
