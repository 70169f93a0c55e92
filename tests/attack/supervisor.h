#pragma once

#include "sessions.h"

#include <QTemporaryDir>

#include <array>
#include <atomic>
#include <map>

namespace attack {

/// Plays sessions in processes, since a driver may take its process with it, and keeps the books.
class Supervisor {
  public:
    Supervisor(Sessions& sessions, qint64 count, int workers);
    ~Supervisor();
    Supervisor(const Supervisor&) = delete;
    Supervisor& operator=(const Supervisor&) = delete;

    void run();
    /// Prints the figures; whether they are as they should be.
    bool report() const;

  private:
    struct Board;
    struct Worker {
        pid_t process = 0;
        bool slow = false;
    };

    void start(size_t index);
    [[noreturn]] void work(size_t index);
    qint64 next(bool slow);
    void bury(size_t index, int status);
    void endHanging();
    QString errorsOf(size_t index) const;
    void say(Verdict verdict, qint64 number, const QByteArray& words);

    Sessions& m_sessions;
    qint64 m_count;
    QTemporaryDir m_folder;
    Board* m_board;  ///< in memory that all processes share
    std::vector<Worker> m_workers;
    struct Deaths {
        qint64 count = 0;
        qint64 first = 0;
    };
    std::map<QByteArray, Deaths> m_deaths;
};

}  // namespace attack
