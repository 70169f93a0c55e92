#include "stage.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QImage>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTextStream>
#include <QTimer>
#include <QToolBar>
#include <QTreeView>

#include <exception>

namespace tour {

namespace {

constexpr int PatienceMilliseconds = 10000;
constexpr int DialogMilliseconds = 60000;

QModelIndex childOf(const QAbstractItemModel& model, const QModelIndex& parent, const QString& text) {
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        if (index.data().toString() == text) return index;
    }
    throw Failure(QStringLiteral("the tree has no node ") + text);
}

/// Where the window that is worked in stands on the screen with its frame: WIDTHxHEIGHT+LEFT+TOP.
QString placeOfWindow() {
    const QWidget* window = QApplication::activeWindow();
    if (window == nullptr) return {};
    QRect place = window->frameGeometry();
    const auto* area = window->findChild<const QMdiArea*>();
    if (const QWidget* child = area == nullptr ? nullptr : area->activeSubWindow())
        place = {child->mapToGlobal(QPoint()), child->size()};
    return QStringLiteral("%1x%2+%3+%4").arg(place.width()).arg(place.height()).arg(place.x()).arg(place.y());
}

void closeDialogs() {
    while (QWidget* dialog = QApplication::activeModalWidget()) {
        if (!dialog->close()) break;
    }
}

}  // namespace

Stage::Stage(const QString& pictures) : m_folder(pictures) {
    if (!m_folder.mkpath(QStringLiteral(".")))
        throw Failure(QStringLiteral("cannot make the folder ") + pictures);
    for (const QString& old : m_folder.entryList({QStringLiteral("[0-9][0-9]-*.png")}))
        m_folder.remove(old);
}

void Stage::say(const QString& what) {
    QTextStream(stdout) << what << Qt::endl;
}

void Stage::expect(bool condition, const QString& what) {
    if (!condition) throw Failure(QStringLiteral("not as it should be: ") + what);
}

void Stage::expectText(const QString& actual, const QString& wanted, const QString& what) {
    expect(actual == wanted, QStringLiteral("%1 is \"%2\" instead of \"%3\"").arg(what, actual, wanted));
}

void Stage::waitFor(const std::function<bool()>& condition, const QString& what) {
    if (!QTest::qWaitFor(condition, PatienceMilliseconds)) {
        throw Failure(QStringLiteral("waited in vain until ") + what);
    }
}

void Stage::settle() {
    // Two rounds: the first lays out and paints, the second what the first asked for.
    for (int round = 0; round < 2; ++round)
        QCoreApplication::processEvents();
}

void Stage::click(QWidget& control) {
    waitFor([&] { return control.isVisible(); }, control.objectName() + QStringLiteral(" shows"));
    expect(control.isEnabled(), control.objectName() + QStringLiteral(" can be clicked"));
    QTest::mouseClick(&control, Qt::LeftButton);
}

void Stage::type(QWidget& control, const QString& text) {
    click(control);
    QTest::keyClick(&control, Qt::Key_A, Qt::ControlModifier);
    if (text.isEmpty()) QTest::keyClick(&control, Qt::Key_Delete);
    QTest::keyClicks(&control, text);
}

void Stage::press(QWidget& control, Qt::Key key) {
    QTest::keyClick(&control, key);
}

void Stage::pick(QComboBox& box, const QString& entry, const QString& picture) {
    click(box);
    QAbstractItemView& view = *box.view();
    waitFor([&] { return view.isVisible(); }, box.objectName() + QStringLiteral(" opens"));
    const int row = box.findText(entry);
    expect(row >= 0, box.objectName() + QStringLiteral(" offers ") + entry);
    view.setCurrentIndex(box.model()->index(row, 0));
    if (!picture.isEmpty()) this->picture(picture);
    press(view, Qt::Key_Return);
    waitFor([&] { return !view.isVisible(); }, box.objectName() + QStringLiteral(" closes"));
}

void Stage::clickButton(QWidget& window, const QString& text) {
    for (QPushButton* button : window.findChildren<QPushButton*>()) {
        if (QString(button->text()).remove(u'&') == text) {
            click(*button);
            return;
        }
    }
    throw Failure(QStringLiteral("there is no button ") + text);
}

QMenu& Stage::openMenu(QMainWindow& frame, const QString& menu) {
    QMenu& opened = find<QMenu>(frame, menu);
    QMenuBar* bar = frame.menuBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(opened.menuAction()).center());
    waitFor([&] { return opened.isVisible(); }, menu + QStringLiteral(" opens"));
    return opened;
}

void Stage::clickMenuItem(QMenu& menu, const QString& item) {
    QAction* action = menu.findChild<QAction*>(item);
    if (action == nullptr) {
        for (QAction* candidate : menu.actions()) {
            if (candidate->objectName() == item) action = candidate;
        }
    }
    if (action == nullptr) throw Failure(QStringLiteral("there is no menu item ") + item);
    expect(action->isEnabled(), item + QStringLiteral(" can be chosen"));
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(action).center());
}

void Stage::choose(QMainWindow& frame, const QString& menu, const QString& item) {
    clickMenuItem(openMenu(frame, menu), item);
}

void Stage::showMenu(QMainWindow& frame, const QString& menu, const std::function<void()>& whileOpen) {
    QMenu& opened = openMenu(frame, menu);
    settle();
    whileOpen();
    QTest::keyClick(&opened, Qt::Key_Escape);
    waitFor([&] { return !opened.isVisible(); }, menu + QStringLiteral(" closes"));
}

QMenu& Stage::popUp(QMainWindow& frame, const QString& menu, QWidget& control, const QPoint& place) {
    QMenu& opened = find<QMenu>(frame, menu);
    QTest::mouseClick(&control, Qt::RightButton, {}, place);
    waitFor([&] { return opened.isVisible(); }, menu + QStringLiteral(" opens"));
    settle();
    return opened;
}

void Stage::clickTool(QMainWindow& frame, const QString& key) {
    auto& bar = find<QToolBar>(frame, QStringLiteral("tbToolBar"));
    for (QAction* action : bar.actions()) {
        if (action->objectName() == key) {
            click(*bar.widgetForAction(action));
            return;
        }
    }
    throw Failure(QStringLiteral("the toolbar has no button ") + key);
}

void Stage::clickNode(QTreeView& tree, const QStringList& path, bool twice) {
    QModelIndex index;
    for (const QString& text : path) {
        if (index.isValid()) tree.expand(index);
        index = childOf(*tree.model(), index, text);
    }
    settle();
    // Last of all: the tree scrolls back to the node clicked before, half a second after that click.
    tree.scrollTo(index);
    const QPoint place = tree.visualRect(index).center();
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, place);
    if (twice) QTest::mouseDClick(tree.viewport(), Qt::LeftButton, {}, place);
}

void Stage::inDialog(const std::function<void()>& open, const Within& within) {
    inDialogs(open, {within});
}

void Stage::inDialogs(const std::function<void()>& open, const std::vector<Within>& withins) {
    std::exception_ptr failure;
    size_t entered = 0;
    // Also seen while a dialog waits for the wire, before what it opens is there.
    const QPointer<QWidget> opener = QApplication::activeModalWidget();
    QPointer<QWidget> before;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
        QWidget* dialog = QApplication::activeModalWidget();
        if (dialog == nullptr || !dialog->isVisible() || dialog == before || dialog == opener) return;
        watch.stop();
        before = dialog;
        const Within& within = withins[entered++];
        // The event loop around this must not be unwound: what fails is kept and thrown outside it.
        try {
            settle();
            within(*dialog);
        } catch (...) {
            failure = std::current_exception();
        }
        if (failure) {
            closeDialogs();
        } else if (entered < withins.size()) {
            watch.start(10);
        }
    });
    watch.start(10);
    // A dialog that stays open, or one that nobody expected, must not hold up the tour for ever.
    QTimer deadline;
    QObject::connect(&deadline, &QTimer::timeout, &deadline, [&] {
        const QWidget* dialog = QApplication::activeModalWidget();
        const QString title = dialog == nullptr ? QString() : dialog->windowTitle();
        failure = std::make_exception_ptr(Failure(QStringLiteral("a dialog stays open: ") + title));
        closeDialogs();
    });
    deadline.start(DialogMilliseconds);
    open();
    watch.stop();
    if (failure) std::rethrow_exception(failure);
    expect(entered == withins.size(), QStringLiteral("a dialog opens"));
    settle();
}

QString Stage::messageOf(QWidget& box) {
    const auto* text = box.findChild<QWidget*>(QStringLiteral("messageText"));
    expect(text, QStringLiteral("a message box opens"));
    return text->property("plainText").toString();
}

void Stage::expectMessage(const std::function<void()>& open, const QString& text, const QString& name) {
    inDialog(open, [&](QWidget& box) {
        expectText(messageOf(box), text, QStringLiteral("the message"));
        if (!name.isEmpty()) picture(name);
        press(box, Qt::Key_Return);
    });
}

void Stage::picture(const QString& name) {
    settle();
    // The window manager draws frames in its own time.
    QTest::qWait(150);
    const QString file = QStringLiteral("%1-%2.png").arg(++m_pictures, 2, 10, QLatin1Char('0')).arg(name);
    QImage screen = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
    screen.setText(QStringLiteral("window"), placeOfWindow());
    expect(!screen.isNull() && screen.save(m_folder.filePath(file)), QStringLiteral("picture ") + file);
}

}  // namespace tour
