#pragma once

#include "platform/runtimeerror.h"

#include <QObject>

#include <concepts>
#include <functional>
#include <type_traits>
#include <utility>

namespace desktop {

/// Takes a failure that no procedure handled. Must not throw.
using UnhandledFailureHandler = std::function<void(const platform::RuntimeError&)>;

/// Says what becomes of unhandled failures; returns the handler before. Without any, number and description
/// go to the standard error stream and the event loop quits with code 1.
UnhandledFailureHandler setUnhandledFailureHandler(UnhandledFailureHandler handler);

/// Hands the failure that is being handled to the handler, so it is called in a catch clause.
void handleUnhandledFailure() noexcept;

/// Runs `function` and hands what it throws to the unhandled failure handler. Everything that Qt calls and
/// that may throw runs in here, since exceptions must not pass through Qt's frames.
/// Returns whether the function ended without a failure.
template <std::invocable Function>
bool guard(Function&& function) noexcept {
    try {
        std::invoke(std::forward<Function>(function));
        return true;
    } catch (...) {
        handleUnhandledFailure();
        return false;
    }
}

/// A callable in a guard; takes what the callable takes.
template <typename Function>
class Guarded {
  public:
    explicit Guarded(Function function) : m_function(std::move(function)) {}

    template <typename... Arguments>
    requires std::invocable<Function&, Arguments...>
    void operator()(Arguments&&... arguments) {
        guard([&] { std::invoke(m_function, std::forward<Arguments>(arguments)...); });
    }

  private:
    Function m_function;
};

/// QObject::connect with the receiving side in a guard. `slot` is a member function of `context` or a
/// callable; it may take fewer arguments than the signal has.
template <typename Sender, typename Signal, typename Context, typename Slot>
QMetaObject::Connection connectGuarded(Sender* sender, Signal signal, Context* context, Slot slot,
                                       Qt::ConnectionType type = Qt::AutoConnection) {
    if constexpr (std::is_member_function_pointer_v<Slot>) {
        return QObject::connect(sender, signal, context, Guarded(std::bind_front(slot, context)), type);
    } else {
        return QObject::connect(sender, signal, context, Guarded(std::move(slot)), type);
    }
}

}  // namespace desktop
