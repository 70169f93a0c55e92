#include "platform/desktop/twips.h"
#include "query/frmquery.h"
#include "shell/framefixture.h"
#include "support/answers.h"
#include "support/sampleserverprocess.h"
#include "support/table.h"

#include <QComboBox>
#include <QMdiArea>
#include <QPushButton>
#include <QTest>

/// Query windows in the frame.
class TestQueryWindows : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void opensFromADocument_data();
    void opensFromADocument();
    void opensFromAQueryWindow();
    void outlivesItsDocument();
    void failingLoad();
    void frameClosesWhileLoading();

  private:
    /// Connects a new document to the server.
    void connectTo(FrameFixture& fixture) const;

    testsupport::RunningSampleServer m_server;
};

namespace {

/// The query windows from the oldest to the newest.
QList<tw::frmQuery*> queriesIn(const FrameFixture& fixture) {
    QList<tw::frmQuery*> queries;
    for (QMdiSubWindow* child : fixture.frame.area().subWindowList()) {
        if (auto* query = qobject_cast<tw::frmQuery*>(child->widget())) queries += query;
    }
    return queries;
}

}  // namespace

void TestQueryWindows::connectTo(FrameFixture& fixture) const {
    fixture.open(m_server.serverText()).connection()->setConnectionString(m_server.connectionString());
}

void TestQueryWindows::opensFromADocument_data() {
    const testsupport::Table<bool> row("maximised");
    row("of its own size", false);
    row("maximised", true);
}

void TestQueryWindows::opensFromADocument() {
    QFETCH(bool, maximised);
    const testsupport::Answers noBoxes;
    FrameFixture fixture;
    fixture.start();
    QVERIFY(!fixture.action("mnuToolQuery")->isEnabled());
    connectTo(fixture);
    QVERIFY(fixture.action("mnuToolQuery")->isEnabled());
    const QMdiSubWindow& document = *fixture.frame.activeChild();
    if (maximised) fixture.frame.activeChild()->showMaximized();
    const QRect place = document.geometry();
    fixture.action("mnuToolQuery")->trigger();
    QCOMPARE(queriesIn(fixture).size(), 1);
    const tw::frmQuery& query = *queriesIn(fixture).first();
    QCOMPARE(query.windowTitle(), QStringLiteral("Query Window 1 - ") + m_server.serverText());
    QCOMPARE(query.getModuleName(), QStringLiteral("frmQuery"));

    const QMdiSubWindow& child = *fixture.frame.activeChild();
    QCOMPARE(child.widget(), &query);
    QVERIFY(child.isVisible());
    QVERIFY(!child.isMaximized());
    QCOMPARE(document.isMaximized(), maximised);
    QCOMPARE(document.geometry(), place);
    QCOMPARE(child.y(), 0);
    QVERIFY(qAbs(2 * child.x() - (fixture.frame.area().viewport()->width() - child.width())) <= 1);
}

void TestQueryWindows::opensFromAQueryWindow() {
    const testsupport::Answers noBoxes;
    FrameFixture fixture;
    fixture.start();
    connectTo(fixture);
    fixture.frame.mnuToolQuery_Click();
    fixture.frame.mnuToolQuery_Click();
    QCOMPARE(queriesIn(fixture).size(), 2);
    QCOMPARE(queriesIn(fixture).last()->queryConnection(), queriesIn(fixture).first()->queryConnection());
    // Numbers are not used again.
    fixture.frame.activeChild()->close();
    fixture.frame.mnuToolQuery_Click();
    QTRY_COMPARE(queriesIn(fixture).size(), 2);
    QCOMPARE(queriesIn(fixture).last()->windowTitle(),
             QStringLiteral("Query Window 3 - ") + m_server.serverText());
}

void TestQueryWindows::outlivesItsDocument() {
    const testsupport::Answers noBoxes;
    FrameFixture fixture;
    fixture.start();
    connectTo(fixture);
    QMdiSubWindow* document = fixture.frame.activeChild();
    fixture.frame.mnuToolQuery_Click();
    document->close();
    QTRY_COMPARE(fixture.frame.area().subWindowList().size(), 1);
    tw::frmQuery* query = queriesIn(fixture).value(0);
    QVERIFY(query != nullptr);
    auto* databases = query->findChild<QComboBox*>(QStringLiteral("cbDatabase"));
    databases->setCurrentText(QStringLiteral("Workshop"));
    Q_EMIT databases->activated(databases->currentIndex());
    QVERIFY(query->findChild<QComboBox*>(QStringLiteral("cbTable"))->findText(QStringLiteral("Mechanic")) >=
            0);
    query->findChild<QPushButton*>(QStringLiteral("cmdClose"))->click();
    QTRY_COMPARE(fixture.frame.area().subWindowList().size(), 0);
}

void TestQueryWindows::failingLoad() {
    testsupport::Answers answers;
    FrameFixture fixture;
    fixture.start();
    fixture.open(QStringLiteral("alpha"))
        .connection()
        ->setConnectionString(QStringLiteral("driver={No such}"));
    fixture.frame.mnuToolQuery_Click();
    QVERIFY(
        answers.takeBox().text.contains(QStringLiteral("subroutine FillCbDB of module DBConnection.cls.")));
    QCOMPARE(queriesIn(fixture).size(), 1);
    QVERIFY(queriesIn(fixture).first()->isVisible());
}

void TestQueryWindows::frameClosesWhileLoading() {
    testsupport::Answers answers;
    FrameFixture fixture;
    fixture.start();
    fixture.open(QStringLiteral("alpha"))
        .connection()
        ->setConnectionString(QStringLiteral("driver={No such}"));
    answers.whileOpen([&](const auto&) {
        fixture.frame.close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    });
    fixture.frame.mnuToolQuery_Click();
    answers.takeBox();
    QVERIFY(!fixture.frame.isVisible());
    QCOMPARE(queriesIn(fixture).size(), 0);
}

QTEST_MAIN(TestQueryWindows)
#include "test_querywindows.moc"
