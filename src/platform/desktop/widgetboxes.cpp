#include "platform/desktop/widgetboxes.h"

#include "platform/desktop/filedialog.h"
#include "platform/desktop/msgbox.h"

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>
#include <QRegularExpression>

namespace desktop {
namespace {

QWidget* activeWindow() {
    QWidget* modal = QApplication::activeModalWidget();
    return modal ? modal : QApplication::activeWindow();
}

QMessageBox::Icon iconOf(MsgBoxIcon icon) {
    switch (icon) {
        case MsgBoxIcon::Critical:
            return QMessageBox::Critical;
        case MsgBoxIcon::Question:
            return QMessageBox::Question;
        case MsgBoxIcon::Exclamation:
            return QMessageBox::Warning;
        case MsgBoxIcon::Information:
            return QMessageBox::Information;
        case MsgBoxIcon::None:
            break;
    }
    return QMessageBox::NoIcon;
}

// Blanks and lines at the end only make the box larger.
QString shownText(const MsgBoxRequest& request) {
    QString text = request.text;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    while (!text.isEmpty() && text.back().isSpace()) {
        text.chop(1);
    }
    return text;
}

MsgBoxResult showMessageBox(const MsgBoxRequest& request) {
    // Whoever owns the window may delete it, and the box with it, while the box is open.
    const QPointer<QMessageBox> box = new QMessageBox(activeWindow());
    box->setWindowTitle(request.title);
    box->setIcon(iconOf(request.icon));
    box->setTextFormat(Qt::PlainText);
    box->setText(shownText(request));
    box->setTextInteractionFlags(Qt::TextSelectableByMouse);
    box->addButton(QMessageBox::Ok);
    if (request.buttons == MsgBoxButtons::OkCancel) box->addButton(QMessageBox::Cancel);
    const bool cancelFirst = request.defaultButton == MsgBoxResult::Cancel;
    box->setDefaultButton(cancelFirst ? QMessageBox::Cancel : QMessageBox::Ok);

    QGuiApplication::setOverrideCursor(Qt::ArrowCursor);  // whoever asks may show the hourglass
    const int pressed = box->exec();
    QGuiApplication::restoreOverrideCursor();
    delete box;
    const bool cancelled = request.buttons == MsgBoxButtons::OkCancel && pressed != QMessageBox::Ok;
    return cancelled ? MsgBoxResult::Cancel : MsgBoxResult::Ok;
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
