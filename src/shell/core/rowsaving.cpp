#include "shell/core/rowsaving.h"

#include "platform/controls/rowstore.h"
#include "platform/csv.h"
#include "platform/filewriting.h"
#include "shell/core/fileasking.h"
#include "shell/core/reporterror.h"

#include <QAbstractItemModel>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPointer>
#include <QTextStream>

namespace tw {

namespace {

QStringList columnNames(const QAbstractItemModel& rows) {
    QStringList names;
    for (int column = 0; column < rows.columnCount(); ++column)
        names += rows.headerData(column, Qt::Horizontal, Qt::EditRole).toString();
    return names;
}

/// The texts of a row, a null where the server sent none.
QStringList textsOf(const QAbstractItemModel& rows, int row) {
    QStringList texts;
    for (int column = 0; column < rows.columnCount(); ++column) {
        const QModelIndex cell = rows.index(row, column);
        const QString text = cell.data(Qt::EditRole).toString();
        const bool isNull = cell.data(controls::MarkerRole).toBool() &&
                            (text == QStringLiteral("NULL") || text == QStringLiteral("<NULL>"));
        texts += isNull ? QString() : text.isNull() ? QStringLiteral("") : text;
    }
    return texts;
}

void writeCsv(const QAbstractItemModel& rows, QIODevice& device) {
    QTextStream out(&device);
    platform::writeCsvRecord(out, columnNames(rows));
    for (int row = 0; row < rows.rowCount(); ++row)
        platform::writeCsvRecord(out, textsOf(rows, row));
}

QByteArray jsonOf(const QStringList& texts) {
    QJsonArray array;
    for (const QString& text : texts)
        array.append(text.isNull() ? QJsonValue() : QJsonValue(text));
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

void writeJson(const QAbstractItemModel& rows, QIODevice& device) {
    device.write("{\"columns\":" + jsonOf(columnNames(rows)) + ",\"rows\":[");
    for (int row = 0; row < rows.rowCount(); ++row)
        device.write((row > 0 ? ",\n" : "\n") + jsonOf(textsOf(rows, row)));
    device.write("]}\n");
}

}  // namespace

void saveRows(const QAbstractItemModel& rows, const QString& suggestedName, const QString& moduleName) {
    const QPointer<const QAbstractItemModel> stillThere(&rows);
    try {
        // Without a dot: what stands behind one would count as the ending.
        const std::optional<QString> path =
            askFileToWrite(QStringLiteral("Save Rows"), fileNameAfter(suggestedName).replace(u'.', u'_'),
                           QStringLiteral("Comma-separated values (*.csv);;JSON (*.json);;All files (*)"));
        if (!path || !stillThere) return;
        const bool asJson = QFileInfo(*path).suffix().toLower() == QStringLiteral("json");
        platform::saveFile(*path, [&](QIODevice& file) { (asJson ? writeJson : writeCsv)(rows, file); });
    } catch (...) {
        QString noExtraText;
        ReportError(QStringLiteral("mnuSaveAs_Click"), moduleName, noExtraText);
    }
}

}  // namespace tw
