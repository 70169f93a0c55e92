#include "platform/desktop/failures.h"

#include <QCoreApplication>

#include <cstdio>

namespace desktop {
namespace {

void writeAndQuit(const platform::RuntimeError& error) {
    std::fprintf(stderr, "Run-time error '%d': %s\n", error.number(), error.what());
    QCoreApplication::exit(1);
}

UnhandledFailureHandler& currentHandler() {
    static UnhandledFailureHandler handler;
    return handler;
}

}  // namespace

UnhandledFailureHandler setUnhandledFailureHandler(UnhandledFailureHandler handler) {
    return std::exchange(currentHandler(), std::move(handler));
}

void handleUnhandledFailure() noexcept {
    const platform::RuntimeError error = platform::currentError();
    const UnhandledFailureHandler handler = currentHandler();
    if (handler) {
        handler(error);
    } else {
        writeAndQuit(error);
    }
}

}  // namespace desktop
