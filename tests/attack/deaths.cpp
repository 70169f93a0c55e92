#include "deaths.h"

#include <QByteArrayList>

#include <algorithm>

// Read by the sanitizers at the start. Nobody may have gigabytes from a server that says so.
extern "C" const char* __asan_default_options() {
    return "handle_abort=1:allocator_may_return_null=1:max_allocation_size_mb=2048:detect_leaks=0:quarantine_"
           "size_mb=16:"
           "stack_trace_format='    #%n %m %o %f %S'";
}
extern "C" const char* __ubsan_default_options() {
    return "print_stacktrace=1:stack_trace_format='    #%n %m %o %f %S'";
}

namespace attack {

namespace {

using Names = std::initializer_list<const char*>;
constexpr Names systems{"libasan", "libubsan", "libc.so", "libpthread", "libstdc++", "libgcc"};
constexpr Names drivers{"libtdsodbc", "libodbc", "libgnutls", "libgssapi"};

bool holdsOneOf(const QByteArray& text, Names names) {
    return std::ranges::any_of(names, [&](const char* name) { return text.contains(name); });
}

}  // namespace

Death deathFrom(const QByteArray& printed) {
    Death death;
    bool sought = true;  ///< the innermost frame that counts, of a stack
    for (const QByteArray& line : printed.split('\n')) {
        if (death.what.isEmpty() &&
            holdsOneOf(line, {"ERROR: Addr", "runtime error:", "Assertion", "terminate"}))
            death.what = line.mid(line.indexOf(": ") + 2).split(' ').mid(0, 5).join(' ');
        // Behind the stack of the failure come those of the memory that it hit.
        sought |= holdsOneOf(line, {"allocated by", "located in stack"});
        const QByteArray frame = line.mid(line.indexOf('/')).replace(" <null>", "");
        const QByteArray module = frame.left(frame.indexOf(' '));
        if (!sought || !line.startsWith("    #") || holdsOneOf(module, systems)) continue;
        sought = false;
        death.ours |= !holdsOneOf(module, drivers);
        death.what += " in " + frame;
    }
    // Our own code has no such assertions.
    if (sought) return {!death.what.contains("Assertion `"), death.what + " (no stack)"};
    return death;
}

}  // namespace attack
