#include "platform/runtimeerror.h"

#include <new>

namespace platform {

void throwDuplicateKey() {
    throw RuntimeError(errors::DuplicateCollectionKey,
                       QStringLiteral("This key is already associated with an element of this collection"));
}

void throwNoSuchKey() {
    throw RuntimeError(errors::InvalidCall, QStringLiteral("Invalid procedure call or argument"));
}

RuntimeError currentError() {
    try {
        throw;
    } catch (const RuntimeError& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return {errors::OutOfMemory, QStringLiteral("Out of memory")};
    } catch (const std::exception& error) {
        return {errors::Internal, QString::fromLocal8Bit(error.what())};
    } catch (...) {
        return {errors::Internal, QStringLiteral("Internal error")};
    }
}

}  // namespace platform
