#pragma once

#include <QtGlobal>

namespace ado {

/// A socket of the process, told from a later one under the same descriptor. Where the system does not list a
/// process's sockets there is none.
struct Socket {
    int descriptor = -1;
    quint64 identity = 0;  ///< 0: none

    static Socket of(int descriptor);
    /// Closes the connection for both of its ends, if it is there still, and leaves the descriptor to its
    /// owner.
    void close() const;
};

/// The sockets that drivers open while they connect: no driver tells them before it has connected, and one
/// that never comes to its end may read from its socket for ever, at the cost of a processor.
///
/// One of these lives as long as an attempt to connect. A socket that appeared during abandoned attempts, and
/// that no other attempt has kept, is theirs and is closed as soon as no attempt is under way.
class LoginSockets {
  public:
    LoginSockets();
    /// Ends the attempt, unless it was abandoned.
    ~LoginSockets();
    LoginSockets(const LoginSockets&) = delete;
    LoginSockets& operator=(const LoginSockets&) = delete;

    /// The attempt has connected over this socket; none when the driver does not tell.
    void keep(const Socket& socket);
    void abandon();

  private:
    bool m_underWay = true;
};

}  // namespace ado
