// Prints a table as the program's list of rows shows it, as JSON: for scripts/compare-cells.py.
#include "dbaccess/dbconnection.h"
#include "platform/controls/listitems.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4) {
        QTextStream(stderr) << "Usage: print-cells CONNECTION-STRING DATABASE TABLE\n";
        return 2;
    }
    tw::DBConnection connection;
    connection.setConnectionString(arguments[1]);
    controls::ListItems list;
    if (connection.FillLvTblData(list, arguments[2], arguments[3], 0).isEmpty()) {
        QTextStream(stderr) << "The rows could not be listed.\n";
        return 1;
    }
    QJsonArray headers;
    for (int column = 0; column < list.headerCount(); ++column)
        headers.append(list.header(column));
    QJsonArray rows;
    for (int item = 0; item < list.count(); ++item) {
        QJsonArray cells;
        for (int column = 0; column < list.headerCount(); ++column)
            cells.append(list.subItem(item, column));
        rows.append(cells);
    }
    QTextStream(stdout) << QJsonDocument(QJsonObject{{"headers", headers}, {"rows", rows}}).toJson();
    return 0;
}
