#include "browse/frmconnection.h"
#include "compare/frmcompareprogress.h"
#include "compare/frmcompareselect.h"
#include "platform/desktop/helpwindow.h"
#include "platform/desktop/scrollpage.h"
#include "query/frmquery.h"
#include "shell/framefixture.h"
#include "shell/frmabout.h"
#include "shell/frmoption.h"

#include <QApplication>
#include <QLabel>
#include <QLayout>
#include <QScreen>
#include <QScrollBar>
#include <QTabWidget>
#include <QTest>

/// Windows at small and large texts: inside the screen, nothing over anything else, no text cut.
class LooksTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void everyTextIsWhole_data();
    void everyTextIsWhole();
};

using Maker = std::function<std::unique_ptr<QWidget>(FrameFixture&)>;

namespace {

std::vector<QWidget*> widgetsIn(const QLayout& layout) {
    std::vector<QWidget*> widgets;
    for (int i = 0; i < layout.count(); ++i) {
        if (const QLayout* inner = layout.itemAt(i)->layout()) {
            const std::vector<QWidget*> more = widgetsIn(*inner);
            widgets.insert(widgets.end(), more.begin(), more.end());
        } else if (QWidget* widget = layout.itemAt(i)->widget(); widget && widget->isVisible()) {
            widgets.push_back(widget);
        }
    }
    return widgets;
}

bool isCut(const QWidget& widget) {
    QSize least = widget.minimumSizeHint();
    if (const auto* label = qobject_cast<const QLabel*>(&widget); label && label->wordWrap())
        least.setHeight(label->heightForWidth(label->width()));
    if (widget.minimumWidth() > 0) least.setWidth(widget.minimumWidth());
    return widget.width() < least.width() || widget.height() < least.height();
}

QString faultsIn(const QWidget& window) {
    QStringList faults;
    const auto note = [&](const char* what, const QWidget& widget) {
        faults += QString::fromLatin1(what) + u' ' + widget.objectName() + u' ' +
                  QLatin1String(widget.metaObject()->className());
    };
    for (const QLayout* layout : window.findChildren<QLayout*>()) {
        if (!layout->parentWidget() || !layout->parentWidget()->isVisible()) continue;
        if (qobject_cast<QLayout*>(layout->parent())) continue;
        const std::vector<QWidget*> widgets = widgetsIn(*layout);
        for (const QWidget* widget : widgets) {
            if (isCut(*widget)) note("cut:", *widget);
            const auto* label = qobject_cast<const QLabel*>(widget);
            const QWidget* entry = label == nullptr ? nullptr : label->buddy();
            if (entry &&
                (entry->y() > widget->geometry().bottom() || entry->geometry().bottom() < widget->y()))
                note("not beside its entry:", *widget);
            if (!layout->parentWidget()->rect().contains(widget->geometry())) note("outside:", *widget);
            for (const QWidget* other : widgets)
                if (other != widget && other->geometry().intersects(widget->geometry())) note("hit:", *other);
        }
    }
    for (const desktop::ScrollPage* page : window.findChildren<desktop::ScrollPage*>())
        if (window.font().pointSize() == 9 && page->verticalScrollBar()->isVisible()) note("scrolls:", *page);
    if (window.size().boundedTo(window.screen()->availableSize()) != window.size())
        note("larger than the screen:", window);
    return faults.join(u'\n');
}

}  // namespace

void LooksTest::everyTextIsWhole_data() {
    QTest::addColumn<Maker>("make");
    QTest::addColumn<int>("points");
    const auto row = [](const char* name, const Maker& make) {
        for (const int points : {9, 11, 18})
            QTest::addRow("%s at %d points", name, points) << make << points;
    };
    row("query", [](FrameFixture& desk) {
        auto window = std::make_unique<tw::frmQuery>(desk.state, std::make_shared<tw::DBConnection>());
        window->resize(716, 452);  // what a small screen leaves
        return window;
    });
    row("connection", [](FrameFixture& desk) {
        return std::make_unique<tw::frmConnection>(desk.state, desk.frame, desk.open());
    });
    row("selection", [](FrameFixture& desk) { return std::make_unique<tw::frmCompareSelect>(desk.state); });
    row("progress",
        [](FrameFixture& desk) { return std::make_unique<tw::frmCompareProgress>(desk.state, nullptr); });
    for (const int page : {0, 1}) {
        row(page == 0 ? "options" : "more options", [page](FrameFixture& desk) {
            auto window = std::make_unique<tw::frmOption>(desk.state, [](bool) {});
            window->findChild<QTabWidget*>()->setCurrentIndex(page);
            return window;
        });
    }
    row("about", [](FrameFixture&) { return std::make_unique<tw::frmAbout>(nullptr); });
    row("help", [](FrameFixture&) { return std::make_unique<desktop::HelpWindow>(nullptr); });
}

void LooksTest::everyTextIsWhole() {
    QFETCH(Maker, make);
    QFETCH(int, points);
    QFont font = QApplication::font();
    font.setPointSize(points);
    QApplication::setFont(font);
    FrameFixture desk;
    const std::unique_ptr<QWidget> window = make(desk);
    window->show();
    QCoreApplication::processEvents();
    const QString faults = faultsIn(*window);
    QVERIFY2(faults.isEmpty(), qUtf8Printable(faults));
}

QTEST_MAIN(LooksTest)
#include "test_looks.moc"
