#include "browse/frmconnection.h"
#include "dbaccess/dbconnection.h"
#include "desk.h"
#include "support/answers.h"
#include "support/sampleserverprocess.h"
#include "support/table.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTcpServer>
#include <QTest>

/// The dialog against a server of its own.
class TestConnecting : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void connects();
    void connectsAgainInPlace();
    void connectsThroughDataSource();
    void tellsWhyItFailed_data();
    void tellsWhyItFailed();
    void survivesItsDocument();

  private:
    testsupport::RunningSampleServer m_server;
};

namespace {

/// Types what is wanted into a dialog of its own and presses OK. Returns whether it closed.
bool connectAs(Desk& desk, const QString& server, const QString& user, const QString& password) {
    tw::frmConnection dialog(desk.state, desk.frame, *desk.document);
    dialog.open();
    const auto type = [&](const char* name, const QString& text) {
        auto* box = dialog.findChild<QLineEdit*>(QString::fromLatin1(name));
        box->selectAll();
        QTest::keyClicks(box, text);
    };
    dialog.findChild<QComboBox*>(QStringLiteral("cbServer"))->setEditText(server);
    auto* authentication = dialog.findChild<QCheckBox*>(QStringLiteral("chkSQLAuthentication"));
    if (!authentication->isChecked()) authentication->click();
    type("txtUserName", user);
    type("txtPassword", password);
    QTest::keyClick(&dialog, Qt::Key_Return);
    return dialog.result() == QDialog::Accepted;
}

bool hasRootOnly(Desk& desk) {
    return desk.document->tvDBNodes().count() == 1 && desk.document->tvDBNodes().find(QStringLiteral("R"));
}

}  // namespace

void TestConnecting::connects() {
    Desk desk;
    QVERIFY(connectAs(desk, m_server.serverText(), QStringLiteral("clerk"), QStringLiteral("clerk")));
    QVERIFY(desk.document->isConnected());
    QVERIFY(!desk.state.cancelled);
    QCOMPARE(desk.frame.connectedCounts, std::vector<qint32>{1});
    const auto connection = desk.document->connection();
    QCOMPARE(connection->getConnectionString(), QStringLiteral("driver={SQL Server};server=") +
                                                    m_server.serverText() +
                                                    QStringLiteral(";uid=clerk;pwd=clerk"));
    QCOMPARE(connection->getServer(), m_server.serverText());
    QVERIFY(!connection->getDSN());
    QVERIFY(desk.document->tvDBNodes().find(QStringLiteral("R"))->children.size() > 2);
    QCOMPARE(desk.state.setting(QStringLiteral("Server1"), {}), m_server.serverText());
    QCOMPARE(desk.state.setting(QStringLiteral("SQLAuthentication"), {}), QStringLiteral("1"));
}

void TestConnecting::connectsAgainInPlace() {
    testsupport::Answers answers;
    Desk desk;
    QVERIFY(connectAs(desk, m_server.serverText(), QStringLiteral("sa"), {}));
    const auto first = desk.document->connection();
    QVERIFY(connectAs(desk, m_server.serverText(), QStringLiteral("clerk"), QStringLiteral("clerk")));
    QVERIFY(desk.document->connection() != first);
    QVERIFY(!connectAs(desk, m_server.serverText(), QStringLiteral("clerk"), QStringLiteral("wrong")));
    answers.takeBox();
    QVERIFY(!desk.document->isConnected());
    QCOMPARE(desk.document->windowTitle(), QStringLiteral("<No Connection>"));
    QVERIFY(hasRootOnly(desk));
    QVERIFY(connectAs(desk, m_server.serverText(), QStringLiteral("sa"), {}));
    // Counted once, whatever happened between; each dialog that was given up asks for an update of its own.
    QCOMPARE(desk.frame.connectedCounts, (std::vector<qint32>{1, 1, 0, 1}));
}

void TestConnecting::connectsThroughDataSource() {
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("odbc.ini")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[Sample]\nDriver=SQL Server\nServer=127.0.0.1\nUID=sa\nPort=" +
               QByteArray::number(m_server.port()) + "\n");
    file.close();
    const QByteArray before = qgetenv("ODBCINI");
    qputenv("ODBCINI", file.fileName().toLocal8Bit());
    const testsupport::Answers noBoxes;
    Desk desk;
    tw::frmConnection dialog(desk.state, desk.frame, *desk.document);
    dialog.open();
    dialog.findChild<QComboBox*>(QStringLiteral("cbDSN"))->setCurrentText(QStringLiteral("Sample"));
    dialog.findChild<QComboBox*>(QStringLiteral("cbServer"))->setEditText({});
    QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("cmdOK")), Qt::LeftButton);
    qputenv("ODBCINI", before);

    const auto connection = desk.document->connection();
    QVERIFY(connection->getDSN());
    QCOMPARE(connection->getConnectionString(), QStringLiteral("DSN=Sample;"));
    QCOMPARE(connection->getServer(), m_server.serverText());
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void TestConnecting::tellsWhyItFailed_data() {
    const testsupport::Table<bool, QString, QString> row("reachable", "head", "hint");
    row("wrong password", true, "Error: -2147217843.\r\n",
        "Please make sure your User ID and Password have been entered "
        "correctly.\r\n\r\n");
    row("nobody listens", false, "Error: -2147467259.\r\n",
        "Please make sure that the Server Name has been entered correctly "
        "and the SQL Server has started successfully.\r\n\r\n");
}

void TestConnecting::tellsWhyItFailed() {
    QFETCH(bool, reachable);
    QFETCH(QString, head);
    QFETCH(QString, hint);
    QTcpServer closed;
    QVERIFY(closed.listen(QHostAddress::LocalHost));
    const QString nobody = QStringLiteral("127.0.0.1,%1").arg(closed.serverPort());
    closed.close();

    testsupport::Answers answers;
    answers.whileOpen([](const auto&) { QVERIFY(QGuiApplication::overrideCursor() != nullptr); });
    Desk desk;
    QVERIFY(!connectAs(desk, reachable ? m_server.serverText() : nobody, QStringLiteral("clerk"),
                       QStringLiteral("wrong")));
    const auto box = answers.takeBox();
    QCOMPARE(box.title, QStringLiteral("Tablewright - Error!"));
    QCOMPARE(box.icon, desktop::MsgBoxIcon::Exclamation);
    QVERIFY2(box.text.startsWith(head), qUtf8Printable(box.text));
    QVERIFY2(box.text.endsWith(QStringLiteral("\r\n\r\n") + hint +
                               QStringLiteral("Debug Information: Error occured in subroutine FillTvDB of "
                                              "module DBConnection.cls.     \r\n\r\n")),
             qUtf8Printable(box.text));
    QVERIFY(!desk.document->isConnected());
    QCOMPARE(desk.document->windowTitle(), QStringLiteral("<No Connection>"));
    QVERIFY(hasRootOnly(desk));
}

void TestConnecting::survivesItsDocument() {
    testsupport::Answers answers;
    Desk desk;
    answers.whileOpen([&](const auto&) { desk.document.reset(); });
    QVERIFY(!connectAs(desk, m_server.serverText(), QStringLiteral("clerk"), QStringLiteral("wrong")));
    answers.takeBox();
    QCOMPARE(desk.state.connectedDocuments, 0);
}

QTEST_MAIN(TestConnecting)
#include "test_connecting.moc"
