#pragma once

#include <QDir>
#include <QString>
#include <QWidget>

#include <functional>
#include <stdexcept>
#include <vector>

class QComboBox;
class QMainWindow;
class QMenu;
class QTreeView;

namespace tour {

/// The screen did not hold what it should. Ends the tour.
class Failure : public std::runtime_error {
  public:
    explicit Failure(const QString& what) : std::runtime_error(what.toStdString()) {}
};

/// The hands, eyes and camera of the guided tour: simulated mouse and keyboard on the real windows, checks of
/// what their controls hold, numbered pictures of the screen. Everything throws Failure.
class Stage {
  public:
    /// Pictures go into `pictures`, which is emptied of earlier ones.
    explicit Stage(const QString& pictures);
    /// What is to be done in a window.
    using Within = std::function<void(QWidget& dialog)>;

    /// Says on the standard output what comes next.
    void say(const QString& what);
    void expect(bool condition, const QString& what);
    void expectText(const QString& actual, const QString& wanted, const QString& what);
    /// Serves events until the condition holds, ten seconds at most.
    void waitFor(const std::function<bool()>& condition, const QString& what);

    /// The control of a given name below `window`.
    template <class Control>
    Control& find(const QWidget& window, const QString& name) {
        auto* control = window.findChild<Control*>(name);
        if (control == nullptr) throw Failure(QStringLiteral("there is no control ") + name);
        return *control;
    }

    void click(QWidget& control);
    /// Replaces a control's text by typing.
    void type(QWidget& control, const QString& text);
    void press(QWidget& control, Qt::Key key);
    /// Picks an entry of a list with the mouse and the Enter key; takes a picture of the open list if it is
    /// to have a name.
    void pick(QComboBox& box, const QString& entry, const QString& picture = {});
    /// Clicks the button of a window that bears a text, access keys left out.
    void clickButton(QWidget& window, const QString& text);
    /// Opens a menu of the menu bar with the mouse and clicks one of its items.
    void choose(QMainWindow& frame, const QString& menu, const QString& item);
    /// Opens a menu of the menu bar with the mouse, for a picture, and closes it again.
    void showMenu(QMainWindow& frame, const QString& menu, const std::function<void()>& whileOpen);
    /// Clicks the toolbar button under a key.
    void clickTool(QMainWindow& frame, const QString& key);
    /// Clicks into a control with the right mouse button and waits for a pop-up menu of the frame.
    QMenu& popUp(QMainWindow& frame, const QString& menu, QWidget& control, const QPoint& place);
    /// Clicks the tree's node at the end of a path of texts, opening branches on the way.
    void clickNode(QTreeView& tree, const QStringList& path, bool twice = false);

    /// Does something that opens a modal window and, once it shows, what is to be done in it. Returns when
    /// the window has gone.
    void inDialog(const std::function<void()>& open, const Within& within);
    /// As inDialog, for windows that come one after the other: the next when the one before has gone.
    void inDialogs(const std::function<void()>& open, const std::vector<Within>& withins);
    /// What a message box shows.
    QString messageOf(QWidget& box);
    /// As inDialog, for a message box: checks its text and presses a button by its text.
    void expectMessage(const std::function<void()>& open, const QString& text, const QString& picture = {});

    /// Takes a picture of the whole screen; the file's name begins with a running number, its text "window"
    /// says where the active window stands.
    void picture(const QString& name);
    int pictureCount() const { return m_pictures; }

  private:
    void clickMenuItem(QMenu& menu, const QString& item);
    QMenu& openMenu(QMainWindow& frame, const QString& menu);
    void settle();

    QDir m_folder;
    int m_pictures = 0;
};

}  // namespace tour
