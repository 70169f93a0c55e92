#include "engine/store/storefunctions.h"

#include "engine/store/storecall.h"
#include "engine/values/conversions.h"

#include <array>

namespace engine {

namespace {

/// ts_convert(value, from, to, style)
void convert(StoreCall& call) {
    const SqlType from = call.type(1);
    const SqlType to = call.type(2);
    call.result(convertValue(call.value(0, from), from, to, false, static_cast<int>(call.integer(3))), to);
}

constexpr StoreFunction convertFunction{"ts_convert", 4, convert};

}  // namespace

qint64 packType(const SqlType& type) {
    return static_cast<qint64>(type.id) | static_cast<qint64>(type.length) << 8 |
           static_cast<qint64>(type.precision) << 32 | static_cast<qint64>(type.scale) << 40;
}

SqlType unpackType(qint64 packed) {
    return {.id = static_cast<TypeId>(packed & 0xFF),
            .length = static_cast<int>(packed >> 8 & 0xFFFFFF),
            .precision = static_cast<int>(packed >> 32 & 0xFF),
            .scale = static_cast<int>(packed >> 40 & 0xFF)};
}

void registerStoreFunctions(sqlite3* store) {
    registerStoreFunction(store, convertFunction);
    registerTextFunctions(store);
    registerNumberFunctions(store);
    registerDateFunctions(store);
    registerAggregates(store);
}

}  // namespace engine
