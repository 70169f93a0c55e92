#pragma once

#include "shell/core/reporterror.h"

#include <QString>

#include <type_traits>
#include <utility>

namespace tw {

/// Runs the body of a window's procedure. A failure is reported under the procedure's own name and ends the
/// body; the result is then false, or whatever an empty value of its type is.
template <class Body>
auto handle(const QString& procedure, const QString& module, Body&& body) {
    using Result = std::invoke_result_t<Body>;
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        QString noExtraText;
        ReportError(procedure, module, noExtraText);
    }
    if constexpr (!std::is_void_v<Result>) return Result{};
}

}  // namespace tw
