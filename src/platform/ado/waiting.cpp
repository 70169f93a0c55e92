#include "platform/ado/waiting.h"

#include "platform/ado/attendant.h"
#include "platform/ado/worker.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <vector>

namespace ado {

namespace {

using namespace std::chrono_literals;

constexpr auto Patience = 500ms;      // of a call that has been interrupted
constexpr auto BetweenAsking = 10ms;  // the attendant: painted at that pace, windows look alive

Attendant& attendant() {
    thread_local Attendant mine;
    return mine;
}

/// What the two threads share; the last of them ends it.
struct Flight {
    std::mutex mutex;
    std::condition_variable changed;
    bool ended = false;
    std::exception_ptr failure;

    void run(std::function<void()> call) {
        std::exception_ptr thrown;
        try {
            call();
        } catch (...) {
            thrown = std::current_exception();
        }
        call = nullptr;
        {
            const std::lock_guard lock(mutex);
            failure = thrown;
            ended = true;
        }
        // Behind the lock: the waiting thread would only wake to wait for it.
        changed.notify_one();
    }

    /// Until the call has ended or the limit has passed; until the attendant says no, where that counts.
    Ending wait(std::optional<std::chrono::milliseconds> limit, bool mayBreakOff) {
        using Clock = std::chrono::steady_clock;
        const auto end = limit ? Clock::now() + *limit : Clock::time_point::max();
        std::unique_lock lock(mutex);
        while (!changed.wait_until(lock, std::min(end, Clock::now() + BetweenAsking),
                                   [this] { return ended; })) {
            if (Clock::now() >= end) return Ending::TimedOut;
            lock.unlock();
            const bool goesOn = attend();
            lock.lock();
            if (!goesOn && mayBreakOff && !ended) return Ending::BrokenOff;
        }
        return Ending::InTime;
    }
};

/// The calling thread's workers that have nothing to do. There is more than one only where a call is made
/// while another waits.
std::vector<std::unique_ptr<Worker>>& idleWorkers() {
    thread_local std::vector<std::unique_ptr<Worker>> workers;
    return workers;
}

std::unique_ptr<Worker> takeWorker() {
    auto& idle = idleWorkers();
    if (idle.empty()) return std::make_unique<Worker>();
    std::unique_ptr<Worker> worker = std::move(idle.back());
    idle.pop_back();
    return worker;
}

}  // namespace

void setAttendant(Attendant newAttendant) {
    attendant() = std::move(newAttendant);
}

bool attend() {
    return !attendant() || attendant()();
}

Ending runWithin(std::optional<std::chrono::milliseconds> limit, std::function<void()> call,
                 const std::function<void()>& interrupt) {
    const auto flight = std::make_shared<Flight>();
    std::unique_ptr<Worker> worker = takeWorker();
    worker->start([flight, call = std::move(call)]() mutable { flight->run(std::move(call)); });
    const Ending ending = flight->wait(limit, true);
    if (ending != Ending::InTime) {
        interrupt();
        if (flight->wait(Patience, false) != Ending::InTime) {
            worker->abandon();
            return ending;
        }
    }
    idleWorkers().push_back(std::move(worker));
    if (ending == Ending::InTime && flight->failure) std::rethrow_exception(flight->failure);
    return ending;
}

}  // namespace ado
