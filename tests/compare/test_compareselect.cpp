#include "compare/frmcompareresult.h"
#include "compare/frmcompareselect.h"
#include "opendocuments.h"
#include "support/answers.h"
#include "support/captions.h"
#include "support/picking.h"
#include "support/sampleserverprocess.h"
#include "support/table.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace {

const QString AllTables = QStringLiteral("(All Tables)");

/// The dialog as it stands on the screen.
struct Selection {
    explicit Selection(OpenDocuments& documents) : dialog(documents.state) {
        loaded = dialog.Form_Load();
        dialog.open();
    }

    QComboBox& list(const QString& name) const { return *dialog.findChild<QComboBox*>(name); }
    QStringList entries(const QString& name) const {
        QStringList texts;
        for (int i = 0; i < list(name).count(); ++i)
            texts += list(name).itemText(i);
        return texts;
    }
    /// Chooses by text; an empty text is left alone.
    void choose(const QString& name, const QString& text) const {
        if (!text.isEmpty()) testsupport::pick(list(name), text);
    }
    void chooseSystem(int number, const QString& server, const QString& database, const QString& table = {}) {
        choose(QStringLiteral("cbServer%1").arg(number), server);
        choose(QStringLiteral("cbDatabase%1").arg(number), database);
        choose(QStringLiteral("cbTable%1").arg(number), table);
    }
    void click(const char* button) const {
        QTest::mouseClick(dialog.findChild<QPushButton*>(QString::fromLatin1(button)), Qt::LeftButton);
    }
    QString focus() const {
        return dialog.focusWidget() == nullptr ? QString() : dialog.focusWidget()->objectName();
    }

    tw::frmCompareSelect dialog;
    bool loaded = false;
};

}  // namespace

class TestCompareSelect : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void offersServers();
    void tellsThatThereIsNoServer();
    void tabOrder();
    void fillsLists();
    void refusesIncompleteEntries_data();
    void refusesIncompleteEntries();
    void refusesDatabasesWithoutPermission_data();
    void refusesDatabasesWithoutPermission();
    void normalisesTables_data();
    void normalisesTables();
    void configuresTheResult();
    void cancels();
    void serverThatDoesNotAnswer();
    void documentThatGoes_data();
    void documentThatGoes();

  private:
    testsupport::RunningSampleServer m_server;
};

void TestCompareSelect::offersServers() {
    OpenDocuments documents;
    for (const char* server : {"", "alpha", "Alpha", "alpha", "beta"})
        documents.open(QString::fromLatin1(server));
    const Selection selection(documents);
    QVERIFY(selection.loaded);
    QCOMPARE(
        testsupport::captionsOf(selection.dialog),
        (QStringList{"Databases Selection", "fraSystem1: System 1 Selection ", "lblServer: Server",
                     "lblDataBase: Database", "lblTable: Table", "fraSystem2: System 2 Selection ",
                     "Label1: Server", "Label2: Database", "Label3: Table", "fraOptions:  Compare Options ",
                     "chkConstraint: Compare Contraints", "chkIndex: Compare Indexes",
                     "chkForeignKey: Foreign Keys", "cmdOK: &OK", "cmdCancel: &Cancel"}));
    QCOMPARE(selection.focus(), QStringLiteral("cbServer1"));
    for (const char* name : {"cbServer1", "cbServer2"}) {
        const QString list = QString::fromLatin1(name);
        QCOMPARE(selection.entries(list), (QStringList{"alpha", "Alpha", "beta"}));
        QCOMPARE(selection.list(list).currentText(), QString());
        // The first document of each.
        QCOMPARE(selection.list(list).itemData(0).toInt(), 2);
        QCOMPARE(selection.list(list).itemData(2).toInt(), 5);
    }
}

void TestCompareSelect::tellsThatThereIsNoServer() {
    testsupport::Answers answers;
    OpenDocuments documents;
    documents.open(QString());
    tw::frmCompareSelect dialog(documents.state);
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    const auto box = answers.takeBox();
    QCOMPARE(box.text, QStringLiteral("Failure to find a server connection.  Please make sure that "
                                      "there is at least one active connection."));
    QCOMPARE(box.icon, desktop::MsgBoxIcon::Exclamation);
    QVERIFY(!dialog.isVisible());
    QVERIFY(dialog.takeResult() == nullptr);
}

void TestCompareSelect::tabOrder() {
    OpenDocuments documents;
    documents.open(QStringLiteral("alpha"));
    const Selection selection(documents);
    QStringList order;
    const QWidget* first = selection.dialog.focusWidget();
    for (const QWidget* next = first; order.isEmpty() || next != first; next = next->nextInFocusChain()) {
        if ((next->focusPolicy() & Qt::TabFocus) != 0) order += next->objectName();
    }
    QCOMPARE(order.filter(QRegularExpression(QStringLiteral("^(cb|chk|cmd)"))),
             (QStringList{"cbServer1", "cbDatabase1", "cbTable1", "cbServer2", "cbDatabase2", "cbTable2",
                          "chkConstraint", "chkIndex", "chkForeignKey", "cmdOK", "cmdCancel"}));
}

void TestCompareSelect::fillsLists() {
    const testsupport::Answers noBoxes;
    OpenDocuments documents;
    documents.open(m_server.serverText(), QStringLiteral("sa"));
    Selection selection(documents);
    selection.chooseSystem(1, m_server.serverText(), {});
    QVERIFY(selection.entries(QStringLiteral("cbDatabase1")).contains(QStringLiteral("Workshop2")));
    QVERIFY(!selection.entries(QStringLiteral("cbDatabase1")).contains(QStringLiteral("master")));
    QCOMPARE(selection.list(QStringLiteral("cbDatabase1")).currentText(), QString());
    QCOMPARE(selection.list(QStringLiteral("cbTable1")).count(), 0);
    selection.chooseSystem(1, {}, QStringLiteral("Workshop"));
    const QStringList tables = selection.entries(QStringLiteral("cbTable1"));
    QVERIFY(tables.contains(QStringLiteral("SupplierTerms")));
    QCOMPARE(tables.last(), AllTables);
    QCOMPARE(tables.count(AllTables), 1);
    QCOMPARE(selection.list(QStringLiteral("cbTable1")).currentText(), QString());
    QCOMPARE(selection.list(QStringLiteral("cbDatabase2")).count(), 0);
}

void TestCompareSelect::refusesIncompleteEntries_data() {
    const testsupport::Table<QList<bool>, QString, QString> row("chosen", "message", "focus");
    row("nothing", {false, false, false, false}, "Please select server for system 1.     ", "cbServer1");
    row("no database 1", {true, false, true, true}, "Please select database for system 1.     ",
        "cbDatabase1");
    row("no server 2", {true, true, false, false}, "Please select server for system 2.     ", "cbServer2");
    row("no database 2", {true, true, true, false}, "Please select a database for system 2.     ",
        "cbDatabase2");
}

void TestCompareSelect::refusesIncompleteEntries() {
    QFETCH(QList<bool>, chosen);
    QFETCH(QString, message);
    QFETCH(QString, focus);
    testsupport::Answers answers;
    OpenDocuments documents;
    documents.open(m_server.serverText(), QStringLiteral("sa"));
    Selection selection(documents);
    for (int system : {1, 2}) {
        const int at = 2 * (system - 1);
        selection.chooseSystem(system, chosen[at] ? m_server.serverText() : QString(),
                               chosen[at + 1] ? QStringLiteral("Workshop") : QString());
    }
    selection.click("cmdOK");
    const auto box = answers.takeBox();
    QCOMPARE(box.text, message);
    QCOMPARE(box.icon, desktop::MsgBoxIcon::Exclamation);
    QCOMPARE(selection.focus(), focus);
    QVERIFY(selection.dialog.isVisible());
}

void TestCompareSelect::refusesDatabasesWithoutPermission_data() {
    const testsupport::Table<QString, QString, int> row("database1", "database2", "unreadable");
    row("system 1", "Payroll", "Workshop", 1);
    row("system 2", "Workshop", "Payroll", 2);
    row("both", "Payroll", "Payroll", 1);
}

void TestCompareSelect::refusesDatabasesWithoutPermission() {
    QFETCH(QString, database1);
    QFETCH(QString, database2);
    QFETCH(int, unreadable);
    testsupport::Answers answers;
    OpenDocuments documents;
    documents.open(m_server.serverText(), QStringLiteral("clerk"), QStringLiteral("clerk"));
    Selection selection(documents);
    answers.whileOpen([](const auto&) { QVERIFY(QGuiApplication::overrideCursor() != nullptr); });
    selection.chooseSystem(1, m_server.serverText(), database1);
    selection.chooseSystem(2, m_server.serverText(), database2);
    for (const QString& database : {database1, database2}) {
        if (database != QStringLiteral("Payroll")) continue;
        QVERIFY(answers.takeBox().text.startsWith(
            QStringLiteral("You don't have permission to access this database.")));
    }
    answers.whileOpen({});
    selection.list(QStringLiteral("cbTable2")).setFocus();
    selection.dialog.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    QCOMPARE(answers.takeBox().text,
             QStringLiteral("You don't have permission to access the selected database on system %1: "
                            "Payroll.     \r\nPlease contact your Database Administrator.     ")
                 .arg(unreadable));
    QCOMPARE(selection.focus(), QStringLiteral("cbTable2"));
    QVERIFY(selection.dialog.takeResult() == nullptr);
}

void TestCompareSelect::normalisesTables_data() {
    const testsupport::Table<QString, QString, QString, QString> row("chosen1", "chosen2", "table1",
                                                                     "table2");
    row("nothing", "", "", AllTables, AllTables);
    row("one each", "Part", "Supplier", "Part", "Supplier");
    row("one and all", "Part", AllTables, AllTables, AllTables);
    row("all and one", AllTables, "Part", AllTables, AllTables);
    row("one and nothing", "Part", "", AllTables, AllTables);
    row("nothing and one", "", "Part", AllTables, AllTables);
    row("all and nothing", AllTables, "", AllTables, AllTables);
}

void TestCompareSelect::normalisesTables() {
    QFETCH(QString, chosen1);
    QFETCH(QString, chosen2);
    QFETCH(QString, table1);
    QFETCH(QString, table2);
    OpenDocuments documents;
    documents.open(m_server.serverText(), QStringLiteral("sa"));
    Selection selection(documents);
    selection.chooseSystem(1, m_server.serverText(), QStringLiteral("Workshop"), chosen1);
    selection.chooseSystem(2, m_server.serverText(), QStringLiteral("Workshop2"), chosen2);
    selection.click("cmdOK");
    QVERIFY(!selection.dialog.isVisible());
    const auto result = selection.dialog.takeResult();
    QVERIFY(result != nullptr);
    QCOMPARE(result->DBConn1().getTable(), table1);
    QCOMPARE(result->DBConn2().getTable(), table2);
}

void TestCompareSelect::configuresTheResult() {
    OpenDocuments documents;
    documents.open(QString());
    documents.open(QStringLiteral("elsewhere"));
    documents.open(m_server.serverText(), QStringLiteral("clerk"), QStringLiteral("clerk"));
    documents.open(QStringLiteral("somewhere"));
    // A second name of the same server.
    const QString other = m_server.serverText().replace(u',', QStringLiteral(" ,"));
    documents.open(other);
    const QString string = documents.documents[2]->connection()->getConnectionString();
    documents.documents[4]->connection()->setConnectionString(string + QStringLiteral(";app=other"));

    Selection selection(documents);
    selection.chooseSystem(1, m_server.serverText(), QStringLiteral("Workshop2"));
    selection.chooseSystem(2, other, QStringLiteral("Workshop"));
    selection.click("cmdOK");
    QCOMPARE(selection.dialog.result(), int(QDialog::Accepted));
    const auto result = selection.dialog.takeResult();
    QVERIFY(!result->isVisible());
    QCOMPARE(result->DBConn1().getServer(), m_server.serverText());
    QCOMPARE(result->DBConn1().getDatabase(), QStringLiteral("Workshop2"));
    QCOMPARE(result->DBConn1().getConnectionString(), string);
    QCOMPARE(result->DBConn2().getServer(), other);
    QCOMPARE(result->DBConn2().getDatabase(), QStringLiteral("Workshop"));
    QCOMPARE(result->DBConn2().getConnectionString(), string + QStringLiteral(";app=other"));
    // The documents' own objects stay as they are.
    QCOMPARE(documents.documents[2]->connection()->getDatabase(), QString());
}

void TestCompareSelect::cancels() {
    OpenDocuments documents;
    documents.open(QStringLiteral("alpha"));
    tw::frmCompareSelect dialog(documents.state);
    QTimer::singleShot(0, &dialog, [&] {
        QVERIFY(dialog.isModal());
        QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("cmdCancel")), Qt::LeftButton);
    });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QVERIFY(dialog.takeResult() == nullptr);
    QVERIFY(!documents.state.cancelled);
}

void TestCompareSelect::serverThatDoesNotAnswer() {
    testsupport::Answers answers;
    answers.whileOpen([](const auto&) { QVERIFY(QGuiApplication::overrideCursor() != nullptr); });
    OpenDocuments documents;
    documents.open(m_server.serverText(), QStringLiteral("sa"));
    documents.open(QStringLiteral("127.0.0.1,1"), QStringLiteral("sa"));
    Selection selection(documents);
    selection.chooseSystem(1, m_server.serverText(), QStringLiteral("Workshop"));
    selection.list(QStringLiteral("cbTable1")).setFocus();
    selection.chooseSystem(1, QStringLiteral("127.0.0.1,1"), {});
    QVERIFY(answers.takeBox().text.contains(QStringLiteral("FillCbDB")));
    QCOMPARE(selection.focus(), QStringLiteral("cbServer1"));
    QCOMPARE(selection.list(QStringLiteral("cbDatabase1")).count(), 0);
    QCOMPARE(selection.list(QStringLiteral("cbTable1")).count(), 0);

    // It may answer now; the same entry is chosen again.
    selection.choose(QStringLiteral("cbServer1"), QStringLiteral("127.0.0.1,1"));
    QVERIFY(answers.takeBox().text.contains(QStringLiteral("FillCbDB")));
}

void TestCompareSelect::documentThatGoes_data() {
    const testsupport::Table<bool> row("whileBoxIsOpen");
    row("before it is chosen", false);
    row("while a message box is open", true);
}

void TestCompareSelect::documentThatGoes() {
    QFETCH(bool, whileBoxIsOpen);
    testsupport::Answers answers;
    OpenDocuments documents;
    documents.open(QStringLiteral("127.0.0.1,1"), QStringLiteral("sa"));
    Selection selection(documents);
    const auto close = [&] {
        documents.close(1);
        documents.documents.clear();
    };
    if (whileBoxIsOpen) {
        answers.whileOpen([&](const auto&) { close(); });
    } else {
        close();
    }
    selection.chooseSystem(1, QStringLiteral("127.0.0.1,1"), {});
    QCOMPARE(answers.boxes(), whileBoxIsOpen ? 1 : 0);
    if (whileBoxIsOpen) answers.takeBox();
    QCOMPARE(selection.list(QStringLiteral("cbDatabase1")).count(), 0);
    QVERIFY(selection.dialog.isVisible());
}

QTEST_MAIN(TestCompareSelect)
#include "test_compareselect.moc"
