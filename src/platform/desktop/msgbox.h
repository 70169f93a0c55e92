#pragma once

#include <QString>

#include <functional>

namespace desktop {

enum class MsgBoxIcon { None, Critical, Question, Exclamation, Information };
enum class MsgBoxButtons { Ok, OkCancel };
enum class MsgBoxResult { Ok, Cancel };

/// What a message box asks.
struct MsgBoxRequest {
    QString text;  ///< lines end with CR LF
    MsgBoxIcon icon = MsgBoxIcon::None;
    QString title;
    MsgBoxButtons buttons = MsgBoxButtons::Ok;
    MsgBoxResult defaultButton = MsgBoxResult::Ok;
};

using MsgBoxAnswerer = std::function<MsgBoxResult(const MsgBoxRequest&)>;

/// Shows a modal message box and returns the button that was pressed; closing it counts as Cancel where there
/// is one, else as OK. An empty title means the application's name.
MsgBoxResult MsgBox(const QString& text, MsgBoxIcon icon, const QString& title = {},
                    MsgBoxButtons buttons = MsgBoxButtons::Ok, MsgBoxResult defaultButton = MsgBoxResult::Ok);

/// Says who shows message boxes: the windows' library in the program, a test in a test. Returns the one
/// before. Without any, MsgBox writes the text to the standard error stream and returns the default button.
MsgBoxAnswerer setMsgBoxAnswerer(MsgBoxAnswerer answerer);

}  // namespace desktop
