#include "exportcase.h"

#include "browse/documentpanes.h"
#include "browse/frmdocument.h"
#include "figures.h"
#include "platform/desktop/titlelabel.h"
#include "shell/core/appstate.h"
#include "shell/core/frame.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdio>

namespace bench {

namespace {

constexpr int ListColumns = 4;

class NoFrame : public tw::Frame {
  public:
    void SetMenuAndToolBarControls() override {}
    void popUpConnectMenu(const QPoint&) override {}
    void popUpExportMenu(const QPoint&) override {}
};

void fill(controls::ListItems& list, qint64 rows) {
    for (qint64 row = 0; row < rows; ++row) {
        const int item = list.addItem(QStringLiteral("Column%1").arg(row));
        list.setSubItem(item, 1, QStringLiteral("nVarChar(%1)").arg(row % 4000));
        list.setSubItem(item, 2, row % 3 == 0 ? QStringLiteral("Yes") : QString());
        list.setSubItem(item, 3, row % 7 == 0 ? QStringLiteral("Yes") : QString());
    }
}

/// The least: the same texts, as Latin-1, through C's buffer.
void writeBare(const controls::ListItems& list, const QString& head, const QString& fileName) {
    std::FILE* file = std::fopen(QFile::encodeName(fileName).constData(), "wb");
    if (!file) return;
    std::fputs(head.toLatin1().constData(), file);
    for (int item = 0; item < list.count(); ++item) {
        std::fputs(list.text(item).toLatin1().constData(), file);
        for (int column = 1; column < ListColumns; ++column) {
            std::fputs(", ", file);
            std::fputs(list.subItem(item, column).toLatin1().constData(), file);
        }
        std::fputs("\r\n", file);
    }
    std::fclose(file);
}

QByteArray contents(const QString& fileName) {
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

Result runExportCase(const Request& request) {
    const qint64 columns = request.measures[0];
    const QTemporaryDir folder;
    desktop::SettingsStore settings(folder.filePath(QStringLiteral("settings")));
    tw::AppState state(settings);
    NoFrame frame;
    tw::frmDocument document(state, frame);
    document.setWindowTitle(QStringLiteral("Connected to db1"));
    document.panes().lblTitle(0).setText(QStringLiteral("Database: Large"));
    document.panes().lblTitle(1).setText(QStringLiteral("Table Definition: Wide"));
    const QString head = QStringLiteral("Server: db1\r\nDatabase: Large\r\nTable Definition: Wide\r\n") +
                         QString(31, u'-') + QStringLiteral("\r\n \r\n");
    controls::ListItems list;
    fill(list, columns);

    const QString oursFile = folder.filePath(QStringLiteral("ours.txt"));
    const QString bareFile = folder.filePath(QStringLiteral("bare.txt"));
    const auto ours = [&] {
        QFile::remove(oursFile);  // or it would ask
        document.ExportListViewItems(list, ListColumns, oursFile);
    };
    const auto yardstick = [&] {
        QFile::remove(bareFile);
        writeBare(list, head, bareFile);
    };
    Result result;
    const PeakOfMemory peak;
    ours();
    result.memory = Memory{peak.bytes(), 0, 0};
    yardstick();
    const QByteArray written = contents(oursFile);
    result.memory->texts = static_cast<double>(written.size());
    result.complete = written.count('\n') == columns + 5 && written == contents(bareFile);
    measurePairs(result, request.runs, ours, yardstick);
    result.scale = QStringLiteral("%1 columns").arg(columns);
    return result;
}

}  // namespace bench
