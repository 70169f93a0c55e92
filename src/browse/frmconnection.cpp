#include "browse/frmconnection.h"

#include "browse/frmdocument.h"
#include "browse/handler.h"
#include "dbaccess/dbconnection.h"
#include "platform/desktop/hourglass.h"
#include "platform/desktop/msgbox.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>

namespace tw {

namespace {

const QString ModuleName = QStringLiteral("frmConnection");

}  // namespace

frmConnection::frmConnection(AppState& state, Frame& frame, frmDocument& document, QWidget* parent)
    : QDialog(parent), m_state(state), m_frame(frame), m_document(&document) {
    setupControls(*this);
    connectHandlers();
    Form_Load();
    cbServer->setFocus();
}

void frmConnection::connectHandlers() {
    connect(cbDSN, &QComboBox::currentIndexChanged, this, &frmConnection::cbDSN_Click);
    connect(chkSQLAuthentication, &QCheckBox::toggled, this, &frmConnection::chkSQLAuthentication_Click);
    connect(chkSaveUserID, &QCheckBox::toggled, this, &frmConnection::chkSaveUserID_Click);
    connect(chkSavePassword, &QCheckBox::toggled, this, &frmConnection::chkSavePassword_Click);
    connect(cmdOK, &QPushButton::clicked, this, &frmConnection::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmConnection::cmdCancel_Click);
    connect(cmdHelp, &QPushButton::clicked, this, &frmConnection::cmdHelp_Click);
    txtUserName->installEventFilter(this);
    txtPassword->installEventFilter(this);
    lblSQLEnthentication->installEventFilter(this);
}

void frmConnection::done(int result) {
    Form_Unload();
    QDialog::done(result);
}

/// Escape and the window's close button are the Cancel button.
void frmConnection::reject() {
    cmdCancel_Click();
}

bool frmConnection::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn) {
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason) return false;
        const auto handler = watched == txtUserName ? &frmConnection::txtUserName_GotFocus
                                                    : &frmConnection::txtPassword_GotFocus;
        // Once the box has dealt with the event itself: a mouse press would take the selection away again.
        QMetaObject::invokeMethod(this, handler, Qt::QueuedConnection);
    } else if (watched == lblSQLEnthentication && event->type() == QEvent::MouseButtonRelease) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::LeftButton && lblSQLEnthentication->rect().contains(mouse->pos())) {
            chkSQLAuthentication->toggle();
        }
    }
    return false;
}

bool frmConnection::ValidateEntries() {
    return handle(QStringLiteral("ValidateEntries"), ModuleName, [this] {
        const auto refuse = [](const QString& text) {
            desktop::MsgBox(text + QString(5, u' '), desktop::MsgBoxIcon::Information,
                            QStringLiteral("Error"));
            return false;
        };
        if (UsingDSN) return true;
        if (cbServer->currentText().trimmed().isEmpty()) {
            return refuse(QStringLiteral("Please enter the SQL Server computer name."));
        }
        // An empty password is a password.
        if (chkSQLAuthentication->isChecked() && txtUserName->text().trimmed().isEmpty()) {
            return refuse(
                QStringLiteral("When using SQL Server Authentication method, "
                               "the User ID and Password must be entered."));
        }
        return true;
    });
}

bool frmConnection::ConnectToServer() {
    return handle(QStringLiteral("ConnectToServer"), ModuleName, [this] {
        if (m_document == nullptr) return false;
        const auto connection = std::make_shared<DBConnection>(m_state.connectionPool);
        if (UsingDSN) {
            const QString source = cbDSN->currentText();
            connection->setDSN(true);
            connection->setServer(source);
            connection->setConnectionString(QStringLiteral("DSN=") + source + QStringLiteral(";"));
        } else {
            const QString server = cbServer->currentText();
            connection->setDSN(false);
            connection->setServer(server);
            connection->setUser(txtUserName->text());
            connection->setPassword(txtPassword->text());
            connection->setConnectionString(QStringLiteral("driver={SQL Server};server=") + server +
                                            QStringLiteral(";uid=") + txtUserName->text() +
                                            QStringLiteral(";pwd=") + txtPassword->text());
        }
        m_document->setConnection(connection);
        return connection->FillTvDB(m_document->tvDBNodes());
    });
}

void frmConnection::cmdOK_Click() {
    handle(QStringLiteral("cmdOK_Click"), ModuleName, [this] {
        bool connected = false;
        if (ValidateEntries()) {
            const desktop::Hourglass pointer;
            connected = ConnectToServer();
        }
        if (connected) {
            markConnected();
            accept();
        } else {
            markNotConnected();
        }
        m_frame.SetMenuAndToolBarControls();
    });
}

void frmConnection::markConnected() {
    if (m_document == nullptr || m_document->isConnected()) return;
    m_document->setConnected(true);
    ++m_state.connectedDocuments;
}

/// For a refused entry too: a connected document counts as disconnected from then on.
void frmConnection::markNotConnected() {
    if (m_document == nullptr) return;
    m_document->setWindowTitle(QStringLiteral("<No Connection>"));
    if (txtUserName->isEnabled()) {
        txtUserName->setFocus();
        // It may have the focus already, or get it when the message has gone: neither counts as entering.
        txtUserName_GotFocus();
    }
    if (!m_document->isConnected()) return;
    m_document->setConnected(false);
    --m_state.connectedDocuments;
}

void frmConnection::cmdCancel_Click() {
    handle(QStringLiteral("cmdCancel_Click"), ModuleName, [this] {
        m_state.cancelled = true;
        QDialog::reject();
    });
}

void frmConnection::cmdHelp_Click() {
    handle(QStringLiteral("cmdHelp_Click"), ModuleName, [] {
        desktop::MsgBox(
            QStringLiteral("You can use either ODBC Connection or "
                           "Server Direct Connection to connect to "
                           "the SQL Server.  Selecting a valid ODBC DSN "
                           "will disable Server Direct Connection entries.  "
                           "If you want to use the Server Direct Connection, "
                           "select (None) in the ODBC DSN selection.  "
                           "\r\n\r\n"
                           "When selecting Server Direct Connection, you "
                           "can either use SQL Server Authentication method or Windows "
                           "NT Authentication method.  Selecting SQL Server Authentication method "
                           "will require the User ID and password to be entered."),
            desktop::MsgBoxIcon::Information);
    });
}

void frmConnection::cbDSN_Click() {
    handle(QStringLiteral("cbDSN_Click"), ModuleName, [this] {
        UsingDSN = cbDSN->currentText() != QStringLiteral("(None)");
        cbServer->setEnabled(!UsingDSN);
        chkSQLAuthentication_Click();
    });
}

void frmConnection::chkSQLAuthentication_Click() {
    handle(QStringLiteral("chkSQLAuthentication_Click"), ModuleName, [this] {
        const bool needsUser = chkSQLAuthentication->isChecked();
        for (QWidget* entry :
             std::initializer_list<QWidget*>{txtUserName, txtPassword, chkSaveUserID, chkSavePassword}) {
            entry->setEnabled(needsUser);
        }
        if (needsUser) {
            chkSaveUserID_Click();
            chkSavePassword_Click();
        } else {
            txtUserName->clear();
            txtPassword->clear();
        }
    });
}

void frmConnection::chkSaveUserID_Click() {
    handle(QStringLiteral("chkSaveUserID_Click"), ModuleName, [this] {
        if (chkSQLAuthentication->isChecked() && chkSaveUserID->isChecked()) txtUserName->setText(SavedUser);
    });
}

void frmConnection::chkSavePassword_Click() {
    handle(QStringLiteral("chkSavePassword_Click"), ModuleName, [this] {
        if (chkSQLAuthentication->isChecked() && chkSavePassword->isChecked()) {
            txtPassword->setText(SavedPassword);
        }
    });
}

void frmConnection::txtUserName_GotFocus() {
    handle(QStringLiteral("txtUserName_GotFocus"), ModuleName, [this] { txtUserName->selectAll(); });
}

void frmConnection::txtPassword_GotFocus() {
    handle(QStringLiteral("txtPassword_GotFocus"), ModuleName, [this] { txtPassword->selectAll(); });
}

}  // namespace tw
