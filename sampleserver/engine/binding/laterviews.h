#pragma once

#include <QString>

namespace engine {

/// The query behind a catalog view of a later server, "sys.objects", that scripts ask what there is already;
/// empty where there is none. Its columns are those that such questions name.
QString laterView(const QString& database, const QString& owner, const QString& name);

}  // namespace engine
