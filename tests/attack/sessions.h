#pragma once

#include "mutation.h"
#include "platform/ado/connection.h"
#include "replyserver.h"
#include "routines.h"

namespace attack {

/// A routine, and what it does before a server that tells the truth.
struct Part {
    Routine routine;
    int turns = 0;
    QStringList texts{};
};

/// A server of known answers, and the routines in front of it.
class Stage {
  public:
    Stage(Replies& replies, quint16 upstream);
    Outcome play(const Routine& routine, const std::optional<Mutation>& mutation);
    int turns() { return m_server.turns(); }

  private:
    QString connectionString(const char* database) const;

    ReplyServer m_server;
    ado::Connection
        m_idle;  ///< keeps the driver in memory, which otherwise comes and goes with each connection
};

/// What comes of a session.
enum class Verdict {
    Whole,   ///< what the server has
    Told,    ///< less, and a failure was reported
    Lie,     ///< something else that the mutated bytes may have said
    Lost,    ///< less without a word
    Fault,   ///< a failure of our own
    Hang,    ///< longer than all time-outs together
    Driver,  ///< the driver ended the process
    Died,    ///< our code did
};
inline constexpr int verdicts = static_cast<int>(Verdict::Died) + 1;

/// All sessions of a seed; each is the same however often it is played.
class Sessions {
  public:
    explicit Sessions(quint32 seed) : m_seed(seed) {}
    /// Learns the answers and the truth from a sample server; in a process of its own, so that the caller's
    /// has no threads yet and may fork.
    void rehearse();

    /// Which part is played in a session, with which mutation. One in `slowEach` costs a time-out.
    static constexpr qint64 slowEach = 400;
    std::pair<const Part&, Mutation> session(qint64 number) const;
    Verdict judge(const Part& part, Kind kind, const Outcome& outcome) const;
    Replies& replies() { return m_replies; }
    const std::vector<Part>& parts() const { return m_parts; }

  private:
    void learn();

    quint32 m_seed;
    Replies m_replies;
    std::vector<Part> m_parts;
};

}  // namespace attack
