#include "shell/core/reporterror.h"

#include "platform/ado/error.h"
#include "platform/desktop/msgbox.h"
#include "platform/runtimeerror.h"
#include "shell/core/appstate.h"

namespace tw {

namespace {

const QString LineBreak = QStringLiteral("\r\n");
const QString BlankLine = LineBreak + LineBreak;

QString hintFor(qint32 number) {
    if (number == ado::numbers::LoginFailed) {
        return QStringLiteral("Please make sure your User ID and Password have been entered correctly.") +
               BlankLine;
    }
    if (number == ado::numbers::Unspecified) {
        return QStringLiteral(
                   "Please make sure that the Server Name has been entered correctly "
                   "and the SQL Server has started successfully.") +
               BlankLine;
    }
    return {};
}

}  // namespace

void ReportError(const QString& procedureName, const QString& moduleName, QString& extraText) {
    const platform::RuntimeError error = platform::currentError();
    if (!extraText.isEmpty()) extraText += BlankLine;

    const QString head = QStringLiteral("Error: ") + QString::number(error.number()) + u'.' + LineBreak +
                         error.description() + BlankLine;
    const QString debugLine = QStringLiteral("Debug Information: Error occured in subroutine ") +
                              procedureName + QStringLiteral(" of module ") + moduleName +
                              QStringLiteral(".     ") + BlankLine;
    try {
        desktop::MsgBox(head + hintFor(error.number()) + extraText + debugLine,
                        desktop::MsgBoxIcon::Exclamation, ApplicationTitle + QStringLiteral(" - Error!"));
    } catch (...) {
        // A report that cannot be shown must not become a second failure of the procedure that reports.
    }
}

}  // namespace tw
