#pragma once

#include <QStringList>

namespace tw {

/// What the marks of result rows say, in the order of Comparison::Icon: matched, unmatched, or what the row
/// is the heading of. Every row has one.
QStringList markWords();

}  // namespace tw
