#pragma once

class QCheckBox;
class QComboBox;
class QDialog;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;

namespace tw {

/// The controls of the connection dialog. Each has its name here as object name.
struct ConnectionControls {
    QComboBox* cbDSN = nullptr;
    QComboBox* cbServer = nullptr;
    QCheckBox* chkSQLAuthentication = nullptr;
    QLabel* lblSQLEnthentication = nullptr;
    QLineEdit* txtUserName = nullptr;
    QLineEdit* txtPassword = nullptr;
    QCheckBox* chkSaveUserID = nullptr;
    QCheckBox* chkSavePassword = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdHelp = nullptr;

  protected:
    /// Makes the controls as children of the dialog and lays them out.
    void setupControls(QDialog& dialog);

  private:
    QGroupBox* makeDataSourceBox(QWidget* page);
    QGroupBox* makeServerBox(QWidget* page);
    QGroupBox* makeSavingBox(QWidget* page);
    QWidget* makeButtons(QDialog& dialog);
};

}  // namespace tw
