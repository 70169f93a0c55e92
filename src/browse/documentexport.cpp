// The export of a document window's lists to files.
#include "browse/documentpanes.h"
#include "browse/frmdocument.h"
#include "browse/handler.h"
#include "platform/desktop/titlelabel.h"
#include "platform/filewriting.h"
#include "platform/runtimeerror.h"
#include "platform/windows1252.h"
#include "shell/core/fileasking.h"
#include "shell/core/rowsaving.h"

#include <QFile>
#include <QPointer>

namespace tw {

namespace {

const QString ModuleName = QStringLiteral("frmDocument");
const QString LineEnd = QStringLiteral("\r\n");

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

/// The rows of the table, or the details of the database, that the titles name.
void frmDocument::mnuSaveAs_Click() {
    const auto named = [this](int title) {
        const QString text = m_panes->lblTitle(title).text();
        return text.sliced(text.indexOf(u':') + 1).trimmed();
    };
    const QString table = named(1);
    saveRows(m_data, table.isEmpty() ? named(0) : table, ModuleName);
}

}  // namespace tw
