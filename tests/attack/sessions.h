#pragma once

#include "mutation.h"
#include "routines.h"

namespace attack {

class ReplyServer;

enum class Verdict {
    Whole,   ///< the routine gave what the server has
    Told,    ///< less, and a failure was reported
    Lie,     ///< something else that the mutated bytes may have said
    Lost,    ///< less without a word
    Fault,   ///< an error that our own code let out, or an internal one
    Hang,    ///< it took longer than all time-outs together
    Driver,  ///< the driver ended the process
    Died,    ///< our code did
};
inline constexpr const char* verdictNames[]{"whole", "told", "lie",    "LOST",
                                            "FAULT", "HANG", "driver", "DIED"};

/// All sessions of a seed; each is the same however often it is played.
class Sessions {
  public:
    /// Learns the answers and the truth from a sample server; in a process of its own, so that the caller's
    /// has no threads yet and may fork.
    explicit Sessions(quint32 seed);

    /// One in so many has a kind that waits.
    static constexpr qint64 slowEach = 400;
    static bool isSlow(qint64 number) { return number % slowEach == slowEach - 1; }

    /// A routine, and what it gives before a server that tells the truth.
    struct Part {
        Routine routine;
        int turns = 0;
        QStringList texts{};
    };
    struct Session {
        const Part& part;
        Mutation mutation;

        QByteArray name() const;
        Verdict judge(const Outcome& outcome) const;
    };
    Session session(qint64 number) const;
    Replies& replies() { return m_replies; }

  private:
    void learn();
    std::vector<Part> playAll(ReplyServer& server) const;

    quint32 m_seed;
    Replies m_replies;
    std::vector<Part> m_parts;
};

}  // namespace attack
