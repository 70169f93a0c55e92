#include "platform/desktop/filedialog.h"

#include <utility>

namespace desktop {
namespace {

SaveFileAnswerer& currentAnswerer() {
    static SaveFileAnswerer answerer;
    return answerer;
}

}  // namespace

std::optional<QString> askSaveFileName(const SaveFileRequest& request) {
    const SaveFileAnswerer answerer = currentAnswerer();
    return answerer ? answerer(request) : std::nullopt;
}

SaveFileAnswerer setSaveFileAnswerer(SaveFileAnswerer answerer) {
    return std::exchange(currentAnswerer(), std::move(answerer));
}

}  // namespace desktop
