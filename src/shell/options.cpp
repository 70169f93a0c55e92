#include "shell/options.h"

#include "platform/conversions.h"
#include "shell/appstate.h"

namespace tw {

namespace {

const QString LayoutKey = QStringLiteral("Layout");
const QString NumberRecShowKey = QStringLiteral("NumberRecShow");
const QString MouseClickOptionKey = QStringLiteral("MouseClickOption");
const QString ToolBarCaptionKey = QStringLiteral("ToolBarCaption");
const QString MouseHotTrackingKey = QStringLiteral("MouseHotTracking");

}  // namespace

void loadOptions(AppState& state) {
    const Options defaults;
    const auto stored = [&](const QString& key, qint32 defaultValue) {
        return state.setting(key, QString::number(defaultValue));
    };

    Options options;
    options.Layout = platform::toInteger(stored(LayoutKey, defaults.Layout));
    options.NumberRecShow = platform::toLong(stored(NumberRecShowKey, defaults.NumberRecShow));
    options.MouseClickOption = platform::toInteger(stored(MouseClickOptionKey, defaults.MouseClickOption));
    options.ToolBarCaption = platform::toInteger(stored(ToolBarCaptionKey, defaults.ToolBarCaption));
    options.MouseHotTracking = platform::toInteger(stored(MouseHotTrackingKey, defaults.MouseHotTracking));
    state.options = options;
}

void saveOptions(AppState& state) {
    const Options& options = state.options;
    const auto store = [&](const QString& key, qint32 value) {
        state.saveSetting(key, QString::number(value));
    };

    store(LayoutKey, options.Layout);
    store(NumberRecShowKey, options.NumberRecShow);
    store(ToolBarCaptionKey, options.ToolBarCaption);
    store(MouseClickOptionKey, options.MouseClickOption);
    store(MouseHotTrackingKey, options.MouseHotTracking);
}

}  // namespace tw
