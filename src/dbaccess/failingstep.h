#pragma once

#include "platform/runtimeerror.h"

#include <QtGlobal>

#include <utility>

namespace tw {

/// Runs a step whose failure is no reason to stop: gives 0, or the number of the failure, which is gone then.
template <class Step>
qint32 skipFailing(Step&& step) {
    try {
        std::forward<Step>(step)();
        return 0;
    } catch (...) {
        return platform::currentError().number();
    }
}

}  // namespace tw
