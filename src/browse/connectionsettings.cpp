// What the connection dialog reads when it loads and writes when it unloads.
#include "browse/frmconnection.h"
#include "browse/handler.h"
#include "browse/recentservers.h"
#include "platform/ado/datasources.h"
#include "platform/conversions.h"
#include "platform/desktop/msgbox.h"
#include "platform/runtimeerror.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalBlocker>

#include <utility>

namespace tw {

namespace {

const QString ModuleName = QStringLiteral("frmConnection");

const QString Unchecked = QStringLiteral("0");

/// A check box's stored state: 1 is checked; 0 and 2 (grey, which is never stored) are not.
bool isChecked(const QString& storedState) {
    const qint16 state = platform::toInteger(storedState);
    if (state < 0 || state > 2) throw platform::RuntimeError(380, QStringLiteral("Invalid property value"));
    return state == 1;
}

bool isState(const QString& stored) {
    try {
        isChecked(stored);
        return true;
    } catch (const platform::RuntimeError&) {
        return false;
    }
}

/// A stored text that is no state was told when it was read, and is left for whoever wants to mend it.
void storeState(AppState& state, const QString& key, const QCheckBox& box) {
    if (isState(state.setting(key, Unchecked))) {
        state.saveSetting(key, box.isChecked() ? QStringLiteral("1") : Unchecked);
    }
}

QString noDataAccessText() {
    return QStringLiteral(
        "Your computer does not have Microsoft Data Access Components installed.  "
        "Please contact your administrator for support."
        "\r\n\r\n"
        "Note: You can install Microsoft Data Access Components by running "
        "MDAC_TYP.EXE from the SQL Server CD or you can download the latest "
        "version of MDAC_TYP.exe from the following site: "
        "https://www.freetds.org/");
}

}  // namespace

void frmConnection::Form_Load() {
    handle(QStringLiteral("Form_Load"), ModuleName, [this] {
        UsingDSN = false;
        m_state.cancelled = false;
        chkSQLAuthentication_Click();
        if (CheckDataAccess()) {
            RestoreUserSettings();
            FillServer();
            FillDSN();
        } else {
            desktop::MsgBox(noDataAccessText(), desktop::MsgBoxIcon::Critical);
        }
    });
}

bool frmConnection::CheckDataAccess() {
    try {
        return ado::driverPresent();
    } catch (...) {
        return false;
    }
}

void frmConnection::RestoreUserSettings() {
    handle(QStringLiteral("RestoreUserSettings"), ModuleName, [this] {
        const auto flag = [this](const QString& key) { return m_state.setting(key, Unchecked, isChecked); };
        chkSaveUserID->setChecked(flag(QStringLiteral("SaveUserID")));
        chkSavePassword->setChecked(flag(QStringLiteral("SavePassword")));
        SavedUser = m_state.setting(QStringLiteral("User"), {});
        SavedPassword = m_state.setting(QStringLiteral("Password"), {});
        // Puts the saved texts back, or leaves the boxes empty.
        chkSQLAuthentication->setChecked(flag(QStringLiteral("SQLAuthentication")));
        chkSQLAuthentication_Click();
    });
}

void frmConnection::FillServer() {
    handle(QStringLiteral("FillServer"), ModuleName, [this] {
        cbServer->clear();
        cbServer->addItem(LocalServer);
        QStringList stored;
        for (int i = 1; i <= 4; ++i) {
            stored += m_state.setting(QStringLiteral("Server%1").arg(i), {});
        }
        cbServer->addItems(recentServers(stored));
        cbServer->setCurrentIndex(0);
    });
}

void frmConnection::FillDSN() {
    handle(QStringLiteral("FillDSN"), ModuleName, [this] {
        {
            // Nothing is chosen until the list is complete.
            const QSignalBlocker quiet(cbDSN);
            cbDSN->clear();
            cbDSN->addItem(QStringLiteral("(None)"));
            cbDSN->setCurrentIndex(-1);
        }
        const auto sources = ado::dataSources();
        if (!sources) return;
        for (const ado::DataSource& source : *sources) {
            if (source.name.trimmed().isEmpty() || source.driver.trimmed() != QStringLiteral("SQL Server")) {
                continue;
            }
            cbDSN->addItem(source.name);
        }
        cbDSN->setCurrentIndex(0);
    });
}

void frmConnection::Form_Unload() {
    if (std::exchange(m_unloaded, true)) return;
    handle(QStringLiteral("Form_Unload"), ModuleName, [this] {
        storeState(m_state, QStringLiteral("SaveUserID"), *chkSaveUserID);
        storeState(m_state, QStringLiteral("SavePassword"), *chkSavePassword);
        if (!txtUserName->text().isEmpty() && chkSaveUserID->isChecked()) {
            m_state.saveSetting(QStringLiteral("User"), txtUserName->text());
        }
        if (!txtPassword->text().isEmpty() && chkSavePassword->isChecked()) {
            m_state.saveSetting(QStringLiteral("Password"), txtPassword->text());
        }
        storeState(m_state, QStringLiteral("SQLAuthentication"), *chkSQLAuthentication);

        QStringList offered;
        for (int i = 0; i < cbServer->count(); ++i) {
            offered += cbServer->itemText(i);
        }
        for (const auto& [key, server] : serversToStore(cbServer->currentText(), offered)) {
            m_state.saveSetting(key, server);
        }
    });
}

}  // namespace tw
