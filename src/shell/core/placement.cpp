#include "shell/core/placement.h"

#include "platform/conversions.h"
#include "shell/core/appstate.h"

namespace tw {

namespace {

const QString LeftKey = QStringLiteral("MainLeft");
const QString TopKey = QStringLiteral("MainTop");
const QString WidthKey = QStringLiteral("MainWidth");
const QString HeightKey = QStringLiteral("MainHeight");

const QString NeverSavedText = QStringLiteral("9999");
constexpr float NeverSaved = 9999;
constexpr float ScreenMargin = 1000;

}  // namespace

Placement loadPlacement(const AppState& state) {
    const auto stored = [&](const QString& key) {
        return state.setting(key, NeverSavedText, platform::toSingle);
    };
    return {.left = stored(LeftKey),
            .top = stored(TopKey),
            .width = stored(WidthKey),
            .height = stored(HeightKey)};
}

void savePlacement(AppState& state, const Placement& placement) {
    state.saveSetting(LeftKey, platform::singleText(placement.left));
    state.saveSetting(TopKey, platform::singleText(placement.top));
    state.saveSetting(WidthKey, platform::singleText(placement.width));
    state.saveSetting(HeightKey, platform::singleText(placement.height));
}

StartPlacement startPlacement(const Placement& stored, float screenWidth, float screenHeight) {
    const Placement insideScreen{0, 0, screenWidth - ScreenMargin, screenHeight - ScreenMargin};
    if (stored.top == NeverSaved) return {insideScreen, true};
    if (stored.height > screenHeight || stored.width > screenWidth) return {insideScreen, false};
    return {stored, false};
}

}  // namespace tw
