#include "supervisor.h"

#include "deaths.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <new>

namespace attack {

namespace {

using namespace std::chrono_literals;

constexpr int SlowWorkers = 16;
constexpr qint64 PatienceMilliseconds = 10000;  ///< one time-out or two, and what a loaded machine adds
constexpr int MostSaid = 20;                    ///< sessions shown of a verdict
constexpr int SessionsOfAWorker = 5000;         ///< the driver leaks
enum Ending { AllDone = 0, Renew = 3 };

qint64 now() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

qsizetype threads() {
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

/// A time-out leaves a thread to end by itself; some do at once.
bool haveThreadsEnded(qsizetype most) {
    for (int tries = 0; tries < 20; ++tries, usleep(2000))
        if (threads() <= most) return true;
    return false;
}

}  // namespace

struct Supervisor::Board {
    std::array<std::atomic<qint64>, 2> given{};  ///< sessions given out, quick and slow
    std::array<std::array<std::atomic<qint64>, verdicts>, kinds> counts{};
    std::array<std::atomic<int>, verdicts> said{};
    std::atomic<qint64> longest = 0;
    std::atomic<qint64> abandoned = 0;
    struct Playing {
        std::atomic<qint64> session = -1;
        std::atomic<qint64> since = 0;
    };
    std::array<Playing, 256> playing{};
};

Supervisor::Supervisor(Sessions& sessions, qint64 count, int workers)
    : m_sessions(sessions),
      m_count(count),
      m_board(new (mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
                  Board),
      m_workers(size_t(workers + std::min<qint64>(SlowWorkers, count / Sessions::slowEach))) {
    for (size_t i = size_t(workers); i < m_workers.size(); ++i)
        m_workers[i].slow = true;
}

Supervisor::~Supervisor() {
    munmap(m_board, sizeof(Board));
}

/// The number of the next session, -1 when there is none.
qint64 Supervisor::next(bool slow) {
    const qint64 given = m_board->given[slow]++;
    constexpr qint64 each = Sessions::slowEach;
    const qint64 number = slow ? (given + 1) * each - 1 : given / (each - 1) * each + given % (each - 1);
    return number < m_count ? number : -1;
}

QString Supervisor::errorsOf(size_t index) const {
    return m_folder.filePath(QString::number(index));
}

void Supervisor::start(size_t index) {
    fflush(stdout);
    m_board->playing[index].session = -1;
    m_workers[index].process = fork();
    if (m_workers[index].process == 0) work(index);
}

void Supervisor::work(size_t index) {
    const int errors = open(qUtf8Printable(errorsOf(index)), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0600);
    dup2(errors, STDERR_FILENO);
    leaveTraces();
    int argc = 0;
    const QCoreApplication application(argc, nullptr);
    Stage stage(m_sessions.replies(), 0);
    stage.play(m_sessions.parts().front().routine, {});
    const qsizetype usualThreads = threads();
    Board::Playing& playing = m_board->playing[index];
    for (int played = 0; played < SessionsOfAWorker; ++played) {
        const qint64 number = next(m_workers[index].slow);
        if (number < 0) _exit(AllDone);
        const auto [part, mutation] = m_sessions.session(number);
        const qint64 began = now();
        playing.since = began;
        playing.session = number;
        const Outcome outcome = stage.play(part.routine, mutation);
        playing.session = -1;
        const qint64 took = now() - began;
        const Verdict verdict =
            took > PatienceMilliseconds ? Verdict::Hang : m_sessions.judge(part, mutation.kind, outcome);
        ++m_board->counts[size_t(mutation.kind)][size_t(verdict)];
        for (qint64 longest = m_board->longest; took > longest;)
            if (m_board->longest.compare_exchange_weak(longest, took)) break;
        if (verdict != Verdict::Whole && verdict != Verdict::Told)
            say(verdict, number, outcome.boxes.join(u' ').left(200).toUtf8());
        if (!haveThreadsEnded(usualThreads)) {
            ++m_board->abandoned;
            _exit(Renew);
        }
    }
    _exit(Renew);
}

void Supervisor::say(Verdict verdict, qint64 number, const QByteArray& words) {
    static constexpr std::array<const char*, verdicts> names{"whole", "told", "lie",    "LOST",
                                                             "FAULT", "HANG", "driver", "DIED"};
    if (m_board->said[size_t(verdict)]++ >= MostSaid) return;
    const auto [part, mutation] = m_sessions.session(number);
    printf("%s: session %lld, %s, %s of reply %d of %d. %s\n", names[size_t(verdict)],
           static_cast<long long>(number), part.routine.name, nameOf(mutation.kind), mutation.turn + 1,
           part.turns, words.constData());
    fflush(stdout);
}

void Supervisor::bury(size_t index, int status) {
    const bool orderly =
        WIFEXITED(status) && (WEXITSTATUS(status) == AllDone || WEXITSTATUS(status) == Renew);
    if (!orderly) {
        QFile errors(errorsOf(index));
        const Death death = errors.open(QIODevice::ReadOnly) ? deathFrom(errors.readAll()) : Death();
        const qint64 number = m_board->playing[index].session;
        const bool hung = m_board->playing[index].since < 0;
        const Verdict verdict = hung                       ? Verdict::Hang
                                : death.ours || number < 0 ? Verdict::Died
                                                           : Verdict::Driver;
        if (number >= 0) ++m_board->counts[size_t(m_sessions.session(number).second.kind)][size_t(verdict)];
        Deaths& deaths = m_deaths[death.what];
        if (deaths.count++ == 0) deaths.first = number;
        if (verdict != Verdict::Driver) say(verdict, std::max<qint64>(number, 0), death.what);
    }
    m_workers[index].process = 0;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != AllDone) start(index);
}

void Supervisor::endHanging() {
    for (size_t i = 0; i < m_workers.size(); ++i) {
        Board::Playing& playing = m_board->playing[i];
        if (playing.session < 0 || playing.since < 0 || now() - playing.since < 2 * PatienceMilliseconds)
            continue;
        playing.since = -1;
        kill(m_workers[i].process, SIGABRT);
    }
}

void Supervisor::run() {
    for (size_t i = 0; i < m_workers.size(); ++i)
        start(i);
    size_t living = m_workers.size();
    while (living > 0) {
        int status = 0;
        const pid_t ended = waitpid(-1, &status, WNOHANG);
        if (ended <= 0) {
            endHanging();
            usleep(5000);
            continue;
        }
        const auto worker = std::ranges::find(m_workers, ended, &Worker::process);
        if (worker == m_workers.end()) continue;
        bury(size_t(worker - m_workers.begin()), status);
        if (worker->process == 0) --living;
    }
}

bool Supervisor::report() const {
    printf("\n%-8s %9s %9s %9s %9s %9s %9s %9s %9s\n", "", "whole", "told", "lie", "LOST", "FAULT", "HANG",
           "driver", "DIED");
    std::array<qint64, verdicts> sums{};
    for (int kind = 0; kind < kinds; ++kind) {
        printf("%-8s", nameOf(Kind(kind)));
        for (size_t verdict = 0; verdict < verdicts; ++verdict) {
            const qint64 count = m_board->counts[size_t(kind)][verdict];
            sums[verdict] += count;
            printf(" %9lld", static_cast<long long>(count));
        }
        printf("\n");
    }
    printf("%-8s", "all");
    for (const qint64 sum : sums)
        printf(" %9lld", static_cast<long long>(sum));
    printf("\nLongest session: %lld ms; threads that were abandoned and did not end at once: %lld\n",
           static_cast<long long>(m_board->longest), static_cast<long long>(m_board->abandoned));
    for (const auto& [what, deaths] : m_deaths)
        printf("%6lld deaths, first in session %lld: %s\n", static_cast<long long>(deaths.count),
               static_cast<long long>(deaths.first), what.constData());
    const auto none = [&](Verdict verdict) { return sums[size_t(verdict)] == 0; };
    return none(Verdict::Lost) && none(Verdict::Fault) && none(Verdict::Hang) && none(Verdict::Died);
}

}  // namespace attack
