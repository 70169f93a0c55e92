#include "shell/core/fileasking.h"

#include "platform/desktop/filedialog.h"
#include "platform/desktop/msgbox.h"
#include "shell/core/appstate.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace tw {

QString fileNameAfter(const QString& text) {
    constexpr qsizetype LongestName = 60;  // file systems count 255 bytes, of which a character may take 3
    static const QRegularExpression unfit(QStringLiteral(R"([\\/:*?"<>|\x00-\x1f])"));
    return text.left(LongestName).replace(unfit, QStringLiteral("_"));
}

bool mayWrite(const QString& fileName) {
    const QFileInfo file(fileName);
    if (!file.exists() || file.isDir()) return true;
    const QString question = fileName + QStringLiteral(" already exists.  \r\n") +
                             QStringLiteral("Do you want to replace it?     \r\n");
    return desktop::MsgBox(question, desktop::MsgBoxIcon::Exclamation, ApplicationTitle,
                           desktop::MsgBoxButtons::OkCancel,
                           desktop::MsgBoxResult::Cancel) == desktop::MsgBoxResult::Ok;
}

std::optional<QString> askFileToWrite(const QString& title, const QString& suggestedName,
                                      const QString& filter) {
    const std::optional<QString> name =
        desktop::askSaveFileName({.title = title,
                                  .suggestedName = suggestedName,
                                  .filter = filter,
                                  .objectName = QStringLiteral("dlgCommonDialog")});
    return name && mayWrite(*name) ? name : std::nullopt;
}

}  // namespace tw
