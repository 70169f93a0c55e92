#pragma once

#include <QIcon>
#include <QToolBar>

namespace tw {

/// The frame's toolbar, `tbToolBar`. Each button is an action whose object name is its key.
class MainToolBar : public QToolBar {
    Q_OBJECT

  public:
    explicit MainToolBar(QWidget* parent);

    /// The button under a key, null when there is none.
    QAction* button(const QString& key) const;
    /// Shows or removes the text labels of the buttons.
    void setLabelsShown(bool shown);

  Q_SIGNALS:
    void ButtonClick(const QString& key);
};

}  // namespace tw
