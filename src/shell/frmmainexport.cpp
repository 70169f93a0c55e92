// The frame's exports of the active document's column definitions.

#include "browse/documentpanes.h"
#include "browse/frmdocument.h"
#include "platform/desktop/filedialog.h"
#include "platform/desktop/titlelabel.h"
#include "shell/core/fileasking.h"
#include "shell/frmmain.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>

namespace tw {

namespace {

/// A file name after the table whose definition is shown.
QString suggestedName(const frmDocument& document, const QString& what) {
    const QString title = document.panes().lblTitle(1).text();
    return fileNameAfter(title.sliced(title.indexOf(u':') + 1).trimmed()) + what + QStringLiteral(".txt");
}

/// The name alone where there is no such folder: the dialog then begins where it likes.
QString inFolder(const QString& folder, const QString& name) {
    return !folder.isEmpty() && QFileInfo(folder).isDir() ? QDir(folder).filePath(name) : name;
}

}  // namespace

void frmMain::mnuPop2ExportColNames_Click() {
    exportDefinitions(1, QStringLiteral("Export Column Names"), QStringLiteral(" column names"));
}

void frmMain::mnuPop2ExportColDef_Click() {
    exportDefinitions(4, QStringLiteral("Export Column Definitions"), QStringLiteral(" column definitions"));
}

void frmMain::exportDefinitions(qint16 columnCount, const QString& title, const QString& what) {
    const QPointer<frmDocument> document(&requireActiveDocument());
    const std::optional<QString> fileName =
        desktop::askSaveFileName({.title = title,
                                  .suggestedName = inFolder(m_exportFolder, suggestedName(*document, what)),
                                  .filter = QStringLiteral("Text files (*.txt);;All files (*)"),
                                  .objectName = QStringLiteral("dlgCommonDialog")});
    // While the dialog is open the program may be ended and the document with it.
    if (!fileName || document.isNull()) return;
    m_exportFolder = QFileInfo(*fileName).path();
    document->ExportListViewItems(document->lvTblDefItems(), columnCount, *fileName);
}

}  // namespace tw
