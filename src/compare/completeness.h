#pragma once

#include <QString>

namespace tw {

/// How far a comparison came.
enum class Completeness {
    Complete,
    PartsUnread,  ///< it came to its end, but something could not be read
    LineLost,     ///< a system could not be reached, or no longer
    Cancelled,
};

/// The same for people.
QString completenessText(Completeness completeness);

}  // namespace tw
