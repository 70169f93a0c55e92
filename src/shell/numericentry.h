#pragma once

#include <QtGlobal>

#include <optional>

class QLineEdit;

namespace tw {

/// The whole number in a box, as platform::wholeNumber() takes it. When there is none the user is told so,
/// and the box then has the focus and its whole text selected. The box may be gone afterwards, since events
/// are served while the message is open.
std::optional<qint32> requireNumber(QLineEdit& entry);

}  // namespace tw
