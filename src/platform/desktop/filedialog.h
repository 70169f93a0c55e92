#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace desktop {

/// What a save box asks.
struct SaveFileRequest {
    QString title;
    QString suggestedName;  ///< with its folder, or alone
    QString filter;         ///< "Text files (*.txt);;All files (*)"
    QString objectName{};   ///< of the box
};

using SaveFileAnswerer = std::function<std::optional<QString>(const SaveFileRequest&)>;

/// Asks for the name of a file to write; nothing when the user cancels. The box itself does not ask whether
/// an existing file may be replaced: the writer does.
std::optional<QString> askSaveFileName(const SaveFileRequest& request);

/// As setMsgBoxAnswerer. Without any, askSaveFileName returns nothing.
SaveFileAnswerer setSaveFileAnswerer(SaveFileAnswerer answerer);

}  // namespace desktop
