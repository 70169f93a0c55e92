#pragma once

class QAction;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTabWidget;
class QWidget;

namespace desktop {
class DataControl;
class DataGrid;
class PickBox;
}  // namespace desktop

namespace tw {

/// The controls of the query window. Each has its name here as object name.
struct QueryControls {
    QTabWidget* tsQuery = nullptr;
    desktop::PickBox* cbDatabase = nullptr;
    desktop::PickBox* cbTable = nullptr;
    desktop::PickBox* cbColumn = nullptr;
    desktop::PickBox* cbConditionTable = nullptr;
    desktop::PickBox* cbConditionColumn = nullptr;
    desktop::PickBox* cbConditionOperator = nullptr;
    QPlainTextEdit* txtColumns = nullptr;
    QPlainTextEdit* txtTables = nullptr;
    QPlainTextEdit* txtWhereClause = nullptr;
    QLineEdit* txtMaxRows = nullptr;
    QLineEdit* txtTimeout = nullptr;
    desktop::DataGrid* dgrResult = nullptr;
    QAction* mnuSaveAs = nullptr;
    desktop::DataControl* Adodc1 = nullptr;
    QLabel* lblRecCount = nullptr;
    QPushButton* cmdExecute = nullptr;
    QPushButton* cmdBack = nullptr;
    QPushButton* cmdReset = nullptr;
    QPushButton* cmdClose = nullptr;

  protected:
    /// Makes the controls as children of the window and lays them out.
    void setupControls(QWidget& window);

  private:
    QWidget* makeQueryPage();
    QWidget* makeResultPage();
    QGroupBox* makeSelectionSource(QWidget* page);
    QGroupBox* makeConditionSource(QWidget* page);
    QGroupBox* makeQueryString(QWidget* page);
    QWidget* makeLimits(QWidget* page);
    QWidget* makeButtons(QWidget& window);
};

}  // namespace tw
