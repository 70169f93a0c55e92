#include "platform/ado/worker.h"

#include <condition_variable>
#include <mutex>
#include <utility>

namespace ado {

struct Worker::State {
    std::mutex mutex;
    std::condition_variable changed;
    bool told = false;
    std::function<void()> task;
    bool ending = false;

    void tell(std::function<void()> newTask, bool end) {
        {
            const std::lock_guard lock(mutex);
            task = std::move(newTask);
            ending = end;
            told = true;
        }
        changed.notify_one();
    }
};

Worker::Worker() : m_state(std::make_shared<State>()) {
    m_thread = std::thread([state = m_state] { run(*state); });
}

Worker::~Worker() {
    m_state->tell({}, true);
    if (m_thread.joinable()) m_thread.join();
}

void Worker::start(std::function<void()> task) {
    m_state->tell(std::move(task), false);
}

void Worker::abandon() {
    m_thread.detach();
}

void Worker::run(State& state) {
    while (true) {
        std::unique_lock lock(state.mutex);
        state.changed.wait(lock, [&] { return state.told; });
        state.told = false;
        const auto task = std::exchange(state.task, {});
        if (state.ending) return;
        lock.unlock();
        task();
    }
}

}  // namespace ado
