#include "road.h"
#include "shell/core/appstate.h"
#include "shell/frmmain.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>

namespace tour {

void walkLeaving(Place& place) {
    Stage& stage = place.stage;
    stage.say(QStringLiteral("Closing a document, then the program"));
    place.frame.area().activeSubWindow()->close();
    stage.waitFor([&] { return place.state.openDocuments == 1; }, QStringLiteral("the document has closed"));
    stage.expect(place.state.connectedDocuments == 1, QStringLiteral("one document stays connected"));
    place.frame.area().subWindowList().constFirst()->close();
    stage.waitFor([&] { return place.state.openDocuments == 0; },
                  QStringLiteral("both documents have closed"));
    stage.expect(!stage.find<QAction>(place.frame, QStringLiteral("mnuToolQuery")).isEnabled(),
                 QStringLiteral("commands wait for a connection again"));
    stage.picture(QStringLiteral("all-closed"));

    stage.choose(place.frame, QStringLiteral("mnuFile"), QStringLiteral("mnuFileExit"));
    stage.waitFor([&] { return !place.frame.isVisible(); }, QStringLiteral("the program ends"));
    stage.expectText(place.state.setting(QStringLiteral("Layout"), QString()), QStringLiteral("1"),
                     QStringLiteral("the stored layout"));
    stage.expectText(place.state.setting(QStringLiteral("NumberRecShow"), QString()), QStringLiteral("3"),
                     QStringLiteral("the stored rows to show"));
    stage.expectText(place.state.setting(QStringLiteral("MouseHotTracking"), QString()), QStringLiteral("1"),
                     QStringLiteral("the stored hot tracking"));
    stage.expectText(place.state.setting(QStringLiteral("Server1"), QString()), place.server,
                     QStringLiteral("the stored server"));
}

}  // namespace tour
