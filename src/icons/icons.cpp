#include "icons/icons.h"

#include <QFile>

// The drawings stand in a static library, from which the linker takes only what is asked for by name; the
// macro wants to be used outside of any namespace.
static bool registerDrawings() {
    Q_INIT_RESOURCE(icons);
    return true;
}

namespace tw {

QIcon icon(const QString& name) {
    [[maybe_unused]] static const bool registered = registerDrawings();
    const QString path = QStringLiteral(":/icons/%1.svg").arg(name);
    Q_ASSERT(QFile::exists(path));
    return QIcon(path);
}

}  // namespace tw
