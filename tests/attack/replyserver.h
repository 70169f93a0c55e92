#pragma once

#include "mutation.h"

#include <chrono>
#include <list>
#include <mutex>
#include <optional>
#include <thread>

namespace attack {

/// Where the answer to everything that was not learnt stands.
inline const QByteArray unknownQuestion = "unknown";

/// A server that knows answers by heart, on a thread of its own; a client costs it a fraction of a
/// millisecond.
class ReplyServer {
  public:
    /// With an `upstream` port everything is asked there, and learnt.
    ReplyServer(Replies& replies, quint16 upstream);
    ~ReplyServer();
    ReplyServer(const ReplyServer&) = delete;
    ReplyServer& operator=(const ReplyServer&) = delete;

    quint16 port() const { return m_port; }
    /// Lines that come from now on belong to a new session, with this done to one reply in it. A line to
    /// which it was done is closed when its client then waits for more than it was sent.
    void begin(const std::optional<Mutation>& mutation);
    /// Replies in the session.
    int turns();

  private:
    using Clock = std::chrono::steady_clock;
    struct Line;

    void run();
    void accept();
    /// False when the line has ended.
    bool serve(Line& line, short events);
    bool send(Line& line);
    bool isOver(Line& line) const;
    void answer(Line& line, const QByteArray& message);
    QByteArray askUpstream(Line& line, const QByteArray& message) const;
    int milliseconds() const;

    Replies& m_replies;
    quint16 m_upstream;
    int m_listener;
    quint16 m_port = 0;
    std::list<Line> m_lines;
    std::mutex m_mutex;
    std::optional<Mutation> m_mutation;
    int m_session = 0;
    int m_turn = 0;
    bool m_ending = false;
    std::thread m_thread;
};

}  // namespace attack
