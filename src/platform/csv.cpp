#include "platform/csv.h"

#include <QTextStream>

#include <algorithm>

namespace platform {

void writeCsvRecord(QTextStream& out, const QStringList& fields) {
    for (qsizetype i = 0; i < fields.size(); ++i) {
        if (i > 0) out << ',';
        const QString& field = fields[i];
        if (std::ranges::any_of(field, [](QChar c) { return QStringView(u",\"\r\n").contains(c); })) {
            out << '"' << QString(field).replace(u'"', QStringLiteral("\"\"")) << '"';
        } else {
            out << field;
        }
    }
    out << "\r\n";
}

}  // namespace platform
