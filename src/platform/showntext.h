#pragma once

#include <QString>

namespace platform {

// How a text from outside is shown, wherever it is painted: no longer than anyone could read, and what a text
// engine would obey instead of showing it (control characters, directional marks, half a surrogate pair) as a
// visible sign, "⟨LF⟩" or "⟨U+202E⟩". Letters that are written from right to left stay as they are. What is
// copied, stored or sent is never the shown text.

/// Most characters shown of a cell, a name or a caption.
inline constexpr qsizetype ShownOfLine = 1000;
/// Most characters shown of a text of several lines: as many as a server's message can have.
inline constexpr qsizetype ShownOfLines = 65'535;

/// The text on one line; an ellipsis ends it where it is cut.
QString shownLine(const QString& text, qsizetype most = ShownOfLine);

/// The text with its line ends (CR LF becomes LF) and tabs, without blanks and empty lines at its end.
QString shownLines(const QString& text, qsizetype most = ShownOfLines);

}  // namespace platform
