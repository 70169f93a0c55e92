#include "browse/frmconnection.h"
#include "desk.h"
#include "support/answers.h"
#include "support/captions.h"
#include "support/table.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using testsupport::Table;

namespace {

/// The dialog on the screen, its controls by name.
class Dialog : public tw::frmConnection {
  public:
    explicit Dialog(Desk& desk) : frmConnection(desk.state, desk.frame, *desk.document) { open(); }

    template <class Widget>
    Widget* control(const char* name) const {
        return findChild<Widget*>(QString::fromLatin1(name));
    }
    QComboBox* dataSources() const { return control<QComboBox>("cbDSN"); }
    QComboBox* server() const { return control<QComboBox>("cbServer"); }
    QLineEdit* user() const { return control<QLineEdit>("txtUserName"); }
    QLineEdit* password() const { return control<QLineEdit>("txtPassword"); }
    QCheckBox* box(const char* name) const { return control<QCheckBox>(name); }
    void press(const char* button) { QTest::mouseClick(control<QPushButton>(button), Qt::LeftButton); }
    QStringList servers() const { return texts(*server()); }

    static QStringList texts(const QComboBox& combo) {
        QStringList result;
        for (int i = 0; i < combo.count(); ++i) {
            result += combo.itemText(i);
        }
        return result;
    }
};

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

}  // namespace

class TestFrmConnection : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void opensWithNothingStored();
    void keepsRecentServers_data();
    void keepsRecentServers();
    void restoresEntries_data();
    void restoresEntries();
    void reportsStoredTextThatIsNoNumber_data();
    void reportsStoredTextThatIsNoNumber();
    void loadsWithoutSettings();
    void tellsThatTheDriverIsMissing();
    void storesEntries_data();
    void storesEntries();
    void switchesAuthentication();
    void selectsTextOnEntering();
    void listsDataSources();
    void refusesEntries_data();
    void refusesEntries();
    void endsWithoutConnecting_data();
    void endsWithoutConnecting();

  private:
    QTemporaryDir m_drivers;  ///< the driver manager's own folder, which it asks for once
};

void TestFrmConnection::initTestCase() {
    qputenv("ODBCSYSINI", m_drivers.path().toLocal8Bit());
    write(m_drivers.filePath(QStringLiteral("odbcinst.ini")), "[SQL Server]\nDriver=x\n");
}

void TestFrmConnection::opensWithNothingStored() {
    Desk desk;
    desk.state.cancelled = true;
    Dialog dialog(desk);
    QVERIFY(!desk.state.cancelled);
    QCOMPARE(testsupport::captionsOf(dialog),
             (QStringList{"Login - Database Connection", "Frame2:  Use ODBC Connection",
                          "lblDSN: Data Source Name (DSN)", "Frame1:  Use Server Direct Connection ",
                          ": (local)", "lblSQLEnthentication: Use SQL Server Authentication",
                          "lblServer: Database Server Name", "lblUserName: User ID", "lblPassword: Password",
                          "Frame3:  Save User Information Options ", "chkSaveUserID: Remember My User ID",
                          "chkSavePassword: Remember My Password", "cmdOK: &OK", "cmdCancel: &Cancel",
                          "cmdHelp: &Help"}));
    QCOMPARE(Dialog::texts(*dialog.dataSources()), QStringList{QStringLiteral("(None)")});
    QCOMPARE(dialog.dataSources()->currentIndex(), 0);
    QCOMPARE(dialog.servers(), QStringList{QStringLiteral("(local)")});
    QVERIFY(dialog.server()->isEnabled() && dialog.server()->isEditable());
    QVERIFY(!dialog.user()->isEnabled() && !dialog.password()->isEnabled());
    QVERIFY(!dialog.box("chkSaveUserID")->isEnabled() && !dialog.box("chkSavePassword")->isEnabled());
    QVERIFY(dialog.focusWidget() == dialog.server());
    QVERIFY(dialog.control<QPushButton>("cmdOK")->isDefault());

    testsupport::Answers answers;
    dialog.press("cmdHelp");
    const auto help = answers.takeBox();
    QCOMPARE(
        help.text,
        QStringLiteral(
            "You can use either ODBC Connection or Server Direct Connection to connect to the SQL Server.  "
            "Selecting a valid ODBC DSN will disable Server Direct Connection entries.  If you want to use "
            "the Server Direct Connection, select (None) in the ODBC DSN selection.  \r\n\r\nWhen selecting "
            "Server Direct Connection, you can either use SQL Server Authentication method or Windows NT "
            "Authentication method.  Selecting SQL Server Authentication method will require the User ID "
            "and password to be entered."));
    QCOMPARE(help.icon, desktop::MsgBoxIcon::Information);

    // A disabled entry has the colour of a button's face.
    const QPalette palette = dialog.user()->palette();
    QCOMPARE(palette.color(QPalette::Disabled, QPalette::Base), palette.color(QPalette::Button));
    QVERIFY(palette.color(QPalette::Active, QPalette::Base) != palette.color(QPalette::Button));
}

void TestFrmConnection::keepsRecentServers_data() {
    const testsupport::Table<QString, QString, QString, QString> row("stored", "listed", "used",
                                                                     "storedAfter");
    row("repetitions and gaps are cleaned when read", "A|A||B|", "(local)|A|B", "(local)", "A|A|B|B|");
    row("the case tells servers apart", "A|a||a|", "(local)|A|a", "(local)", "A|A|a|a|");
    row("a typed server goes to the top", "A|B|||", "(local)|A|B", "X", "X|A|B||");
    row("a picked server stays at its old place", "A|B|||", "(local)|A|B", "B", "B|A|B||");
    row("a full list moves into the place that is never read", "A|B|C|D|Z", "(local)|A|B|C|D", "X",
        "X|A|B|C|D");
    row("(local) is never stored", "||||", "(local)", "(local)", "||||");
    row("a stored (local) is listed and left alone", "(local)|A|||", "(local)|(local)|A", "X", "X|A|A||");
    row("an emptied box is stored", "A|B|||", "(local)|A|B", "", "|A|B||");
}

void TestFrmConnection::keepsRecentServers() {
    QFETCH(QString, stored);
    QFETCH(QString, used);
    Desk desk;
    const auto key = [](qsizetype i) { return QStringLiteral("Server%1").arg(i + 1); };
    const QStringList before = stored.split(u'|');
    for (qsizetype i = 0; i < before.size(); ++i) {
        if (!before[i].isEmpty()) desk.state.saveSetting(key(i), before[i]);
    }
    Dialog dialog(desk);
    QTEST(dialog.servers().join(u'|'), "listed");
    QCOMPARE(dialog.server()->currentText(), QStringLiteral("(local)"));
    dialog.server()->setEditText(used);
    dialog.press("cmdCancel");

    QStringList after;
    for (qsizetype i = 0; i < before.size(); ++i)
        after += desk.state.setting(key(i), {});
    QTEST(after.join(u'|'), "storedAfter");
}

void TestFrmConnection::restoresEntries_data() {
    const Table<QString, QString, QString, QString, QString> row("saveUserID", "savePassword",
                                                                 "authentication", "user", "password");
    row("both", "1", "1", "1", "ann", "secret");
    row("user only", "1", "0", "1", "ann", "");
    row("password only", "0", "1", "1", "", "secret");
    row("Windows NT authentication", "1", "1", "0", "", "");
    row("grey is not checked", "2", "1", "1", "", "secret");
}

void TestFrmConnection::restoresEntries() {
    QFETCH(QString, saveUserID);
    QFETCH(QString, savePassword);
    QFETCH(QString, authentication);
    Desk desk;
    desk.store({{QStringLiteral("SaveUserID"), saveUserID},
                {QStringLiteral("SavePassword"), savePassword},
                {QStringLiteral("SQLAuthentication"), authentication},
                {QStringLiteral("User"), QStringLiteral("ann")},
                {QStringLiteral("Password"), QStringLiteral("secret")}});
    Dialog dialog(desk);
    QTEST(dialog.user()->text(), "user");
    QTEST(dialog.password()->text(), "password");
    QCOMPARE(dialog.password()->displayText(), QString(dialog.password()->text().size(), u'*'));
    QCOMPARE(dialog.user()->isEnabled(), authentication == QStringLiteral("1"));
    QCOMPARE(dialog.box("chkSaveUserID")->isChecked(), saveUserID == QStringLiteral("1"));
}

void TestFrmConnection::reportsStoredTextThatIsNoNumber_data() {
    const Table<QString, QString, QString> row("key", "text", "error");
    row("no number", "SaveUserID", "yes", "Error: 13.");
    row("too large", "SavePassword", "99999", "Error: 6.");
    row("no state", "SQLAuthentication", "3", "Error: 380.");
}

void TestFrmConnection::reportsStoredTextThatIsNoNumber() {
    QFETCH(QString, key);
    QFETCH(QString, text);
    QFETCH(QString, error);
    testsupport::Answers answers;
    Desk desk;
    desk.store({{key, text}, {QStringLiteral("Server1"), QStringLiteral("A")}});
    Dialog dialog(desk);
    const QString box = answers.takeBox().text;
    QVERIFY2(box.startsWith(error), qUtf8Printable(box));
    QVERIFY(box.contains(QStringLiteral("subroutine RestoreUserSettings of module frmConnection.")));
    // The loading goes on behind the procedure that failed.
    QCOMPARE(dialog.servers().size(), 2);
    QVERIFY(!dialog.user()->isEnabled());
    dialog.close();
    QCOMPARE(desk.state.setting(key, {}), text);
}

void TestFrmConnection::loadsWithoutSettings() {
    testsupport::Answers answers;
    Desk desk;
    write(desk.settings.filePath(), "{");
    const Dialog dialog(desk);
    for (const char* procedure : {"RestoreUserSettings", "FillServer"}) {
        QVERIFY(answers.takeBox().text.contains(QLatin1String(procedure)));
    }
    QCOMPARE(dialog.servers(), QStringList{QStringLiteral("(local)")});
}

void TestFrmConnection::tellsThatTheDriverIsMissing() {
    testsupport::Answers answers;
    Desk desk;
    write(m_drivers.filePath(QStringLiteral("odbcinst.ini")), "[SQL Server Native Client]\nDriver=x\n");
    const Dialog dialog(desk);
    initTestCase();
    const auto box = answers.takeBox();
    QVERIFY2(box.text.startsWith(QStringLiteral("Your computer does not have Microsoft Data Access "
                                                "Components installed.  Please contact your administrator "
                                                "for support.\r\n\r\nNote: ")),
             qUtf8Printable(box.text));
    QCOMPARE(box.icon, desktop::MsgBoxIcon::Critical);
    QCOMPARE(dialog.servers().size() + dialog.dataSources()->count(), 0);
}

void TestFrmConnection::storesEntries_data() {
    const Table<QString, QString, QString> row("remember", "typed", "stored");
    row("remembered", "1", "new", "new");
    row("not remembered", "0", "new", "old");
    row("an empty text overwrites nothing", "1", "", "old");
}

void TestFrmConnection::storesEntries() {
    QFETCH(QString, remember);
    QFETCH(QString, typed);
    Desk desk;
    desk.store({{QStringLiteral("User"), QStringLiteral("old")},
                {QStringLiteral("Password"), QStringLiteral("old")}});
    Dialog dialog(desk);
    dialog.box("chkSQLAuthentication")->click();
    if (remember == QStringLiteral("1")) {
        dialog.box("chkSaveUserID")->click();
        dialog.box("chkSavePassword")->click();
    }
    dialog.user()->setText(typed);
    dialog.password()->setText(typed);
    dialog.close();
    QTEST(desk.state.setting(QStringLiteral("User"), {}), "stored");
    QTEST(desk.state.setting(QStringLiteral("Password"), {}), "stored");
    QCOMPARE(desk.state.setting(QStringLiteral("SaveUserID"), {}), remember);
    QCOMPARE(desk.state.setting(QStringLiteral("SavePassword"), {}), remember);
    QCOMPARE(desk.state.setting(QStringLiteral("SQLAuthentication"), {}), QStringLiteral("1"));
}

void TestFrmConnection::switchesAuthentication() {
    Desk desk;
    desk.store({{QStringLiteral("User"), QStringLiteral("ann")},
                {QStringLiteral("Password"), QStringLiteral("secret")}});
    Dialog dialog(desk);
    const auto texts = [&] { return dialog.user()->text() + u'/' + dialog.password()->text(); };
    QTest::mouseClick(dialog.control<QLabel>("lblSQLEnthentication"), Qt::LeftButton);
    QVERIFY(dialog.box("chkSQLAuthentication")->isChecked() && dialog.user()->isEnabled());
    QCOMPARE(texts(), QStringLiteral("/"));
    // Ticked, and cleared again.
    for (const int times : {1, 2}) {
        QTest::keyClick(dialog.box("chkSaveUserID"), Qt::Key_Space);
        QCOMPARE(texts(), times == 1 ? QStringLiteral("ann/") : QStringLiteral("ann/secret"));
        QTest::keyClick(dialog.box("chkSavePassword"), Qt::Key_Space);
        QCOMPARE(texts(), QStringLiteral("ann/secret"));
    }
    QTest::keyClick(dialog.box("chkSQLAuthentication"), Qt::Key_Space);
    QVERIFY(!dialog.user()->isEnabled() && !dialog.box("chkSavePassword")->isEnabled());
    QCOMPARE(texts(), QStringLiteral("/"));
    QTest::keyClick(dialog.box("chkSQLAuthentication"), Qt::Key_Space);
    QCOMPARE(texts(), QStringLiteral("/"));
}

void TestFrmConnection::selectsTextOnEntering() {
    Desk desk;
    Dialog dialog(desk);
    dialog.box("chkSQLAuthentication")->click();
    dialog.user()->setText(QStringLiteral("ann"));
    dialog.password()->setText(QStringLiteral("secret"));
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QTest::mouseClick(dialog.user(), Qt::LeftButton);
    QTRY_COMPARE(dialog.user()->selectedText(), QStringLiteral("ann"));
    QTest::keyClick(dialog.user(), Qt::Key_Tab);
    QVERIFY(dialog.password()->hasFocus());
    QTRY_COMPARE(dialog.password()->selectionLength(), 6);
}

void TestFrmConnection::listsDataSources() {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("odbc.ini"));
    write(path,
          "[Sales]\nDriver=SQL Server\nServername=x\n[Other]\nDriver=SQL Server Native Client\n"
          "[Stock]\nDriver=SQL Server\nServername=x\n");
    const QByteArray before = qgetenv("ODBCINI");
    qputenv("ODBCINI", path.toLocal8Bit());
    Desk desk;
    Dialog dialog(desk);
    qputenv("ODBCINI", before);

    QStringList sources = Dialog::texts(*dialog.dataSources());
    QCOMPARE(sources.takeFirst(), QStringLiteral("(None)"));
    sources.sort();
    QCOMPARE(sources, (QStringList{QStringLiteral("Sales"), QStringLiteral("Stock")}));

    QTest::keyClick(dialog.dataSources(), Qt::Key_Down);
    QVERIFY(!dialog.server()->isEnabled());
    QVERIFY(dialog.box("chkSQLAuthentication")->isEnabled());
    QTest::keyClick(dialog.dataSources(), Qt::Key_Up);
    QVERIFY(dialog.server()->isEnabled());
}

void TestFrmConnection::refusesEntries_data() {
    const Table<QString, QString, QString> row("server", "user", "message");
    const char* noServer = "Please enter the SQL Server computer name.     ";
    row("no server", "", "", noServer);
    row("blank server", "  ", "ann", noServer);
    row("blank user", "X", "   ",
        "When using SQL Server Authentication method, the User ID and Password must be "
        "entered.     ");
}

void TestFrmConnection::refusesEntries() {
    QFETCH(QString, server);
    QFETCH(QString, user);
    testsupport::Answers answers;
    Desk desk;
    desk.connectDocument();
    const auto connection = desk.document->connection();
    Dialog dialog(desk);
    if (!user.isEmpty()) {
        dialog.box("chkSQLAuthentication")->click();
        dialog.user()->setText(user);
    }
    dialog.server()->setEditText(server);
    QLineEdit* entry = user.isEmpty() ? dialog.server()->lineEdit() : dialog.user();
    entry->setFocus();
    QCoreApplication::processEvents();
    entry->deselect();
    QTest::keyClick(entry, Qt::Key_Return);

    const auto box = answers.takeBox();
    QTEST(box.text, "message");
    QCOMPARE(box.title, QStringLiteral("Error"));
    QCOMPARE(box.icon, desktop::MsgBoxIcon::Information);
    // The dialog stays, and the connected document is connected no longer.
    QVERIFY(dialog.isVisible());
    QVERIFY(!user.isEmpty() == (dialog.focusWidget() == dialog.user()));
    QCOMPARE(dialog.user()->selectedText(), user);
    QCOMPARE(desk.document->windowTitle(), QStringLiteral("<No Connection>"));
    QVERIFY(!desk.document->isConnected());
    QCOMPARE(desk.document->connection(), connection);
    QCOMPARE(desk.frame.connectedCounts, std::vector<qint32>{0});

    // Refused once more, it is not counted once more.
    dialog.press("cmdOK");
    answers.takeBox();
    QCOMPARE(desk.frame.connectedCounts, (std::vector<qint32>{0, 0}));
}

void TestFrmConnection::endsWithoutConnecting_data() {
    const Table<QString> row("way");
    for (const char* way : {"cancel", "escape", "close"})
        row(way, way);
}

void TestFrmConnection::endsWithoutConnecting() {
    QFETCH(QString, way);
    Desk desk;
    desk.connectDocument();
    Dialog dialog(desk);
    dialog.server()->setEditText(QStringLiteral("X"));
    if (way == QStringLiteral("cancel")) dialog.press("cmdCancel");
    if (way == QStringLiteral("escape")) QTest::keyClick(dialog.server(), Qt::Key_Escape);
    if (way == QStringLiteral("close")) dialog.close();

    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QVERIFY(desk.state.cancelled);
    QVERIFY(desk.document->isConnected());
    QCOMPARE(desk.document->windowTitle(), QStringLiteral("Connected to X"));
    QCOMPARE(desk.state.setting(QStringLiteral("Server1"), {}), QStringLiteral("X"));
}

QTEST_MAIN(TestFrmConnection)
#include "test_frmconnection.moc"
