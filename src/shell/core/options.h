#pragma once

namespace tw {

struct AppState;

/// Reads the option values from the settings, all of them or none. Throws RuntimeError 13 or 6 for a stored
/// text that is not the number it should be.
void loadOptions(AppState& state);

/// Writes the option values to the settings; throws what SettingsStore::SaveSetting throws.
void saveOptions(AppState& state);

}  // namespace tw
