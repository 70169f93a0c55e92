#include "platform/desktop/endsignals.h"

#ifdef Q_OS_UNIX

#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace desktop {

namespace {

constexpr std::array Signals{SIGTERM, SIGINT, SIGHUP};

// A handler may do little more than write a byte; the event loop waits for it at the other end.
volatile std::sig_atomic_t writingEnd = -1;

void writeByte(int) {
    const int before = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(writingEnd, &byte, 1);
    errno = before;
}

}  // namespace

struct EndSignals::Handlers {
    Handlers() {
        if (pipe(ends.data()) != 0) return;
        for (const int end : ends) {
            fcntl(end, F_SETFD, FD_CLOEXEC);
            fcntl(end, F_SETFL, O_NONBLOCK);
        }
        writingEnd = ends[1];
        notifier = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
        for (std::size_t i = 0; i < Signals.size(); ++i) {
            sigaction(Signals[i], nullptr, &before[i]);
            if (before[i].sa_handler == SIG_IGN) continue;
            struct sigaction action {};
            action.sa_handler = writeByte;
            action.sa_flags = SA_RESTART;
            sigaction(Signals[i], &action, nullptr);
        }
    }
    ~Handlers() {
        if (notifier == nullptr) return;
        for (std::size_t i = 0; i < Signals.size(); ++i)
            sigaction(Signals[i], &before[i], nullptr);
        notifier.reset();
        for (const int end : ends)
            close(end);
    }
    Handlers(const Handlers&) = delete;
    Handlers& operator=(const Handlers&) = delete;

    void drain() const {
        std::array<char, 16> bytes;
        while (read(ends[0], bytes.data(), bytes.size()) > 0) {
        }
    }

    std::array<int, 2> ends{-1, -1};
    std::array<struct sigaction, Signals.size()> before{};
    std::unique_ptr<QSocketNotifier> notifier;
};

EndSignals::EndSignals(QObject* parent) : QObject(parent), m_handlers(std::make_unique<Handlers>()) {
    if (m_handlers->notifier == nullptr) return;
    connect(m_handlers->notifier.get(), &QSocketNotifier::activated, this, [this] {
        m_handlers->drain();
        Q_EMIT received();
    });
}

}  // namespace desktop

#else

namespace desktop {

struct EndSignals::Handlers {};

EndSignals::EndSignals(QObject* parent) : QObject(parent) {}

}  // namespace desktop

#endif

desktop::EndSignals::~EndSignals() = default;
