#include "platform/ado/loginsockets.h"

#include <mutex>
#include <set>

#ifdef Q_OS_LINUX
#include <sys/socket.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#endif

namespace ado {

namespace {

template <class Take>
void forEachSocket([[maybe_unused]] Take&& take) {
#ifdef Q_OS_LINUX
    std::error_code unreadable;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", unreadable)) {
        const Socket socket = Socket::of(std::atoi(entry.path().filename().c_str()));
        if (socket.identity != 0) take(socket);
    }
#endif
}

/// All attempts of the process.
class Attempts {
  public:
    void begin() {
        const std::lock_guard lock(m_mutex);
        if (m_underWay++ > 0) return;
        m_others.clear();
        m_abandoned = false;
        m_allTold = true;
        forEachSocket([&](const Socket& socket) { m_others.insert(socket.identity); });
    }
    void keep(const Socket& socket) {
        const std::lock_guard lock(m_mutex);
        m_others.insert(socket.identity);
        if (socket.identity == 0) m_allTold = false;
    }
    void end(bool abandoned) {
        const std::lock_guard lock(m_mutex);
        m_abandoned = m_abandoned || abandoned;
        if (--m_underWay > 0 || !m_abandoned || !m_allTold) return;
        forEachSocket([&](const Socket& socket) {
            if (!m_others.contains(socket.identity)) socket.close();
        });
    }

  private:
    std::mutex m_mutex;
    int m_underWay = 0;
    bool m_abandoned = false;
    bool m_allTold = true;
    std::set<quint64> m_others;  ///< that no abandoned attempt has opened
};

Attempts& attempts() {
    static Attempts all;
    return all;
}

}  // namespace

#ifdef Q_OS_LINUX
Socket Socket::of(int descriptor) {
    struct stat status {};
    int domain = 0;
    socklen_t size = sizeof domain;
    const bool ofNetwork = fstat(descriptor, &status) == 0 && S_ISSOCK(status.st_mode) &&
                           getsockopt(descriptor, SOL_SOCKET, SO_DOMAIN, &domain, &size) == 0 &&
                           (domain == AF_INET || domain == AF_INET6);
    return ofNetwork ? Socket{descriptor, status.st_ino} : Socket{};
}

void Socket::close() const {
    if (identity != 0 && of(descriptor).identity == identity) shutdown(descriptor, SHUT_RDWR);
}
#else
Socket Socket::of(int) {
    return {};
}

void Socket::close() const {}
#endif

LoginSockets::LoginSockets() {
    attempts().begin();
}

LoginSockets::~LoginSockets() {
    if (m_underWay) attempts().end(false);
}

void LoginSockets::keep(const Socket& socket) {
    attempts().keep(socket);
}

void LoginSockets::abandon() {
    attempts().end(true);
    m_underWay = false;
}

}  // namespace ado
