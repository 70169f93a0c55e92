#include "shell/maintoolbar.h"

#include "icons/icons.h"

#include <QAction>

#include <array>

namespace tw {

namespace {

struct Button {
    const char* caption;  ///< null for a separator
    const char* key;
    const char* toolTip;
};

constexpr std::array Buttons{
    Button{"New", "New", "Open a new connection"},
    Button{"Connect", "Connect", "Connect to a server"},
    Button{"Compare", "Compare", "Compare two tables or two databases"},
    Button{"Query", "Query", "Open new query window"},
    Button{"Options", "Options", "Set options"},
    Button{nullptr, "Separator2", ""},
    Button{"Horizontal", "Horizontal", "Allign data pane horizontal"},
    Button{"Vertical", "Vertical", "Allign database pane vertical"},
    Button{"Center", "CenterChild", "Center current child window to its container"},
    Button{nullptr, "Separator3", ""},
};

/// The toolbar's image list: each button's picture is named as its key.
QIcon imlToolbarIcons(const QString& key) {
    return icon(key);
}

constexpr int PictureSize = 24;

}  // namespace

MainToolBar::MainToolBar(QWidget* parent) : QToolBar(QStringLiteral("Toolbar"), parent) {
    setObjectName(QStringLiteral("tbToolBar"));
    setMovable(false);
    setIconSize({PictureSize, PictureSize});
    for (const Button& entry : Buttons) {
        const QString key = QString::fromLatin1(entry.key);
        if (entry.caption == nullptr) {
            addSeparator()->setObjectName(key);
            continue;
        }
        QAction* action = addAction(imlToolbarIcons(key), QString::fromLatin1(entry.caption));
        action->setObjectName(key);
        action->setToolTip(QString::fromLatin1(entry.toolTip));
        action->setStatusTip(action->toolTip());
        connect(action, &QAction::triggered, this, [this, key] { Q_EMIT ButtonClick(key); });
    }
}

QAction* MainToolBar::button(const QString& key) const {
    return findChild<QAction*>(key, Qt::FindDirectChildrenOnly);
}

void MainToolBar::setLabelsShown(bool shown) {
    setToolButtonStyle(shown ? Qt::ToolButtonTextUnderIcon : Qt::ToolButtonIconOnly);
}

}  // namespace tw
