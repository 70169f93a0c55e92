#pragma once

#include "compare/compareselectcontrols.h"

#include <QDialog>

#include <memory>

namespace tw {

struct AppState;
class DBConnection;
class frmCompareResult;

/// The modal dialog that chooses the two databases, or one table of each, to compare. It offers the servers
/// of the open documents and opens no connection of its own.
class frmCompareSelect : public QDialog, private CompareSelectControls {
    Q_OBJECT

  public:
    explicit frmCompareSelect(AppState& state, QWidget* parent = nullptr);
    ~frmCompareSelect() override;

    /// Fills the server lists. False when there is no server to offer, which a message has told.
    bool Form_Load();
    /// Loads and shows the dialog; Accepted when there is something to compare.
    int exec() override;
    /// The configured result window, not shown yet; null unless the dialog was accepted.
    std::unique_ptr<frmCompareResult> takeResult();

  private:
    /// One of the two sides. Its connection is the one of the document that was chosen, shared with it.
    struct System {
        desktop::PickBox* cbServer = nullptr;
        desktop::PickBox* cbDatabase = nullptr;
        desktop::PickBox* cbTable = nullptr;
        std::shared_ptr<DBConnection> connection;
    };

    void connectHandlers(System& system);
    void cbServer_Click(System& system);
    void cbDatabase_Click(System& system);
    void cmdOK_Click();
    void cmdCancel_Click();
    bool entriesAreComplete();
    bool tablesWereRead();
    void configure(DBConnection& connection, const System& system, const QString& table) const;

    AppState& m_state;
    System m_system1;
    System m_system2;
    std::unique_ptr<frmCompareResult> m_result;
};

}  // namespace tw
