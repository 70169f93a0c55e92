#include "browse/frmdocument.h"
#include "platform/desktop/treeview.h"
#include "road.h"
#include "shell/core/appstate.h"
#include "shell/frmmain.h"

#include <QCheckBox>
#include <QCursor>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

namespace tour {

namespace {

void setOptions(Place& place, QWidget& dialog) {
    Stage& stage = place.stage;
    stage.expectText(dialog.windowTitle(), QStringLiteral("Tablewright Options"),
                     QStringLiteral("the dialog's caption"));
    auto& rows = stage.find<QLineEdit>(dialog, QStringLiteral("txtNumShow"));
    stage.expectText(rows.text(), QStringLiteral("50"), QStringLiteral("the rows to show"));
    stage.picture(QStringLiteral("options-sample-data"));
    const QString refusal = QStringLiteral("Please enter numeric data");
    stage.type(rows, QStringLiteral("3"));
    stage.expectMessage([&] { QTest::keyClicks(&rows, QStringLiteral("O")); }, refusal,
                        QStringLiteral("options-refusal"));
    stage.expectMessage([&] { stage.press(dialog, Qt::Key_Return); }, refusal);
    stage.expect(dialog.isVisible() && rows.selectedText() == QStringLiteral("3O"),
                 QStringLiteral("OK waits for a number"));
    stage.expect(place.state.options.NumberRecShow == 50, QStringLiteral("nothing has changed"));
    QTest::keyClicks(&rows, QStringLiteral("3"));

    auto& tabs = stage.find<QTabWidget>(dialog, QStringLiteral("tsOptions"));
    QTest::mouseClick(tabs.tabBar(), Qt::LeftButton, {}, tabs.tabBar()->tabRect(1).center());
    stage.press(stage.find<QCheckBox>(dialog, QStringLiteral("chkMouseHotTracking")), Qt::Key_Space);
    stage.picture(QStringLiteral("options-mouse"));
    stage.click(stage.find<QPushButton>(dialog, QStringLiteral("cmdApply")));
    stage.expect(dialog.isVisible(), QStringLiteral("Apply leaves the dialog open"));
    stage.press(dialog, Qt::Key_Escape);
}

}  // namespace

void walkOptions(Place& place) {
    Stage& stage = place.stage;
    stage.say(QStringLiteral("The options and what they change"));
    stage.inDialog([&] { stage.clickTool(place.frame, QStringLiteral("Options")); },
                   [&](QWidget& dialog) { setOptions(place, dialog); });

    auto& document = *qobject_cast<tw::frmDocument*>(place.frame.activeChild()->widget());
    desktop::TreeView& tree = document.tvDB();
    const QString server = tree.model()->index(0, 0).data().toString();
    stage.clickNode(tree, {server, QStringLiteral("Workshop"), QStringLiteral("Bicycle")}, true);
    stage.expect(document.lvTblDataItems().count() == 3, QStringLiteral("three rows are listed"));
    stage.expect(tree.hotTracking(), QStringLiteral("the tree tracks the mouse"));
    const QModelIndex under = tree.indexBelow(tree.indexBelow(tree.currentIndex()));
    QCursor::setPos(tree.viewport()->mapToGlobal(tree.visualRect(under).center()));
    stage.waitFor([&] { return tree.viewport()->underMouse(); }, QStringLiteral("the mouse has arrived"));
    stage.picture(QStringLiteral("hot-tracking"));
    stage.expectText(tree.currentIndex().data().toString(), QStringLiteral("Bicycle"),
                     QStringLiteral("the selected table"));
}

}  // namespace tour
