#pragma once

#include <QString>
#include <QStringList>

#include <utility>
#include <vector>

namespace tw {

/// The entry for the server on the user's own machine: always first in the list, never stored.
inline const QString LocalServer = QStringLiteral("(local)");

/// What the list offers below "(local)": the stored servers without empty ones and repetitions; the case
/// counts.
QStringList recentServers(const QStringList& stored);

/// What is to be stored under which key, in the order of writing, when `text` was used last and `offered` is
/// the list it was chosen beside. The list moves down by one behind `text` and is not cleaned of repetitions,
/// which reading does; so up to five are stored though four are read.
std::vector<std::pair<QString, QString>> serversToStore(const QString& text, const QStringList& offered);

}  // namespace tw
