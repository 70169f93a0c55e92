#include "platform/runtimeerror.h"

#include <new>

namespace platform {

RuntimeError currentError() {
    try {
        throw;
    } catch (const RuntimeError& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return {7, QStringLiteral("Out of memory")};
    } catch (const std::exception& error) {
        return {51, QString::fromLocal8Bit(error.what())};
    } catch (...) {
        return {51, QStringLiteral("Internal error")};
    }
}

}  // namespace platform
