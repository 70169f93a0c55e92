#pragma once

#include <QString>

class QWidget;

namespace desktop {

/// The commands of Windows Help that the viewer knows, by their numbers there (HELP_CONTENTS,
/// HELP_PARTIALKEY).
enum class HelpCommand { Contents = 3, PartialKey = 261 };

/// Shows a help file, a Markdown text in UTF-8, in the program's one help window, which belongs to the
/// top-level window of `window`. Pictures are files in the help file's folder or below it. Contents opens the
/// first topic; PartialKey searches for the words of `key` and waits for others to be typed. Backslashes in
/// the path may separate folders on every system. When the file is missing or no text, a message box says so
/// and the result is false.
bool WinHelp(QWidget* window, const QString& helpFile, HelpCommand command, const QString& key = {});

}  // namespace desktop
