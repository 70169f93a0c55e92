#include "commandlineclient.h"

#include "dbaccess/catalog.h"
#include "platform/ado/connectionstring.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

namespace bench {

namespace {

QStringList hostAndPort(const QString& connectionString) {
    const ado::ConnectionString string(connectionString);
    const QString server = string.value({u"Server"}).value();
    const auto port = string.value({u"Port"});
    return port ? QStringList{server, *port} : server.split(u',');
}

class Client {
  public:
    explicit Client(const QString& connectionString) : m_address(hostAndPort(connectionString)) {}

    /// Runs statements in a database, the output going to a file; false when the client failed.
    bool run(const QString& database, const QStringList& statements, const QString& outputFile) const {
        QProcess client;
        client.setStandardOutputFile(outputFile);
        client.setStandardErrorFile(QProcess::nullDevice());
        client.start(QStringLiteral("tsql"),
                     {QStringLiteral("-H"), m_address[0], QStringLiteral("-p"), m_address[1],
                      QStringLiteral("-U"), QStringLiteral("sa"), QStringLiteral("-P"), QString(),
                      QStringLiteral("-D"), database, QStringLiteral("-o"), QStringLiteral("q")});
        const QString end = QStringLiteral("\ngo\n");
        client.write((statements.join(end) + end).toUtf8());
        client.closeWriteChannel();
        return client.waitForFinished(-1) && client.exitCode() == 0;
    }

  private:
    QStringList m_address;
};

QStringList linesOf(const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) return {};
    return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

QStringList schemaStatements(const QStringList& tables) {
    QStringList statements{tw::catalog::checkConstraints(), tw::catalog::indexColumns(),
                           tw::catalog::foreignKeys(), tw::catalog::tableList()};
    for (const QString& table : tables) {
        statements += {tw::catalog::columnList(table), tw::catalog::primaryKeyColumns(table),
                       tw::catalog::foreignKeyColumns(table)};
    }
    return statements;
}

/// Runs a shell's line; its exit code.
int shell(const QString& line) {
    return QProcess::execute(QStringLiteral("sh"), {QStringLiteral("-c"), line});
}

}  // namespace

qint64 compareByClient(const QString& connectionString, const QStringList& databases) {
    const QTemporaryDir folder;
    const Client client(connectionString);
    const QString tableFile = folder.filePath(QStringLiteral("tables"));
    if (!client.run(databases[0], {tw::catalog::tableList()}, tableFile)) return -1;
    const QStringList statements = schemaStatements(linesOf(tableFile).sliced(1));  // behind its heading
    for (const QString& database : databases) {
        const QString output = folder.filePath(database);
        if (!client.run(database, statements, output)) return -1;
        // The name of the database stands in each row of a table's columns.
        if (shell(QStringLiteral("sed 's/^%1\\t//' '%2' | LC_ALL=C sort > '%2.sorted'")
                      .arg(database, output)) != 0)
            return -1;
    }
    if (shell(QStringLiteral("cd '%1' && diff '%2.sorted' '%3.sorted' > differences")
                  .arg(folder.path(), databases[0], databases[1])) != 0)
        return -1;
    qint64 columns = 0;
    for (const QString& database : databases)
        columns += linesOf(folder.filePath(database)).filter(QStringLiteral("\tdbo\t")).size();
    return columns;
}

}  // namespace bench
