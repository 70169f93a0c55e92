#include "compare/frmcompareselect.h"

#include "compare/frmcompareresult.h"
#include "dbaccess/dbconnection.h"
#include "dbaccess/failingstep.h"
#include "platform/desktop/failures.h"
#include "platform/desktop/hourglass.h"
#include "platform/desktop/msgbox.h"
#include "platform/desktop/pickbox.h"
#include "platform/runtimeerror.h"
#include "shell/core/appstate.h"

#include <QCheckBox>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>

namespace tw {

namespace {

const QString AllTables = QStringLiteral("(All Tables)");

void showExclamation(const QString& text) {
    desktop::MsgBox(text, desktop::MsgBoxIcon::Exclamation);
}

/// Offers other entries, none of them chosen.
void setEntries(desktop::PickBox& list, const controls::ComboItems& entries) {
    const QSignalBlocker quiet(&list);
    list.clear();
    for (int i = 0; i < entries.count(); ++i) {
        list.addItem(entries.text(i), entries.itemData(i));
    }
    list.setCurrentIndex(-1);
}

bool isAllTables(const QString& table) {
    return table.toUpper() == AllTables.toUpper();
}

/// Either one table each, or all tables of both; nothing chosen means all.
std::pair<QString, QString> normalisedTables(QString table1, QString table2) {
    if (table1.isEmpty()) table1 = AllTables;
    if (table2.isEmpty()) table2 = AllTables;
    if (isAllTables(table1) && !isAllTables(table2)) table2 = AllTables;
    if (isAllTables(table2) && !isAllTables(table1)) table1 = AllTables;
    return {table1, table2};
}

qint16 valueOf(const QCheckBox& box) {
    return static_cast<qint16>(box.checkState());
}

}  // namespace

frmCompareSelect::frmCompareSelect(AppState& state, QWidget* parent) : QDialog(parent), m_state(state) {
    setupControls(*this);
    m_system1 = {cbServer1, cbDatabase1, cbTable1, nullptr};
    m_system2 = {cbServer2, cbDatabase2, cbTable2, nullptr};
    connectHandlers(m_system1);
    connectHandlers(m_system2);
    desktop::connectGuarded(cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    desktop::connectGuarded(cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
    cbServer1->setFocus();
}

frmCompareSelect::~frmCompareSelect() = default;

void frmCompareSelect::connectHandlers(System& system) {
    desktop::connectGuarded(system.cbServer, &QComboBox::activated, this,
                            [this, &system](int) { cbServer_Click(system); });
    desktop::connectGuarded(system.cbDatabase, &QComboBox::activated, this,
                            [this, &system](int) { cbDatabase_Click(system); });
}

bool frmCompareSelect::Form_Load() {
    controls::ComboItems servers;
    for (const auto& [key, document] : m_state.documents.all()) {
        const std::shared_ptr<DBConnection> connection = document->connection();
        const QString server = connection->getServer();
        bool present = server.isEmpty();
        for (int i = 0; i < servers.count(); ++i) {
            present = present || servers.text(i) == server;
        }
        if (present) continue;
        servers.addItem(server);
        servers.setItemData(servers.count() - 1, key.toInt());
        cbConnectionString.addItem(connection->getConnectionString());
    }
    setEntries(*cbServer1, servers);
    setEntries(*cbServer2, servers);
    if (servers.count() > 0) return true;
    showExclamation(NoServerConnection);
    return false;
}

int frmCompareSelect::exec() {
    return Form_Load() ? QDialog::exec() : int(Rejected);
}

std::unique_ptr<frmCompareResult> frmCompareSelect::takeResult() {
    return std::move(m_result);
}

/// The routines show messages, and anything may go while they do.
void frmCompareSelect::cbServer_Click(System& system) {
    skipFailing([&] {
        if (system.cbServer->currentText().isEmpty()) return;
        const QPointer<frmCompareSelect> open(this);
        system.connection = nullptr;
        setEntries(*system.cbDatabase, controls::ComboItems());
        setEntries(*system.cbTable, controls::ComboItems());
        const QString key = QString::number(system.cbServer->currentData().toInt());
        Document* document = m_state.documents.find(key);
        if (document == nullptr) platform::throwNoSuchKey();
        const std::shared_ptr<DBConnection> connection = document->connection();
        system.connection = connection;
        controls::ComboItems databases;
        const desktop::Hourglass pointer;
        const bool complete = connection->FillCbDB(databases);
        if (open.isNull()) return;
        setEntries(*system.cbDatabase, databases);
        if (!complete) system.cbServer->setFocus();
    });
}

void frmCompareSelect::cbDatabase_Click(System& system) {
    const QString database = system.cbDatabase->currentText();
    if (database.isEmpty()) return;
    const QPointer<frmCompareSelect> open(this);
    const std::shared_ptr<DBConnection> connection = system.connection;
    controls::ComboItems tables;
    const desktop::Hourglass pointer;
    const bool complete = connection->FillCbTable(tables, database);
    if (open.isNull()) return;
    if (complete) tables.addItem(AllTables);
    setEntries(*system.cbTable, tables);
}

bool frmCompareSelect::entriesAreComplete() {
    const QString padding(5, u' ');
    const std::pair<QComboBox*, QString> checks[] = {
        {cbServer1, QStringLiteral("Please select server for system 1.")},
        {cbDatabase1, QStringLiteral("Please select database for system 1.")},
        {cbServer2, QStringLiteral("Please select server for system 2.")},
        {cbDatabase2, QStringLiteral("Please select a database for system 2.")},
    };
    for (const auto& [list, message] : checks) {
        if (!list->currentText().isEmpty()) continue;
        showExclamation(message + padding);
        list->setFocus();
        return false;
    }
    return true;
}

bool frmCompareSelect::tablesWereRead() {
    const QString padding(5, u' ');
    int number = 0;
    for (const System* system : {&m_system1, &m_system2}) {
        ++number;
        if (system->cbTable->count() > 0) continue;
        showExclamation(QStringLiteral("You don't have permission to access the selected database "
                                       "on system %1: ")
                            .arg(number) +
                        system->cbDatabase->currentText() + QStringLiteral(".") + padding +
                        QStringLiteral("\r\nPlease contact your Database Administrator.") + padding);
        return false;
    }
    return true;
}

void frmCompareSelect::configure(DBConnection& connection, const System& system, const QString& table) const {
    connection.setServer(system.cbServer->currentText());
    connection.setDatabase(system.cbDatabase->currentText());
    connection.setTable(table);
    connection.setConnectionString(cbConnectionString.text(system.cbServer->currentIndex()));
}

void frmCompareSelect::cmdOK_Click() {
    skipFailing([this] {
        if (!entriesAreComplete() || !tablesWereRead()) return;
        const auto [table1, table2] = normalisedTables(cbTable1->currentText(), cbTable2->currentText());
        auto result = std::make_unique<frmCompareResult>(m_state);
        configure(result->DBConn1(), m_system1, table1);
        configure(result->DBConn2(), m_system2, table2);
        result->setCompareIndex(valueOf(*chkIndex));
        result->setCompareConstraint(valueOf(*chkConstraint));
        result->setCompareForeignKey(valueOf(*chkForeignKey));
        m_result = std::move(result);
        accept();
    });
}

void frmCompareSelect::cmdCancel_Click() {
    reject();
}

}  // namespace tw
