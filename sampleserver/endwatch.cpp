#include "endwatch.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <cstdio>

#ifdef Q_OS_UNIX
#include <unistd.h>
#else
#include <thread>
#endif

namespace sampleserver {

namespace {

constexpr int kLookMilliseconds = 50;

// The one thing that a signal handler may touch.
volatile std::sig_atomic_t endAsked = 0;

extern "C" void askForEnd(int) {
    endAsked = 1;
}

}  // namespace

EndWatch::EndWatch(bool watchInput) {
    std::signal(SIGINT, askForEnd);
    std::signal(SIGTERM, askForEnd);
    connect(&m_signals, &QTimer::timeout, this, [] {
        if (endAsked) QCoreApplication::quit();
    });
    m_signals.start(kLookMilliseconds);
    if (watchInput) watchStandardInput();
}

EndWatch::~EndWatch() = default;

#ifdef Q_OS_UNIX
void EndWatch::watchStandardInput() {
    m_input = std::make_unique<QSocketNotifier>(STDIN_FILENO, QSocketNotifier::Read);
    connect(m_input.get(), &QSocketNotifier::activated, this, [] {
        char unwanted[256];
        if (read(STDIN_FILENO, unwanted, sizeof(unwanted)) <= 0) QCoreApplication::quit();
    });
}
#else
void EndWatch::watchStandardInput() {
    // A blocking read cannot be called off, so its thread is left to the end of the process.
    std::thread([] {
        while (std::getchar() != EOF) {
        }
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    }).detach();
}
#endif

}  // namespace sampleserver
