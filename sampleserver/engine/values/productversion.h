#pragma once

#include <QtGlobal>

namespace engine {

/// The version that the server tells wherever it is asked: that of the last service pack of 7.0.
struct ProductVersion {
    static constexpr quint8 major = 7;
    static constexpr quint8 minor = 0;
    static constexpr quint16 build = 1063;
};

}  // namespace engine
