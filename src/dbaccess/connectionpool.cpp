#include "dbaccess/connectionpool.h"

#include <algorithm>
#include <utility>

namespace tw {

ConnectionPool::ConnectionPool(std::function<Clock::time_point()> now) : m_now(std::move(now)) {
    m_timer.setInterval(std::chrono::seconds(1));
    m_timer.callOnTimeout(&m_timer, [this] { closeExpired(); });
}

std::optional<ado::Connection> ConnectionPool::take(const QString& connectionString) {
    closeExpired();
    const auto found = std::ranges::find_if(m_kept, [&](const Kept& kept) {
        return kept.connectionString == connectionString && !kept.connection.isShared();
    });
    return found == m_kept.end() ? std::nullopt : std::optional(found->connection);
}

void ConnectionPool::keep(const QString& connectionString, const ado::Connection& connection) {
    closeExpired();
    if (m_kept.size() >= MostKept) m_kept.erase(m_kept.begin());
    m_kept.push_back({connectionString, connection, m_now()});
    if (!m_timer.isActive()) m_timer.start();
}

void ConnectionPool::closeExpired() {
    const Clock::time_point oldest = m_now() - Lifetime;
    std::erase_if(m_kept, [&](const Kept& kept) {
        return kept.loggedIn <= oldest || !kept.connection.isOpen() || kept.connection.hasFailed();
    });
    if (m_kept.empty()) m_timer.stop();
}

}  // namespace tw
