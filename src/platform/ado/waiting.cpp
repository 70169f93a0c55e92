#include "platform/ado/waiting.h"

#include "platform/ado/worker.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <vector>

namespace ado {

namespace {

using namespace std::chrono_literals;

constexpr auto Patience = 500ms;  // of a call that has been interrupted

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

    bool wait(std::optional<std::chrono::milliseconds> limit) {
        std::unique_lock lock(mutex);
        const auto hasEnded = [this] { return ended; };
        if (limit) return changed.wait_for(lock, *limit, hasEnded);
        changed.wait(lock, hasEnded);
        return true;
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

Ending runWithin(std::optional<std::chrono::milliseconds> limit, std::function<void()> call,
                 const std::function<void()>& interrupt) {
    const auto flight = std::make_shared<Flight>();
    std::unique_ptr<Worker> worker = takeWorker();
    worker->start([flight, call = std::move(call)]() mutable { flight->run(std::move(call)); });
    const bool inTime = flight->wait(limit);
    if (!inTime) {
        interrupt();
        if (!flight->wait(Patience)) {
            worker->abandon();
            return Ending::Abandoned;
        }
    }
    idleWorkers().push_back(std::move(worker));
    if (!inTime) return Ending::Interrupted;
    if (flight->failure) std::rethrow_exception(flight->failure);
    return Ending::InTime;
}

}  // namespace ado
