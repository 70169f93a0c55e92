#include "browse/frmdocument.h"
#include "platform/desktop/listview.h"
#include "platform/desktop/treeview.h"
#include "road.h"
#include "shell/frmmain.h"

#include <QFile>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QTemporaryDir>

namespace tour {

namespace {

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Opens the list's menu, chooses an item by its key, and types a file name into the save dialog; what
/// follows is done in the message that comes after it.
void exportTo(Place& place, tw::frmDocument& document, Qt::Key item, const QString& path,
              const QString& suggested, const std::vector<Stage::Within>& after = {}) {
    Stage& stage = place.stage;
    QMenu& menu =
        stage.popUp(place.frame, QStringLiteral("mnuPop2"), *document.lvTblDef().viewport(), {40, 10});
    std::vector<Stage::Within> steps{[&](QWidget& dialog) {
        stage.expectText(dialog.objectName(), QStringLiteral("dlgCommonDialog"),
                         QStringLiteral("the dialog's name"));
        auto* name = dialog.findChild<QLineEdit*>();
        stage.waitFor([&] { return name != nullptr && name->hasFocus(); },
                      QStringLiteral("a name can be typed"));
        stage.expectText(name->text(), suggested, QStringLiteral("the suggested name"));
        if (after.empty()) stage.picture(QStringLiteral("save-dialog"));
        stage.type(*name, path);
        stage.press(*name, Qt::Key_Return);
    }};
    steps.insert(steps.end(), after.begin(), after.end());
    stage.inDialogs([&] { stage.press(menu, item); }, steps);
}

void expectFile(Stage& stage, const QString& path, const QByteArray& end) {
    const QByteArray content = contentOf(path);
    stage.expect(content.startsWith("Server: ") && content.contains("\r\nDatabase: Workshop\r\n"
                                                                    "Table Definition: Mechanic\r\n-----"),
                 QStringLiteral("the head of the file: ") + QString::fromLatin1(content));
    stage.expect(content.endsWith(end),
                 QStringLiteral("the end of the file: ") + QString::fromLatin1(content));
}

}  // namespace

void walkExporting(Place& place) {
    Stage& stage = place.stage;
    stage.say(QStringLiteral("A table's columns in a file"));
    auto& document = *qobject_cast<tw::frmDocument*>(place.frame.activeChild()->widget());
    place.frame.activeChild()->setGeometry(QRect({0, 0}, place.frame.area().viewport()->size() * 3 / 4));
    const QString server = document.tvDB().model()->index(0, 0).data().toString();
    stage.clickNode(document.tvDB(), {server, QStringLiteral("Workshop"), QStringLiteral("Mechanic")}, true);
    stage.picture(QStringLiteral("table-opened"));
    QMenu& menu =
        stage.popUp(place.frame, QStringLiteral("mnuPop2"), *document.lvTblDef().viewport(), {40, 10});
    stage.picture(QStringLiteral("export-menu"));
    stage.press(menu, Qt::Key_Escape);

    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("mechanic.txt"));
    exportTo(place, document, Qt::Key_N, path, QStringLiteral("Mechanic column names.txt"));
    const QByteArray names = contentOf(path);
    expectFile(stage, path, "MechanicId\r\nName\r\nBossId\r\nHiredOn\r\nHourlyRate\r\nPhoto\r\n");

    const QString definitions = QStringLiteral("Mechanic column definitions.txt");
    exportTo(place, document, Qt::Key_D, path, definitions, {[&](QWidget& box) {
                 stage.expectText(stage.messageOf(box),
                                  path + QStringLiteral(" already exists.  \nDo you want to replace it?"),
                                  QStringLiteral("the question"));
                 stage.picture(QStringLiteral("replace-question"));
                 stage.press(box, Qt::Key_Return);
             }});
    stage.expect(contentOf(path) == names, QStringLiteral("Cancel, the default, leaves the file alone"));
    exportTo(place, document, Qt::Key_D, path, definitions,
             {[&](QWidget& box) { stage.clickButton(box, QStringLiteral("OK")); }});
    expectFile(stage, path, ", Yes, \r\n");

    exportTo(place, document, Qt::Key_N, folder.filePath(QStringLiteral("missing/mechanic.txt")),
             QStringLiteral("Mechanic column names.txt"), {[&](QWidget& box) {
                 const QString text = stage.messageOf(box);
                 stage.expect(text.startsWith(QStringLiteral("Error: 76.")),
                              QStringLiteral("a missing folder is reported: ") + text);
                 stage.picture(QStringLiteral("export-failure"));
                 stage.press(box, Qt::Key_Return);
             }});
}

}  // namespace tour
