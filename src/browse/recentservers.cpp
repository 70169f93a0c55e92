#include "browse/recentservers.h"

#include <algorithm>

namespace tw {

QStringList recentServers(const QStringList& stored) {
    QStringList servers = stored;
    servers.removeAll(QString());
    servers.removeDuplicates();
    return servers;
}

std::vector<std::pair<QString, QString>> serversToStore(const QString& text, const QStringList& offered) {
    std::vector<std::pair<QString, QString>> entries;
    if (text != LocalServer) entries.emplace_back(QStringLiteral("Server1"), text);
    const qsizetype count = std::min<qsizetype>(offered.size(), 5);
    for (qsizetype i = 0; i < count; ++i) {
        if (offered[i] == LocalServer) continue;
        entries.emplace_back(QStringLiteral("Server%1").arg(i + 1), offered[i]);
    }
    return entries;
}

}  // namespace tw
