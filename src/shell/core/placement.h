#pragma once

namespace tw {

struct AppState;

/// Where a window stands and how large it is, in twips.
struct Placement {
    float left = 0;
    float top = 0;
    float width = 0;
    float height = 0;

    bool operator==(const Placement&) const = default;
};

/// How the main frame appears when it starts.
struct StartPlacement {
    Placement placement;
    bool maximised = false;

    bool operator==(const StartPlacement&) const = default;
};

/// The placement of the last run; every value is 9999 when nothing was saved. Throws RuntimeError 13 for a
/// stored text that is no number.
Placement loadPlacement(const AppState& state);
void savePlacement(AppState& state, const Placement& placement);

/// The stored placement, unless it is a first run (the frame then starts maximised) or does not fit a screen
/// of the given size in twips.
StartPlacement startPlacement(const Placement& stored, float screenWidth, float screenHeight);

}  // namespace tw
