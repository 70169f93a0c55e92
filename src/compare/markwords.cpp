#include "compare/markwords.h"

namespace tw {

QStringList markWords() {
    return {QStringLiteral("heading of constraints"),
            QStringLiteral("heading of indexes"),
            QStringLiteral("heading of foreign keys"),
            QStringLiteral("heading of a table"),
            QStringLiteral("matched"),
            QStringLiteral("unmatched")};
}

}  // namespace tw
