#pragma once

#include "platform/controls/comboitems.h"
#include "query/querycontrols.h"
#include "shell/core/frame.h"

#include <QWidget>

#include <memory>

namespace tw {

struct AppState;

/// A child window in which a query is composed by picking names and by editing, run with a limit to its rows
/// and its time, and its result looked at. It keeps its connection object, whatever becomes of the window
/// that the object came from. The state must outlive it.
class frmQuery : public QWidget, public ChildWindow, private QueryControls {
    Q_OBJECT

  public:
    frmQuery(AppState& state, std::shared_ptr<DBConnection> connection, QWidget* parent = nullptr);
    ~frmQuery() override;

    /// Lists the server's databases, which may take its time and tell a failure in a message box; the window
    /// may have gone when that has been closed.
    void Form_Load();

    QString getModuleName() const override { return QStringLiteral("frmQuery"); }
    std::shared_ptr<DBConnection> queryConnection() override { return DBConn; }
    void Form_Resize() override;

    QSize sizeHint() const override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    /// A box for a whole number that is kept in the settings.
    struct NumberBox {
        QLineEdit* box;
        QString key;
        QString accepted;  ///< the last text that was a number
    };

    void connectHandlers();
    NumberBox load(QLineEdit* box, const QString& key, const QString& defaultText);
    void change(NumberBox& number);
    /// Tells what keeps the query from being run and puts the focus there, if anywhere.
    bool refuse(const QString& text, QWidget* focus);
    bool isReady();
    bool fillColumns(controls::ComboItems& columns, const desktop::PickBox& table);

    void cbDatabase_Click();
    void cbTable_Click();
    void cbColumn_Click();
    void cbConditionTable_Click();
    void cbConditionColumn_Click();
    void cbConditionOperator_Click();
    void cmdExecute_Click();
    void cmdBack_Click();
    void cmdReset_Click();
    void cmdClose_Click();

    AppState& m_state;
    std::shared_ptr<DBConnection> DBConn;
    controls::ComboItems m_databases;
    controls::ComboItems m_tables;  ///< of both lists of tables
    controls::ComboItems m_columns;
    controls::ComboItems m_conditionColumns;
    NumberBox m_maxRows;
    NumberBox m_timeout;
};

}  // namespace tw
