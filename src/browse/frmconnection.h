#pragma once

#include "browse/connectioncontrols.h"
#include "shell/core/appstate.h"
#include "shell/core/frame.h"

#include <QDialog>
#include <QPointer>

namespace tw {

class frmDocument;

/// The modal dialog that connects one document window to a server. Made anew for each showing; exec() gives
/// Accepted when the document is connected and its tree filled, else Rejected, and then the shared cancel
/// flag is set. The recent servers and the remembered entries are stored whichever way it ends.
class frmConnection : public QDialog, private ConnectionControls {
    Q_OBJECT

  public:
    frmConnection(AppState& state, Frame& frame, frmDocument& document, QWidget* parent = nullptr);

    void done(int result) override;
    void reject() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void connectHandlers();
    void Form_Load();
    void Form_Unload();
    void FillDSN();
    void FillServer();
    void RestoreUserSettings();
    bool CheckDataAccess();
    bool ValidateEntries();
    bool ConnectToServer();
    void markConnected();
    void markNotConnected();

    void cbDSN_Click();
    void chkSQLAuthentication_Click();
    void chkSaveUserID_Click();
    void chkSavePassword_Click();
    void txtUserName_GotFocus();
    void txtPassword_GotFocus();
    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdHelp_Click();

    AppState& m_state;
    Frame& m_frame;
    QPointer<frmDocument> m_document;  ///< a message box lets events run, so it may go meanwhile
    bool m_unloaded = false;
    bool UsingDSN = false;
    QString SavedUser;
    QString SavedPassword;
};

}  // namespace tw
