#include "deaths.h"

#include <QList>

#include <execinfo.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>

// Read by the sanitizers at the start. Nobody may have memory in thousands of megabytes from a server that
// says so.
extern "C" const char* __asan_default_options() {
    return "handle_abort=1:allocator_may_return_null=1:max_allocation_size_mb=2048:detect_leaks=0:"
           "stack_trace_format='    #%n %m %o %f %S'";
}
extern "C" const char* __ubsan_default_options() {
    return "print_stacktrace=1:stack_trace_format='    #%n %m %o %f %S'";
}

namespace attack {

namespace {

[[maybe_unused]] void trace(int signal) {
    std::array<void*, 64> frames;
    backtrace_symbols_fd(frames.data(), backtrace(frames.data(), int(frames.size())), STDERR_FILENO);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

/// A frame's module and the rest of its line; both tracers write the module's path first.
struct Frame {
    QByteArray module;
    QByteArray text;
};

Frame frameOf(const QByteArray& line) {
    const qsizetype path = line.indexOf('/');
    const bool sanitizers = line.startsWith("    #") && path > 0;
    const bool own = path == 0 && line.contains('(') && line.endsWith(']');
    if (!sanitizers && !own) return {};
    const QByteArray text = own ? line.left(line.lastIndexOf('[')) : line.mid(path).replace(" <null>", "");
    return {text.left(text.indexOf(own ? '(' : ' ')), text};
}

constexpr std::initializer_list<const char*> systems{"libasan",    "libubsan",  "libc.so",
                                                     "libpthread", "libstdc++", "libgcc"};
constexpr std::initializer_list<const char*> drivers{"libtdsodbc", "libodbc", "libgnutls", "libgssapi"};

bool isOneOf(const QByteArray& module, std::initializer_list<const char*> names) {
    return std::ranges::any_of(names, [&](const char* name) { return module.contains(name); });
}

}  // namespace

void leaveTraces() {
#ifndef __SANITIZE_ADDRESS__
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT})
        std::signal(signal, trace);
#endif
}

Death deathFrom(const QByteArray& errors) {
    Death death{false, {}};
    bool sought = true;  ///< the innermost frame that counts, of a stack
    for (const QByteArray& line : errors.split('\n')) {
        if (death.what.isEmpty() &&
            isOneOf(line, {"ERROR: Addr", "runtime error:", "Assertion", "terminate called"}))
            death.what = line.mid(line.indexOf(": ") + 2).split(' ').mid(0, 5).join(' ');
        // Behind the stack of the failure come those of the memory that it hit.
        sought |= isOneOf(line, {"allocated by", "located in stack"});
        const Frame frame = frameOf(line);
        if (!sought || frame.module.isEmpty() || isOneOf(frame.module, systems)) continue;
        sought = false;
        death.ours |= !isOneOf(frame.module, drivers);
        death.what += " in " + frame.text;
    }
    if (sought) return {true, death.what + " (no trace) " + errors.right(300)};
    return death;
}

}  // namespace attack
