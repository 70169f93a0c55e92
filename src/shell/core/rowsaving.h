#pragma once

#include <QString>

class QAbstractItemModel;

namespace tw {

/// Asks for a file and writes the rows of a model to it, as they stand, under the names of the columns: as
/// JSON where its name ends so, an object with "columns" and "rows", each an array of texts; else as CSV (RFC
/// 4180). A null is null in JSON, and in CSV an empty field. The file is written whole or not at all; a
/// failure is reported under the name of the module. Events are served meanwhile, and the model may go.
void saveRows(const QAbstractItemModel& rows, const QString& suggestedName, const QString& moduleName);

}  // namespace tw
