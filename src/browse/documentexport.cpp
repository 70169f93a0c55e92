// The export of a document window's list to a text file.
#include "browse/documentpanes.h"
#include "browse/frmdocument.h"
#include "browse/handler.h"
#include "platform/desktop/msgbox.h"
#include "platform/desktop/titlelabel.h"
#include "platform/filewriting.h"
#include "platform/runtimeerror.h"
#include "platform/windows1252.h"

#include <QFile>
#include <QFileInfo>
#include <QPointer>

namespace tw {

namespace {

const QString ModuleName = QStringLiteral("frmDocument");
const QString LineEnd = QStringLiteral("\r\n");

bool mayWrite(const QString& fileName) {
    const QFileInfo file(fileName);
    if (!file.exists() || file.isDir()) return true;
    const QString question = fileName + QStringLiteral(" already exists.  ") + LineEnd +
                             QStringLiteral("Do you want to replace it?     ") + LineEnd;
    return desktop::MsgBox(question, desktop::MsgBoxIcon::Exclamation, ApplicationTitle,
                           desktop::MsgBoxButtons::OkCancel,
                           desktop::MsgBoxResult::Cancel) == desktop::MsgBoxResult::Ok;
}

/// What the caption names, by length alone: whatever it says, its first characters count as "Connected to ".
QString serverOf(const QString& caption) {
    const qsizetype prefix = QStringLiteral("Connected to ").size();
    if (caption.size() < prefix) {
        throw platform::RuntimeError(platform::errors::InvalidCall,
                                     QStringLiteral("Invalid procedure call or argument"));
    }
    return caption.sliced(prefix);
}

void appendRows(QByteArray& bytes, const controls::ListItems& list, int columnCount) {
    for (int item = 0; item < list.count(); ++item) {
        QString line = list.text(item);
        for (int column = 1; column < columnCount; ++column) {
            line += QStringLiteral(", ") + list.subItem(item, column);
        }
        bytes += platform::toWindows1252(line + LineEnd);
    }
}

}  // namespace

void frmDocument::ExportListViewItems(const controls::ListItems& list, qint16 columnCount,
                                      const QString& fileName) {
    handle(QStringLiteral("ExportListViewItems"), ModuleName, [&] {
        const QPointer<frmDocument> stillOpen(this);
        if (!mayWrite(fileName) || stillOpen.isNull()) return;

        QFile file(fileName);
        // Without Qt's buffer, so that no failure hides in it until the file is closed.
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
            platform::throwWriteFailure(fileName, file.errorString());
        }
        QByteArray bytes =
            platform::toWindows1252(QStringLiteral("Server: ") + serverOf(windowTitle()) + LineEnd +
                                    m_panes->lblTitle(0).text() + LineEnd + m_panes->lblTitle(1).text() +
                                    LineEnd + QString(31, u'-') + LineEnd + QStringLiteral(" ") + LineEnd);
        appendRows(bytes, list, columnCount);
        if (!platform::writeAll(file, bytes)) platform::throwWriteFailure(fileName, file.errorString());
        file.close();
        if (file.error() != QFileDevice::NoError) {
            platform::throwWriteFailure(fileName, file.errorString());
        }
    });
}

}  // namespace tw
