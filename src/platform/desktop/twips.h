#pragma once

namespace desktop {

/// Window coordinates and sizes are kept in twips: a twip is a fifteenth of a device-independent pixel.
inline constexpr int TwipsPerPixel = 15;

/// Nearest pixel.
constexpr int toPixels(double twips) {
    return static_cast<int>(twips < 0 ? twips / TwipsPerPixel - 0.5 : twips / TwipsPerPixel + 0.5);
}
constexpr int toTwips(int pixels) {
    return pixels * TwipsPerPixel;
}

}  // namespace desktop
