#include "browse/frmdocument.h"
#include "platform/desktop/twips.h"
#include "road.h"
#include "shell/core/appstate.h"
#include "shell/frmmain.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>

namespace tour {

namespace {

void connectSecond(Place& place) {
    Stage& stage = place.stage;
    stage.inDialog(
        [&] { stage.choose(place.frame, QStringLiteral("mnuWindow"), QStringLiteral("mnuWindowNewWindow")); },
        [&](QWidget& dialog) {
            auto& server = stage.find<QComboBox>(dialog, QStringLiteral("cbServer"));
            stage.expectText(server.itemText(1), place.server, QStringLiteral("the server used last"));
            server.setCurrentIndex(1);
            auto& user = stage.find<QLineEdit>(dialog, QStringLiteral("txtUserName"));
            stage.expect(user.isEnabled(), QStringLiteral("the way to log in is remembered"));
            stage.type(user, QStringLiteral("sa"));
            stage.click(stage.find<QPushButton>(dialog, QStringLiteral("cmdOK")));
        });
    stage.expect(place.state.connectedDocuments == 2, QStringLiteral("two documents are connected"));
}

void expectArrangement(Place& place, const QString& item, const QString& name,
                       const std::function<bool(const QRect&, const QRect&)>& holds) {
    Stage& stage = place.stage;
    stage.choose(place.frame, QStringLiteral("mnuWindow"), item);
    const QList<QMdiSubWindow*> windows = place.frame.area().subWindowList();
    stage.expect(windows.size() == 2 && holds(windows[0]->geometry(), windows[1]->geometry()),
                 item + QStringLiteral(" arranges the windows"));
    stage.picture(name);
}

void arrange(Place& place) {
    const QRect area = place.frame.area().viewport()->rect();
    // Windows get no smaller than their least size, and overlap on a screen that is small for its texts.
    const QSize least = place.frame.activeChild()->minimumSizeHint();
    expectArrangement(place, QStringLiteral("mnuWindowCascade"), QStringLiteral("cascade"),
                      [](const QRect& one, const QRect& other) {
                          return one.intersects(other) && one.topLeft() != other.topLeft();
                      });
    expectArrangement(place, QStringLiteral("mnuWindowTileHorizontal"), QStringLiteral("tile-horizontally"),
                      [&](const QRect& one, const QRect& other) {
                          const bool apart = !one.intersects(other) || area.height() < 2 * least.height();
                          return apart && one.left() == other.left() && one.width() == area.width();
                      });
    expectArrangement(place, QStringLiteral("mnuWindowTileVertical"), QStringLiteral("tile-vertically"),
                      [&](const QRect& one, const QRect& other) {
                          const bool apart = !one.intersects(other) || area.width() < 2 * least.width();
                          return apart && one.top() == other.top() && one.height() == area.height();
                      });
}

void changeLayout(Place& place) {
    Stage& stage = place.stage;
    stage.choose(place.frame, QStringLiteral("mnuView"), QStringLiteral("mnuViewVertical"));
    stage.expect(place.state.options.Layout == 2, QStringLiteral("the layout is vertical"));
    stage.expect(stage.find<QAction>(place.frame, QStringLiteral("mnuViewVertical")).isChecked() &&
                     !stage.find<QAction>(place.frame, QStringLiteral("mnuViewHorizontal")).isChecked(),
                 QStringLiteral("the View menu marks the layout"));
    stage.picture(QStringLiteral("vertical-layout"));
    stage.clickTool(place.frame, QStringLiteral("Horizontal"));
    stage.expect(place.state.options.Layout == 1, QStringLiteral("the layout is horizontal again"));

    QMdiSubWindow* child = place.frame.area().activeSubWindow();
    child->resize(500, 360);
    stage.clickTool(place.frame, QStringLiteral("CenterChild"));
    const QPoint offset = child->geometry().center() - place.frame.area().viewport()->rect().center();
    stage.expect(qAbs(offset.x()) <= 1 && qAbs(offset.y()) <= 1,
                 QStringLiteral("the child stands in the middle"));
}

void lookAtHelp(Place& place) {
    Stage& stage = place.stage;
    stage.inDialog(
        [&] { stage.choose(place.frame, QStringLiteral("mnuHelp"), QStringLiteral("mnuHelpAbout")); },
        [&](QWidget& about) {
            stage.expectText(about.windowTitle(), QStringLiteral("About SQL Server Tablewright"),
                             QStringLiteral("the about box"));
            stage.picture(QStringLiteral("about"));
            stage.press(about, Qt::Key_Escape);
        });
    const QWidgetList before = QApplication::topLevelWidgets();
    stage.choose(place.frame, QStringLiteral("mnuHelp"), QStringLiteral("mnuHelpContents"));
    QWidget* help = nullptr;
    stage.waitFor(
        [&] {
            for (QWidget* window : QApplication::topLevelWidgets()) {
                if (window->isVisible() && !before.contains(window)) help = window;
            }
            return help != nullptr;
        },
        QStringLiteral("the help shows"));
    stage.picture(QStringLiteral("help"));
    help->close();
}

}  // namespace

void walkWindows(Place& place) {
    Stage& stage = place.stage;
    stage.say(QStringLiteral("A second window, and the ways to arrange both"));
    connectSecond(place);
    arrange(place);
    changeLayout(place);

    stage.say(QStringLiteral("The toolbar without its labels"));
    stage.choose(place.frame, QStringLiteral("mnuView"), QStringLiteral("mnuViewToolbarLabels"));
    stage.expect(place.state.options.ToolBarCaption == 0, QStringLiteral("the labels are off"));
    stage.picture(QStringLiteral("toolbar-without-labels"));
    stage.choose(place.frame, QStringLiteral("mnuView"), QStringLiteral("mnuViewToolbarLabels"));

    stage.say(QStringLiteral("About and help"));
    lookAtHelp(place);
}

}  // namespace tour
