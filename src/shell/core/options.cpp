#include "shell/core/options.h"

#include "platform/conversions.h"
#include "shell/core/appstate.h"

namespace tw {

namespace {

const QString LayoutKey = QStringLiteral("Layout");
const QString NumberRecShowKey = QStringLiteral("NumberRecShow");
const QString MouseClickOptionKey = QStringLiteral("MouseClickOption");
const QString ToolBarCaptionKey = QStringLiteral("ToolBarCaption");
const QString MouseHotTrackingKey = QStringLiteral("MouseHotTracking");

}  // namespace

void loadOptions(AppState& state) {
    const auto load = [&](auto& value, const QString& key, auto converted) {
        value = state.setting(key, QString::number(value), converted);
    };
    Options options;
    load(options.Layout, LayoutKey, platform::toInteger);
    load(options.NumberRecShow, NumberRecShowKey, platform::toLong);
    load(options.MouseClickOption, MouseClickOptionKey, platform::toInteger);
    load(options.ToolBarCaption, ToolBarCaptionKey, platform::toInteger);
    load(options.MouseHotTracking, MouseHotTrackingKey, platform::toInteger);
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
