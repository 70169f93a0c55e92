#pragma once

#include "mutation.h"

#include <QString>

#include <atomic>
#include <mutex>
#include <optional>

namespace attack {

/// A server that knows answers by heart; a client costs it a fraction of a millisecond. It has threads of its
/// own and lives as long as its process.
class ReplyServer {
  public:
    /// With an `upstream` port everything is asked there, and learnt. Without, what was not learnt ends its
    /// line.
    ReplyServer(Replies& replies, quint16 upstream);

    QString connectionString() const;
    /// Lines that come from now on belong to a new session, with this done to one reply in it. A line to
    /// which it was done is closed when its client then waits for more than it was sent.
    void begin(const std::optional<Mutation>& mutation);
    /// Replies in the session.
    int turns() const { return m_turn; }
    /// Those that stand; each has a thread.
    int lines() const { return m_lines; }

  private:
    void serve(int socket);
    Delivery answer(const QByteArray& question, const QByteArray& message, int upstream, int session,
                    bool& mutated);

    Replies& m_replies;
    quint16 m_upstream;
    quint16 m_port = 0;
    std::mutex m_mutex;
    std::optional<Mutation> m_mutation;
    std::atomic<int> m_session = 0;
    std::atomic<int> m_turn = 0;
    std::atomic<int> m_lines = 0;
};

}  // namespace attack
