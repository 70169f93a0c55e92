#include "platform/desktop/widgetboxes.h"

#include "platform/desktop/filedialog.h"
#include "platform/desktop/messagebox.h"
#include "platform/desktop/msgbox.h"

#include <QApplication>
#include <QFileDialog>
#include <QPointer>
#include <QRegularExpression>

namespace desktop {
namespace {

QWidget* activeWindow() {
    QWidget* modal = QApplication::activeModalWidget();
    return modal ? modal : QApplication::activeWindow();
}

MsgBoxResult showMessageBox(const MsgBoxRequest& request) {
    // Whoever owns the window may delete it, and the box with it, while the box is open.
    const QPointer<MessageBox> box = new MessageBox(request, activeWindow());
    QGuiApplication::setOverrideCursor(Qt::ArrowCursor);  // whoever asks may show the hourglass
    const MsgBoxResult result = box->ask();
    QGuiApplication::restoreOverrideCursor();
    delete box;
    return result;
}

// "txt" of "Text files (*.txt *.log)", empty for "All files (*)".
QString suffixOf(const QString& filter) {
    static const QRegularExpression firstPattern(QStringLiteral(R"(\(\*\.([^\s*?)]+))"));
    return firstPattern.match(filter).captured(1);
}

std::optional<QString> showSaveDialog(const SaveFileRequest& request) {
    const QPointer<QFileDialog> dialog = new QFileDialog(activeWindow(), request.title);
    dialog->setObjectName(request.objectName);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setOption(QFileDialog::DontConfirmOverwrite);
    dialog->setNameFilter(request.filter);
    dialog->setDefaultSuffix(suffixOf(dialog->selectedNameFilter()));
    QObject::connect(dialog, &QFileDialog::filterSelected, dialog,
                     [dialog](const QString& filter) { dialog->setDefaultSuffix(suffixOf(filter)); });
    dialog->selectFile(request.suggestedName);

    std::optional<QString> name;
    if (dialog->exec() == QDialog::Accepted && dialog) name = dialog->selectedFiles().value(0);
    delete dialog;
    return name;
}

}  // namespace

void installWidgetBoxes() {
    setMsgBoxAnswerer(showMessageBox);
    setSaveFileAnswerer(showSaveDialog);
}

}  // namespace desktop
