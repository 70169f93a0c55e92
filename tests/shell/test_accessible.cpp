#include "browse/frmconnection.h"
#include "compare/comparingframe.h"
#include "compare/frmcompareselect.h"
#include "compare/markwords.h"
#include "platform/desktop/helpwindow.h"
#include "shell/frmabout.h"
#include "shell/frmoption.h"

#include <QAccessible>
#include <QTabWidget>
#include <QTest>

/// What a screen reader finds in each window: a name for every control that can be acted on or read, a label
/// for every value, and the mark of every row.
class AccessibleTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void everythingHasAName_data();
    void everythingHasAName();
    void rowsTellTheirMarks();

  private:
    testsupport::RunningSampleServer m_server;
};

namespace {

using Desk = ComparingFrame;
using Maker = std::function<QWidget*(Desk&)>;

bool needsName(const QAccessibleInterface& object) {
    switch (object.role()) {
        case QAccessible::Button:
        case QAccessible::ButtonMenu:
        case QAccessible::CheckBox:
        case QAccessible::RadioButton:
        case QAccessible::EditableText:
        case QAccessible::ComboBox:
        case QAccessible::List:
        case QAccessible::Table:
        case QAccessible::Tree:
        case QAccessible::ProgressBar:
        case QAccessible::PageTab:
        case QAccessible::MenuItem:
        case QAccessible::Dialog:
        case QAccessible::Window:
            return true;
        default:
            break;
    }
    // Whatever else takes the focus, such as the bars between panes.
    const auto* widget = qobject_cast<const QWidget*>(object.object());
    return widget && widget->focusPolicy() != Qt::NoFocus && !widget->focusProxy() &&
           object.role() == QAccessible::Client;
}

QString nameOf(const QAccessibleInterface& object) {
    QString name = object.text(QAccessible::Name);
    for (const auto& [label, relation] : object.relations(QAccessible::Label))
        name += label->text(QAccessible::Name);
    return name.trimmed();
}

QString describe(const QAccessibleInterface& object) {
    const QObject* its = object.object();
    return QStringLiteral("%1 %2 (role %3)")
        .arg(QString::fromLatin1(its ? its->metaObject()->className() : "?"),
             its ? its->objectName() : QString(), QString::number(object.role(), 16));
}

void walk(QAccessibleInterface* object, QStringList& nameless, int& seen) {
    if (!object || object->state().invisible) return;
    ++seen;
    if (needsName(*object) && nameOf(*object).isEmpty()) nameless += describe(*object);
    // Cells have their texts, or are empty.
    if (object->tableInterface()) return;
    for (int i = 0; i < object->childCount(); ++i)
        walk(object->child(i), nameless, seen);
}

}  // namespace

void AccessibleTest::everythingHasAName_data() {
    QTest::addColumn<Maker>("make");
    const auto row = [](const char* name, const Maker& make) { QTest::newRow(name) << make; };
    row("frame with a document", [](Desk& desk) { return &desk.frame; });
    row("result", [](Desk& desk) {
        desk.show().Form_Load();
        return &desk.frame;
    });
    row("progress", [](Desk& desk) {
        tw::frmCompareResult& result = desk.show();
        result.Form_Load();
        return &progressOf(result);
    });
    for (const int page : {0, 1}) {
        row(page == 0 ? "query" : "its result", [page](Desk& desk) {
            desk.frame.mnuToolQuery_Click();
            QWidget* query = desk.frame.activeChild()->widget();
            query->findChild<QTabWidget*>()->setCurrentIndex(page);
            return query;
        });
        row(page == 0 ? "options" : "more options", [page](Desk& desk) {
            auto* window = new tw::frmOption(
                desk.state, [](bool) {}, &desk.frame);
            window->findChild<QTabWidget*>()->setCurrentIndex(page);
            return window;
        });
    }
    row("find bar", [](Desk& desk) {
        auto* list = desk.frame.findChild<QWidget*>(QStringLiteral("lvTblData"));
        list->setFocus();
        desk.frame.activateWindow();
        if (!QTest::qWaitForWindowActive(&desk.frame)) qFatal("The frame is not active.");
        QTest::keyClick(list, Qt::Key_F, Qt::ControlModifier);
        return &desk.frame;
    });
    row("connection", [](Desk& desk) {
        return new tw::frmConnection(desk.state, desk.frame, desk.activeDocument(), &desk.frame);
    });
    row("selection", [](Desk& desk) { return new tw::frmCompareSelect(desk.state, &desk.frame); });
    row("about", [](Desk& desk) { return new tw::frmAbout(&desk.frame); });
    row("help", [](Desk& desk) { return new desktop::HelpWindow(&desk.frame); });
}

void AccessibleTest::everythingHasAName() {
    QFETCH(Maker, make);
    ComparingFrame desk(m_server);
    QWidget* window = make(desk);
    window->show();
    QCoreApplication::processEvents();
    QStringList nameless;
    int seen = 0;
    walk(QAccessible::queryAccessibleInterface(window), nameless, seen);
    QVERIFY(seen > 2);
    QVERIFY2(nameless.isEmpty(), qUtf8Printable(nameless.join(u'\n')));
}

void AccessibleTest::rowsTellTheirMarks() {
    ComparingFrame desk(m_server);
    tw::frmCompareResult& result = desk.show();
    result.Form_Load();
    for (const int system : {1, 2}) {
        itemsOf(result, system).notifyViews();
        auto* table = QAccessible::queryAccessibleInterface(&listOf(result, system))->tableInterface();
        QVERIFY(table->rowCount() > 100);
        for (int row = 0; row < table->rowCount(); ++row) {
            const QString told = table->cellAt(row, 0)->text(QAccessible::Name);
            const QString mark = told.mid(told.lastIndexOf(QStringLiteral(", ")) + 2);
            QVERIFY2(tw::markWords().contains(mark), qUtf8Printable(told));
        }
    }
}

QTEST_MAIN(AccessibleTest)
#include "test_accessible.moc"
