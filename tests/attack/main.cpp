#include "deaths.h"
#include "platform/ado/connection.h"
#include "replyserver.h"
#include "sessions.h"

#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QThread>

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <map>

namespace {

using namespace attack;

using Counts = std::array<qint64, std::size(verdictNames)>;
constexpr int SlowWorkers = 16;
constexpr qint64 PatienceMilliseconds = 10000;  ///< a time-out or two, and what a loaded machine adds
constexpr int MostTold = 20;                    ///< sessions shown of a verdict
constexpr int SessionsOfAWorker = 5000;         ///< the driver leaks
constexpr char Mark = '\1';                     ///< begins a result among what a worker prints

qint64 now() {
    return QDeadlineTimer::current().deadline();
}

qsizetype threads() {
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

/// Plays sessions in processes, since a driver may take its process with it, and keeps the books.
class Supervisor {
  public:
    Supervisor(Sessions& sessions, qint64 count) : m_sessions(sessions), m_count(count) {}

    struct Worker {
        qint64 next = 0;  ///< session
        qint64 step = 0;  ///< to the one after it; 0: it is shown, and none comes after it
        pid_t process = 0;
        int output = -1;
        QByteArray partial{};  ///< of a line
        QByteArray said{};     ///< what it printed since the last result
        qint64 lastSign = 0;
        bool hung = false;
    };
    [[noreturn]] void work(Worker worker);
    void run(int workers);
    /// Prints the figures; whether they are as they should be.
    bool report() const;

  private:
    void start(Worker& worker);
    void listen(Worker& worker);
    void bury(Worker& worker);
    void note(qint64 session, Verdict verdict, const QByteArray& words);
    void moveOn(Worker& worker, qint64 from) const;

    Sessions& m_sessions;
    qint64 m_count;
    std::vector<Counts> m_counts{kinds().size()};
    Counts m_told{};
    qint64 m_longest = 0;
    struct Deaths {
        qint64 count = 0;
        qint64 first = 0;
    };
    std::map<QByteArray, Deaths> m_deaths;
};

/// To the next session of the worker's own kind.
void Supervisor::moveOn(Worker& worker, qint64 from) const {
    worker.next = from;
    const bool slow = worker.step % Sessions::slowEach == 0;
    while (worker.next < m_count && Sessions::isSlow(worker.next) != slow)
        worker.next += worker.step;
}

void Supervisor::start(Worker& worker) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) qFatal("No pipe.");
    worker.process = fork();
    if (worker.process == 0) {
        for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
            dup2(ends[1], stream);
        work(worker);
    }
    close(ends[1]);
    worker.output = ends[0];
    worker.partial.clear();
    worker.said.clear();
    worker.lastSign = now();
    worker.hung = false;
}

/// Plays sessions and prints results. Ends the process where a thread was abandoned.
void Supervisor::work(Worker worker) {
    int argc = 0;
    const QCoreApplication application(argc, nullptr);
    ReplyServer server(m_sessions.replies(), 0);
    ado::Connection idle;  // keeps the driver in memory, which otherwise comes and goes with each connection
    idle.setConnectionTimeout(60);  // it is no session: on a busy machine it may take its time
    idle.Open(server.connectionString());
    const qsizetype usualThreads = threads() - server.lines();
    for (int played = 0; worker.next < m_count && played < SessionsOfAWorker; ++played) {
        const Sessions::Session session = m_sessions.session(worker.next);
        QElapsedTimer timer;
        timer.start();
        server.begin(session.mutation);
        const Outcome outcome = session.part.routine.run(server.connectionString());
        const qint64 took = timer.elapsed();
        const Verdict verdict = took > PatienceMilliseconds ? Verdict::Hang : session.judge(outcome);
        const bool only = worker.step == 0;
        if (only) printf("%s\n%s\n", session.name().constData(), qUtf8Printable(outcome.texts.join(u'\n')));
        const QByteArray words =
            outcome.boxes.join(u' ').left(only ? 10000 : 200).toUtf8().replace('\n', ' ');
        printf("%c%d %lld %s\n", Mark, int(verdict), static_cast<long long>(took), words.constData());
        fflush(stdout);
        if (only || (took > 500 && threads() - server.lines() > usualThreads)) break;
        moveOn(worker, worker.next + worker.step);
    }
    _exit(0);
}

/// Takes the results out of what a worker printed.
void Supervisor::listen(Worker& worker) {
    std::array<char, 4096> room;
    const ssize_t count = read(worker.output, room.data(), room.size());
    if (count <= 0) {
        bury(worker);
        return;
    }
    worker.partial.append(room.data(), count);
    worker.lastSign = now();
    for (qsizetype end = 0; (end = worker.partial.indexOf('\n')) >= 0; worker.partial.remove(0, end + 1)) {
        const QByteArray line = worker.partial.left(end);
        if (!line.startsWith(Mark)) {
            worker.said += line + '\n';
            continue;
        }
        const QList<QByteArray> result = line.mid(1).split(' ');
        m_longest = std::max(m_longest, result[1].toLongLong());
        note(worker.next, Verdict(result[0].toInt()), result.mid(2).join(' '));
        moveOn(worker, worker.next + worker.step);
        worker.said.clear();
    }
}

void Supervisor::note(qint64 number, Verdict verdict, const QByteArray& words) {
    const Sessions::Session session = m_sessions.session(number);
    ++m_counts[session.mutation.kind][size_t(verdict)];
    if (verdict == Verdict::Whole || verdict == Verdict::Told || m_told[size_t(verdict)]++ >= MostTold)
        return;
    printf("%s: session %lld, %s. %s\n", verdictNames[size_t(verdict)], static_cast<long long>(number),
           session.name().constData(), words.constData());
}

void Supervisor::bury(Worker& worker) {
    close(worker.output);
    int status = 0;
    waitpid(worker.process, &status, 0);
    worker.process = 0;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        const Death death = deathFrom(worker.said + worker.partial);
        Deaths& deaths = m_deaths[death.what];
        if (deaths.count++ == 0) deaths.first = worker.next;
        note(worker.next,
             worker.hung  ? Verdict::Hang
             : death.ours ? Verdict::Died
                          : Verdict::Driver,
             death.what);
        moveOn(worker, worker.next + worker.step);
    }
    if (worker.next < m_count) start(worker);
}

void Supervisor::run(int workers) {
    const int slow = int(std::min<qint64>(SlowWorkers, m_count / Sessions::slowEach));
    std::vector<Worker> all;
    for (int i = 0; i < workers + slow; ++i) {
        const bool isSlow = i >= workers;
        Worker& worker = all.emplace_back(Worker{0, isSlow ? slow * Sessions::slowEach : workers});
        moveOn(worker, isSlow ? (i - workers) * Sessions::slowEach + Sessions::slowEach - 1 : i);
        start(worker);
    }
    while (std::ranges::any_of(all, [](const Worker& worker) { return worker.process != 0; })) {
        std::vector<pollfd> outputs;
        for (const Worker& worker : all)
            outputs.push_back({worker.process ? worker.output : -1, POLLIN, 0});
        poll(outputs.data(), outputs.size(), 1000);
        for (size_t i = 0; i < all.size(); ++i) {
            if (outputs[i].revents) listen(all[i]);
            if (!all[i].process || all[i].hung || now() - all[i].lastSign < 2 * PatienceMilliseconds)
                continue;
            all[i].hung = true;
            kill(all[i].process, SIGABRT);
        }
    }
}

bool Supervisor::report() const {
    const auto line = [](const char* name, const Counts& counts) {
        printf("%-8s", name);
        for (const qint64 count : counts)
            printf(" %9lld", static_cast<long long>(count));
        printf("\n");
    };
    Counts sums{};
    printf("\n%-8s", "");
    for (const char* name : verdictNames)
        printf(" %9s", name);
    printf("\n");
    for (size_t kind = 0; kind < kinds().size(); ++kind) {
        line(kinds()[kind].name, m_counts[kind]);
        std::ranges::transform(sums, m_counts[kind], sums.begin(), std::plus());
    }
    line("all", sums);
    printf("Longest session: %lld ms\n", static_cast<long long>(m_longest));
    for (const auto& [what, deaths] : m_deaths)
        printf("%6lld deaths, first in session %lld: %s\n", static_cast<long long>(deaths.count),
               static_cast<long long>(deaths.first), what.constData());
    return std::ranges::all_of(std::array{Verdict::Lost, Verdict::Fault, Verdict::Hang, Verdict::Died},
                               [&](Verdict verdict) { return sums[size_t(verdict)] == 0; });
}

}  // namespace

/// Plays sessions with mutated replies in front of all that reads from a server.
int main(int argc, char** argv) {
    const QCommandLineOption count("count", "Plays <N> sessions.", "N", "20000");
    const QCommandLineOption seed("seed", "Of the sessions' mutations.", "S", "1");
    const QCommandLineOption workers("workers", "Processes besides those that wait for time-outs.", "N",
                                     QString::number(3 * QThread::idealThreadCount()));
    const QCommandLineOption only("only", "Plays session <I> alone and shows what it gave.", "I");
    QCommandLineParser parser;
    parser.addOptions({count, seed, workers, only});
    if (!parser.parse(QStringList(argv, argv + argc))) {
        fprintf(stderr, "%s\n%s", qUtf8Printable(parser.errorText()), qUtf8Printable(parser.helpText()));
        return 2;
    }
    setvbuf(stdout, nullptr, _IOLBF, 0);
    Sessions sessions(parser.value(seed).toUInt());
    const qint64 number = parser.value(count).toLongLong();
    printf("Seed %s, %lld sessions\n", qUtf8Printable(parser.value(seed)), static_cast<long long>(number));
    QElapsedTimer timer;
    timer.start();
    Supervisor supervisor(sessions, number);
    if (parser.isSet(only)) supervisor.work({parser.value(only).toLongLong(), 0});
    supervisor.run(parser.value(workers).toInt());
    const bool good = supervisor.report();
    printf("%.0f sessions a second\n", 1000.0 * double(number) / double(timer.elapsed()));
    return good ? 0 : 1;
}
