#include "compare/completeness.h"

namespace tw {

QString completenessText(Completeness completeness) {
    switch (completeness) {
        case Completeness::Complete:
            return QStringLiteral("Complete");
        case Completeness::PartsUnread:
            return QStringLiteral("Not complete: something could not be read");
        case Completeness::LineLost:
            return QStringLiteral("Not complete: the line to a server was lost");
        case Completeness::Cancelled:
            break;
    }
    return QStringLiteral("Not complete: cancelled");
}

}  // namespace tw
