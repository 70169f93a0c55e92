#pragma once

#include "platform/ado/error.h"

#include <optional>

/// The failure that a step ends with; nothing when it ends well.
template <typename Step>
std::optional<ado::Error> failureOf(Step&& step) {
    try {
        step();
    } catch (const ado::Error& error) {
        return error;
    }
    return std::nullopt;
}

/// Its number; 0 when the step ends well.
template <typename Step>
qint32 numberOf(Step&& step) {
    const auto failure = failureOf(std::forward<Step>(step));
    return failure ? failure->number() : 0;
}
