#include "dbaccess/leavingthreads.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace tw {

namespace {

struct Leaving {
    std::thread thread;
    std::shared_ptr<std::atomic<bool>> ended;
};

/// Those that may run still; used by the thread that owns the windows only.
struct Threads {
    ~Threads() {
        for (Leaving& leaving : all)
            leaving.thread.join();
    }
    void joinEnded() {
        const auto ended =
            std::ranges::partition(all, [](const Leaving& leaving) { return !*leaving.ended; });
        for (Leaving& leaving : ended)
            leaving.thread.join();
        all.erase(ended.begin(), ended.end());
    }

    std::vector<Leaving> all;
};

}  // namespace

void startLeavingThread(std::function<void()> task) {
    static Threads threads;
    threads.joinEnded();
    const auto ended = std::make_shared<std::atomic<bool>>(false);
    threads.all.push_back({std::thread([task = std::move(task), ended]() mutable {
                               task();
                               task = nullptr;
                               *ended = true;
                           }),
                           ended});
}

}  // namespace tw
