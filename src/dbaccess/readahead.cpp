#include "dbaccess/readahead.h"

#include "dbaccess/catalogreading.h"
#include "dbaccess/connectionpool.h"
#include "dbaccess/leavingthreads.h"
#include "platform/ado/attendant.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>

namespace tw {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Request = ReadAhead::Request;
using Question = ReadAhead::Question;

constexpr size_t MostReady = 64;      ///< answers that wait to be taken
constexpr auto BetweenAsking = 10ms;  ///< whether to go on

/// How long the line and the server take at least, whatever is asked. Light statements tell that, and before
/// there were any a login, which takes three round trips.
struct Distance {
    Clock::duration login = Clock::duration::max();
    Clock::duration statement = Clock::duration::zero();

    void noteLogin(Clock::duration time) { login = std::min(login, time); }
    void noteStatement(Clock::duration time) {
        statement = statement == Clock::duration::zero() ? time : std::min(statement, time);
    }
    /// One more for each half millisecond of a round trip: nearer, the server's work is all there is to wait
    /// for. Before anything has been answered one, so that a server which takes few logins takes those of
    /// both systems.
    int readers() const {
        if (login == Clock::duration::max()) return 1;
        return ReadAhead::LeastReaders + static_cast<int>(std::min<qint64>(
                                             std::max(login / 3, statement) / 500us, ReadAhead::MostReaders));
    }
};

/// A reader's connection, which lives as long as the reader does; but one that has failed goes before the
/// next is opened, in case the server takes no more.
class OwnConnection final : public KeptConnections {
  public:
    std::optional<ado::Connection> take(const QString& connectionString) override {
        std::optional<ado::Connection> taken;
        if (m_string == connectionString && m_connection && !m_connection->hasFailed()) taken = m_connection;
        m_connection.reset();
        return taken;
    }
    void keep(const QString& connectionString, const ado::Connection& connection) override {
        m_string = connectionString;
        m_connection = connection;
        ++m_logins;
    }
    /// It has been used and may be used again.
    void giveBack(const ado::Connection& connection) { m_connection = connection; }
    int logins() const { return m_logins; }

  private:
    QString m_string;
    std::optional<ado::Connection> m_connection;
    int m_logins = 0;
};

/// Whether a statement would fail so again: the server has refused it, or has not answered in time. What a
/// driver says by itself may come from a line that was lost.
bool isFinal(const ado::Error& error) {
    return error.number() == ado::numbers::TimeOut || (error.nativeError() > 0 && !isLineLost(error));
}

template <class Call>
Clock::duration timed(Call&& call) {
    const auto begin = Clock::now();
    call();
    return Clock::now() - begin;
}

/// Asks on the reader's connection, in the order in which the routine would. Throws OpeningError; and
/// ado::Error when somebody else may have more luck, or rows broke off.
ado::Answers read(const Request& request, OwnConnection& own, Distance& distance) {
    CatalogReading reading({&own, nullptr}, request.question.connectionString, request.question.statement,
                           request.fields);
    const int logins = own.logins();
    const auto opening = timed([&] { reading.open(); });
    own.giveBack(reading.connection());
    if (own.logins() > logins) distance.noteLogin(opening);

    ado::Answers answers;
    const auto ask = [&](const QString& statement, auto&& open) {
        try {
            answers[statement].rows = open();
            return true;
        } catch (const ado::Error& error) {
            if (!isFinal(error)) throw;
            answers[statement].failure = std::current_exception();
            return false;
        }
    };
    if (!ask(request.question.statement, [&] { return std::move(reading.rows()); })) return answers;
    ado::Recordset& rows = answers[request.question.statement].rows;
    if (request.followers && !rows.Eof()) {
        for (const QString& follower : request.followers()) {
            const auto time = timed([&] {
                ask(follower, [&] {
                    ado::Recordset found;
                    found.Open(follower, reading.connection());
                    return found;
                });
            });
            distance.noteStatement(time);
            ado::Answer& answer = answers[follower];
            if (!answer.failure) answer.rows.detach();
            if (!reading.connection().isOpen()) break;  // it has waited in vain
        }
    }
    rows.detach();
    return answers;
}

}  // namespace

/// What the readers and who they read for tell each other.
class ReadAhead::Desk {
  public:
    void expect(std::vector<Request> requests);
    /// Whether one more reader is worth its connection; it counts from then on.
    bool wantsReader(int most);
    /// Until the question has been answered or will not be; false when `goesOn` says no before.
    bool await(const Question& question, const std::function<bool()>& goesOn);
    std::optional<ado::Answers> take(const Question& question);
    /// Nothing is read any more; the readers break off what they are at.
    void stop();
    bool isStopped() const { return m_stopped; }
    bool hasReaders();
    /// Until the last reader has gone; false when `goesOn` says no before.
    bool awaitEnd(const std::function<bool()>& goesOn);

    /// What a reader does, until there is nothing to do any more.
    void work();

  private:
    enum class State { Waiting, Reading, Answered };
    struct Entry {
        Request request;
        State state = State::Waiting;
        ado::Answers answers{};
    };

    template <class Settled>
    bool waitFor(Settled&& isSettled, const std::function<bool()>& goesOn);
    bool isSettled(const Question& question) const;
    void hurry(const Question& question);

    void readOn();
    std::optional<Request> next();
    void deliver(const Question& question, ado::Answers answers, const Distance& distance);
    void giveBack(const Question& question);

    std::mutex m_mutex;
    std::condition_variable m_work;     ///< there is more to do for readers
    std::condition_variable m_settled;  ///< a question has been answered, or a reader has gone
    std::map<Question, Entry> m_entries;
    std::deque<Question> m_waiting;
    size_t m_ready = 0;
    bool m_hurried = false;
    int m_readers = 0;
    int m_idle = 0;
    bool m_refused = false;  ///< a login
    Distance m_distance;
    std::atomic<bool> m_stopped = false;
};

void ReadAhead::Desk::expect(std::vector<Request> requests) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_stopped) return;
        for (Request& request : requests) {
            const Question question = request.question;
            if (m_entries.try_emplace(question, Entry{std::move(request)}).second)
                m_waiting.push_back(question);
        }
    }
    m_work.notify_all();
}

bool ReadAhead::Desk::wantsReader(int most) {
    const std::lock_guard lock(m_mutex);
    const bool busy = m_waiting.size() > static_cast<size_t>(m_idle) && m_ready < MostReady;
    if (m_stopped || m_refused || !busy || m_readers >= std::min(m_distance.readers(), most)) return false;
    ++m_readers;
    ++m_idle;
    return true;
}

template <class Settled>
bool ReadAhead::Desk::waitFor(Settled&& isSettled, const std::function<bool()>& goesOn) {
    std::unique_lock lock(m_mutex);
    while (!m_settled.wait_for(lock, BetweenAsking, isSettled)) {
        lock.unlock();
        if (!goesOn()) return false;
        lock.lock();
    }
    return true;
}

bool ReadAhead::Desk::isSettled(const Question& question) const {
    const auto found = m_entries.find(question);
    return found == m_entries.end() || found->second.state == State::Answered || m_stopped || m_readers == 0;
}

/// What is asked for comes next, whatever else waits to be taken.
void ReadAhead::Desk::hurry(const Question& question) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_entries.find(question);
    if (found == m_entries.end() || found->second.state != State::Waiting) return;
    std::erase(m_waiting, question);
    m_waiting.push_front(question);
    m_hurried = true;
    m_work.notify_one();
}

bool ReadAhead::Desk::await(const Question& question, const std::function<bool()>& goesOn) {
    hurry(question);
    return waitFor([&] { return isSettled(question); }, goesOn);
}

bool ReadAhead::Desk::awaitEnd(const std::function<bool()>& goesOn) {
    return waitFor([this] { return m_readers == 0; }, goesOn);
}

std::optional<ado::Answers> ReadAhead::Desk::take(const Question& question) {
    std::unique_lock lock(m_mutex);
    auto node = m_entries.extract(question);
    if (node.empty()) return std::nullopt;
    if (node.mapped().state != State::Answered) {
        std::erase(m_waiting, question);
        return std::nullopt;
    }
    const bool wasFull = m_ready-- == MostReady;
    lock.unlock();
    if (wasFull) m_work.notify_all();
    return std::move(node.mapped().answers);
}

void ReadAhead::Desk::stop() {
    {
        const std::lock_guard lock(m_mutex);
        m_stopped = true;
    }
    m_work.notify_all();
    m_settled.notify_all();
}

bool ReadAhead::Desk::hasReaders() {
    const std::lock_guard lock(m_mutex);
    return m_readers > 0;
}

std::optional<Request> ReadAhead::Desk::next() {
    std::unique_lock lock(m_mutex);
    m_work.wait(lock,
                [this] { return m_stopped || (!m_waiting.empty() && (m_ready < MostReady || m_hurried)); });
    if (m_stopped) return std::nullopt;
    m_hurried = false;
    --m_idle;
    Entry& entry = m_entries.at(m_waiting.front());
    m_waiting.pop_front();
    entry.state = State::Reading;
    return entry.request;
}

void ReadAhead::Desk::deliver(const Question& question, ado::Answers answers, const Distance& distance) {
    {
        const std::lock_guard lock(m_mutex);
        ++m_idle;
        m_distance = distance;
        const auto found = m_entries.find(question);
        if (found == m_entries.end()) return;  // whoever asked has not waited for it
        ++m_ready;
        found->second.state = State::Answered;
        found->second.answers = std::move(answers);
    }
    m_settled.notify_all();
}

/// A question that a reader cannot log in for is left to the others.
void ReadAhead::Desk::giveBack(const Question& question) {
    const std::lock_guard lock(m_mutex);
    m_refused = true;
    const auto found = m_entries.find(question);
    if (found == m_entries.end()) return;
    found->second.state = State::Waiting;
    m_waiting.push_front(question);
    m_work.notify_one();
}

void ReadAhead::Desk::readOn() {
    OwnConnection own;
    Distance distance;
    while (const std::optional<Request> request = next()) {
        try {
            deliver(request->question, read(*request, own, distance), distance);
        } catch (const OpeningError&) {
            giveBack(request->question);
            return;
        } catch (...) {
            // The line is not to be trusted. Whoever asks reads it himself, and is told.
            stop();
        }
    }
}

void ReadAhead::Desk::work() {
    ado::setAttendant([this] { return !m_stopped; });
    readOn();
    {
        const std::lock_guard lock(m_mutex);
        --m_readers;
    }
    m_settled.notify_all();
}

std::vector<ReadAhead*>& ReadAhead::ofThisThread() {
    thread_local std::vector<ReadAhead*> all;
    return all;
}

ReadAhead::ReadAhead(int mostReaders) : m_desk(std::make_shared<Desk>()), m_mostReaders(mostReaders) {
    ofThisThread().push_back(this);
}

ReadAhead::~ReadAhead() {
    m_desk->stop();
    std::erase(ofThisThread(), this);
}

bool ReadAhead::makeRoom() {
    std::vector<std::shared_ptr<Desk>> desks;
    for (const ReadAhead* ahead : ofThisThread())
        if (ahead->m_desk->hasReaders()) desks.push_back(ahead->m_desk);
    for (const auto& desk : desks)
        desk->stop();
    for (const auto& desk : desks)
        desk->awaitEnd(&ado::attend);
    return !desks.empty();
}

void ReadAhead::engageReaders() {
    while (m_desk->wantsReader(m_mostReaders))
        startLeavingThread([desk = m_desk] { desk->work(); });
}

void ReadAhead::expect(std::vector<Request> requests) {
    m_desk->expect(std::move(requests));
    engageReaders();
}

bool ReadAhead::await(const Question& question, const std::function<bool()>& goesOn) {
    return m_desk->await(question, [&] {
        engageReaders();
        return goesOn();
    });
}

std::optional<ado::Answers> ReadAhead::take(const Question& question) {
    if (!m_desk->await(question, &ado::attend)) throw ado::cancelled();
    engageReaders();
    auto answers = m_desk->take(question);
    // Who reads for himself now may need a login of those that the readers have.
    if (!answers && m_desk->isStopped() && !m_desk->awaitEnd(&ado::attend)) throw ado::cancelled();
    return answers;
}

}  // namespace tw
