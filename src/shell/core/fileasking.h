#pragma once

#include <QString>

#include <optional>

namespace tw {

/// A name for a file after a text from a server: no longer than file systems take, and without what they
/// refuse.
QString fileNameAfter(const QString& text);

/// Whether a file may be written: the user is asked where there is one already.
bool mayWrite(const QString& fileName);

/// Asks for the name of a file and, where there is one already, whether it may be replaced; nothing when the
/// user thinks better of it. Events are served meanwhile.
std::optional<QString> askFileToWrite(const QString& title, const QString& suggestedName,
                                      const QString& filter);

}  // namespace tw
