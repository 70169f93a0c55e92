#include "platform/desktop/helppage.h"
#include "platform/desktop/helptopics.h"
#include "platform/desktop/helpviewer.h"
#include "platform/desktop/helpwindow.h"
#include "support/answers.h"
#include "support/table.h"

#include <QAbstractTextDocumentLayout>
#include <QDesktopServices>
#include <QFile>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>

using desktop::HelpCommand;
using desktop::HelpPage;
using desktop::HelpWindow;
using desktop::WinHelp;

namespace {

const char* const Guide =
    "# Connecting to a *server*\r\n"
    "Type its name, see [naming](#ways-to-name-a-server-briefly).\r\n"
    "## Ways to name a server, briefly ##\n"
    "A server and a **port**.\n"
    "### Deeper\n"
    "```\n# no heading\n```\n"
    "# Comparing\n"
    "Column by column, or <No Permission> instead.\n";

}  // namespace

class HelpViewerTest : public QObject {
    Q_OBJECT

  public Q_SLOTS:
    void noteOpened(const QUrl& url) { m_opened += url; }

  private Q_SLOTS:
    void cutsTopics();
    void textBeforeTheFirstHeading();
    void showsContents();
    void findsWords();
    void followsLinks();
    void fitsPictures();
    void oneWindow();
    void missingOrUnreadable_data();
    void missingOrUnreadable();

  private:
    QString write(const QByteArray& content) {
        QFile file(m_folder.filePath(QStringLiteral("guide.hlp")));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) return {};
        return file.fileName();
    }
    static QStringList topicsOf(const HelpWindow* help) {
        QStringList titles;
        const auto* list = help->findChild<QListWidget*>();
        for (int row = 0; row < list->count(); ++row) {
            titles.append(list->item(row)->text().trimmed());
        }
        return titles;
    }
    HelpWindow* open(QWidget& owner, HelpCommand command, const QString& key = {}) {
        return WinHelp(&owner, write(Guide), command, key) ? owner.findChild<HelpWindow*>() : nullptr;
    }

    QTemporaryDir m_folder;
    QList<QUrl> m_opened;
};

void HelpViewerTest::cutsTopics() {
    const auto topics = desktop::helpTopics(QString::fromUtf8(Guide).remove(u'\r'));
    QCOMPARE(topics.size(), size_t(3));
    QCOMPARE(topics[0].title, QStringLiteral("Connecting to a server"));
    QCOMPARE(topics[1].title, QStringLiteral("Ways to name a server, briefly"));
    QCOMPARE(topics[1].anchor, QStringLiteral("ways-to-name-a-server-briefly"));
    QCOMPARE(topics[1].level, 2);
    QVERIFY(topics[1].markdown.contains(QStringLiteral("# no heading")));
    QVERIFY(topics[1].holds({QStringLiteral("PORT"), QStringLiteral("head")}));
    QVERIFY(!topics[1].holds({QStringLiteral("port"), QStringLiteral("column")}));
    QVERIFY(!topics[1].holds({QStringLiteral("**")}));
}

void HelpViewerTest::textBeforeTheFirstHeading() {
    const auto topics = desktop::helpTopics(QStringLiteral("\n\nWelcome.\n# One\n"));
    QCOMPARE(topics.size(), size_t(2));
    QCOMPARE(topics[0].title, QString());
    QCOMPARE(topics[0].words, QStringLiteral("Welcome."));
    QVERIFY(desktop::helpTopics(QStringLiteral(" \n")).empty());
}

void HelpViewerTest::showsContents() {
    QWidget owner;
    HelpWindow* help = open(owner, HelpCommand::Contents);
    QVERIFY(help && help->isVisible() && help->isWindow());
    QCOMPARE(topicsOf(help).size(), 3);
    QVERIFY(help->findChild<HelpPage*>()->toPlainText().startsWith(QStringLiteral("Connecting to a server")));
    help->findChild<QListWidget*>()->setCurrentRow(2);
    QVERIFY(help->findChild<HelpPage*>()->toPlainText().contains(
        QStringLiteral("Column by column, or <No Permission> instead.")));
}

void HelpViewerTest::findsWords() {
    QWidget owner;
    HelpWindow* help = open(owner, HelpCommand::PartialKey, QStringLiteral(" server  Name "));
    QVERIFY(help);
    auto* page = help->findChild<HelpPage*>();
    auto* search = help->findChild<QLineEdit*>();
    QCOMPARE(topicsOf(help).size(), 2);
    QCOMPARE(page->hits(), 2);
    QCOMPARE(page->extraSelections().size(), 2);

    search->clear();
    QTest::keyClicks(search, QStringLiteral("column"));
    QCOMPARE(topicsOf(help), QStringList{QStringLiteral("Comparing")});
    QCOMPARE(page->hits(), 2);
    const int first = page->textCursor().position();
    QTest::keyClick(search, Qt::Key_Return);
    QVERIFY(page->textCursor().position() > first);
    QTest::keyClick(search, Qt::Key_Return);
    QCOMPARE(page->textCursor().position(), first);

    search->setText(QStringLiteral("nowhere to be found"));
    QVERIFY(topicsOf(help).isEmpty());
    QVERIFY(page->toPlainText().isEmpty());
    search->clear();
    QCOMPARE(topicsOf(help).size(), 3);
}

void HelpViewerTest::followsLinks() {
    QWidget owner;
    HelpWindow* help = open(owner, HelpCommand::PartialKey, QStringLiteral("type"));
    QVERIFY(help);
    auto* page = help->findChild<HelpPage*>();
    Q_EMIT page->anchorClicked(QUrl(QStringLiteral("#ways-to-name-a-server-briefly")));
    QVERIFY(page->toPlainText().startsWith(QStringLiteral("Ways to name")));
    for (const char* scheme : {"https", "file", "help"})
        QDesktopServices::setUrlHandler(QString::fromLatin1(scheme), this, "noteOpened");
    for (const char* link : {"#no-such-topic", "https://a/", "file:///bin/sh", "help:x"})
        Q_EMIT page->anchorClicked(QUrl(QString::fromLatin1(link)));
    QVERIFY(page->toPlainText().startsWith(QStringLiteral("Ways to name")));
    QCOMPARE(m_opened, QList({QUrl(QStringLiteral("https://a/"))}));
}

void HelpViewerTest::fitsPictures() {
    for (const QSize size : {QSize(3000, 60), QSize(50, 40)}) {
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(Qt::red);
        QVERIFY(picture.save(m_folder.filePath(QStringLiteral("%1.png").arg(size.width()))));
    }
    QWidget owner;
    QVERIFY(WinHelp(&owner, write("![wide](3000.png)\n\n![small](50.png)\n\n![none](none.png)\n"),
                    HelpCommand::Contents));
    auto* help = owner.findChild<HelpWindow*>();
    auto* page = help->findChild<HelpPage*>();
    const auto width = [&](const char* name) {
        return page->document()
            ->resource(QTextDocument::ImageResource, QUrl(QString::fromLatin1(name)))
            .value<QImage>()
            .width();
    };
    for (const int helpWidth : {880, 600, 1200}) {
        help->resize(helpWidth, 500);
        QVERIFY(width("3000.png") > page->viewport()->width() / 2);
        QVERIFY(page->document()->size().width() <= page->viewport()->width());
        QCOMPARE(width("50.png"), 50);
        // No room is lost under a picture.
        const QTextBlock small = page->document()->begin().next();
        QVERIFY(page->document()->documentLayout()->blockBoundingRect(small).height() < 40 + 15);
    }
}

void HelpViewerTest::oneWindow() {
    QWidget owner;
    auto* part = new QWidget(&owner);
    HelpWindow* help = open(owner, HelpCommand::Contents);
    QVERIFY(help);
    help->close();
    QVERIFY(WinHelp(part, write("# Another\ntext"), HelpCommand::Contents));
    QCOMPARE(owner.findChildren<HelpWindow*>(), QList<HelpWindow*>{help});
    QVERIFY(help->isVisible());
    QCOMPARE(topicsOf(help), QStringList{QStringLiteral("Another")});
    QVERIFY(QTest::qWaitForWindowActive(help));
    QTest::keyClick(help, Qt::Key_Escape);
    QTRY_VERIFY(!help->isVisible());
}

void HelpViewerTest::missingOrUnreadable_data() {
    const testsupport::Table<QString, QByteArray, QString> row("name", "content", "failure");
    row("missing", "none.hlp", QByteArray(), "cannot be found.");
    row("empty", "guide.hlp", QByteArray(" \n"), "cannot be read.");
    row("no UTF-8", "guide.hlp", QByteArray("# \xff\xfe"), "cannot be read.");
    row("binary", "guide.hlp", QByteArray("?_\x03\0\0x", 6), "cannot be read.");
}

void HelpViewerTest::missingOrUnreadable() {
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, failure);
    write(content);
    QWidget owner;
    testsupport::Answers answers;
    const bool shown = WinHelp(&owner, m_folder.path() + u'\\' + name, HelpCommand::Contents);
    QVERIFY(!shown);
    const auto box = answers.takeBox();
    QCOMPARE(box.icon, desktop::MsgBoxIcon::Exclamation);
    QVERIFY2(box.text.contains(name) && box.text.endsWith(failure), qPrintable(box.text));
    QVERIFY(!owner.findChild<HelpWindow*>());
}

QTEST_MAIN(HelpViewerTest)
#include "test_helpviewer.moc"
