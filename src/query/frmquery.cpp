#include "query/frmquery.h"

#include "dbaccess/catalog.h"
#include "dbaccess/dbconnection.h"
#include "platform/conversions.h"
#include "platform/desktop/datacontrol.h"
#include "platform/desktop/datagrid.h"
#include "platform/desktop/failures.h"
#include "platform/desktop/hourglass.h"
#include "platform/desktop/msgbox.h"
#include "platform/desktop/pickbox.h"
#include "platform/desktop/twips.h"
#include "query/querytext.h"
#include "shell/core/appstate.h"
#include "shell/core/rowsaving.h"

#include <QAction>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QTabWidget>

namespace tw {

namespace {

using desktop::PickBox;

enum Page { QueryPage = 0, ResultPage = 1 };

const QString AllColumns = QStringLiteral("(All Columns)");
const QString NumericWanted = QStringLiteral("Please enter numeric data");

/// The text to the letter: a box gives blanks for no-break spaces otherwise.
QString textOf(const QPlainTextEdit& box) {
    QString text = box.document()->toRawText();
    for (QChar& character : text)
        if (character == QChar::ParagraphSeparator || character == QChar::LineSeparator) character = u'\n';
    return text;
}

/// Replaces the whole text in one step that the user can take back.
void replaceText(QPlainTextEdit& box, const QString& text) {
    if (textOf(box) == text) return;
    QTextCursor cursor(box.document());
    cursor.select(QTextCursor::Document);
    cursor.insertText(text);
    box.setTextCursor(cursor);
    box.ensureCursorVisible();
}

void clearChoice(PickBox& box) {
    box.setCurrentIndex(-1);
}

}  // namespace

frmQuery::frmQuery(AppState& state, std::shared_ptr<DBConnection> connection, QWidget* parent)
    : QWidget(parent), m_state(state), DBConn(std::move(connection)) {
    setObjectName(QStringLiteral("frmQuery"));
    setupControls(*this);
    cbDatabase->setModel(&m_databases);
    cbTable->setModel(&m_tables);
    cbConditionTable->setModel(&m_tables);
    cbColumn->setModel(&m_columns);
    cbConditionColumn->setModel(&m_conditionColumns);
    m_maxRows = load(txtMaxRows, QStringLiteral("QueryMaxRows"), QStringLiteral("50"));
    m_timeout = load(txtTimeout, QStringLiteral("QueryTimeOut"), QStringLiteral("15"));
    connectHandlers();
    cmdReset_Click();
    for (QPlainTextEdit* box : {txtColumns, txtTables, txtWhereClause})
        box->document()->clearUndoRedoStacks();
    cbDatabase->setFocus();
    status().setText(QStringLiteral("No query has run yet"));
}

frmQuery::~frmQuery() = default;

QSize frmQuery::sizeHint() const {
    return QWidget::sizeHint().expandedTo({desktop::toPixels(10800), desktop::toPixels(8250)});
}

void frmQuery::connectHandlers() {
    const auto onChoice = [this](PickBox* box, void (frmQuery::*handler)()) {
        desktop::connectGuarded(box, &QComboBox::activated, this,
                                [this, handler](int) { (this->*handler)(); });
    };
    onChoice(cbDatabase, &frmQuery::cbDatabase_Click);
    onChoice(cbTable, &frmQuery::cbTable_Click);
    onChoice(cbColumn, &frmQuery::cbColumn_Click);
    onChoice(cbConditionTable, &frmQuery::cbConditionTable_Click);
    onChoice(cbConditionColumn, &frmQuery::cbConditionColumn_Click);
    onChoice(cbConditionOperator, &frmQuery::cbConditionOperator_Click);
    for (NumberBox* number : {&m_maxRows, &m_timeout}) {
        desktop::connectGuarded(number->box, &QLineEdit::textEdited, this,
                                [this, number](const QString&) { change(*number); });
    }
    const auto onClick = [this](QPushButton* button, void (frmQuery::*handler)()) {
        desktop::connectGuarded(button, &QPushButton::clicked, this,
                                [this, handler](bool) { (this->*handler)(); });
    };
    desktop::connectGuarded(mnuSaveAs, &QAction::triggered, this, [this] {
        if (dgrResult->model()->columnCount() > 0)
            saveRows(*dgrResult->model(), QStringLiteral("Query"), QStringLiteral("frmQuery"));
    });
    onClick(cmdExecute, &frmQuery::cmdExecute_Click);
    onClick(cmdBack, &frmQuery::cmdBack_Click);
    onClick(cmdReset, &frmQuery::cmdReset_Click);
    onClick(cmdClose, &frmQuery::cmdClose_Click);
    // The text boxes keep the Enter key for their lines.
    for (const QKeySequence& keys : {QKeySequence(Qt::CTRL | Qt::Key_Return),
                                     QKeySequence(Qt::CTRL | Qt::Key_Enter), QKeySequence(Qt::Key_F5)}) {
        auto* shortcut = new QShortcut(keys, this);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, cmdExecute, [this] { cmdExecute->click(); });
    }
    connect(tsQuery, &QTabWidget::currentChanged, cmdBack, [this](int page) {
        // Else the focus would go to the next button, and Enter press that.
        if (page == QueryPage && focusWidget() == cmdBack) cmdExecute->setFocus();
        cmdBack->setEnabled(page == ResultPage);
    });
    cmdBack->setEnabled(false);
}

void frmQuery::Form_Load() {
    const desktop::Hourglass pointer;
    const std::shared_ptr<DBConnection> held = DBConn;
    held->FillCbDB(m_databases);
}

void frmQuery::Form_Resize() {
    layout()->activate();
}

/// Enter on a control that has no use for it executes, as long as there is something to fill in.
void frmQuery::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && tsQuery->currentIndex() == QueryPage) {
        cmdExecute->click();
    } else {
        QWidget::keyPressEvent(event);
    }
}

frmQuery::NumberBox frmQuery::load(QLineEdit* box, const QString& key, const QString& defaultText) {
    const QString stored = m_state.setting(key, defaultText);
    const QString text = platform::wholeNumber(stored) ? stored : defaultText;
    box->setText(text);
    return {box, key, text};
}

void frmQuery::change(NumberBox& number) {
    const QString text = number.box->text();
    if (const auto value = platform::wholeNumber(text)) {
        number.accepted = text;
        m_state.saveSetting(number.key, QString::number(*value));
    } else if (!text.isEmpty()) {  // an emptied box is about to be filled; Execute asks for what is missing
        number.box->setText(number.accepted);
        desktop::MsgBox(NumericWanted, desktop::MsgBoxIcon::Exclamation);
    }
}

void frmQuery::cbDatabase_Click() {
    for (PickBox* box : {cbTable, cbColumn, cbConditionTable, cbConditionColumn}) {
        clearChoice(*box);
    }
    m_columns.clear();
    m_conditionColumns.clear();
    const desktop::Hourglass pointer;
    const std::shared_ptr<DBConnection> held = DBConn;
    held->FillCbTable(m_tables, cbDatabase->currentText());
}

/// False when the window has gone while a failure was told.
bool frmQuery::fillColumns(controls::ComboItems& columns, const PickBox& table) {
    const desktop::Hourglass pointer;
    const QPointer<frmQuery> self(this);
    const std::shared_ptr<DBConnection> held = DBConn;
    held->FillCbColumn(columns, cbDatabase->currentText(), table.currentText());
    return self != nullptr;
}

void frmQuery::cbTable_Click() {
    replaceText(*txtTables, querytext::withTable(textOf(*txtTables), cbTable->currentText()));
    clearChoice(*cbColumn);
    if (fillColumns(m_columns, *cbTable)) m_columns.prependItem(AllColumns);
}

void frmQuery::cbColumn_Click() {
    const QString column = cbColumn->currentText();
    replaceText(*txtColumns, column == AllColumns ? querytext::allColumns()
                                                  : querytext::withColumn(textOf(*txtColumns),
                                                                          cbTable->currentText(), column));
}

void frmQuery::cbConditionTable_Click() {
    replaceText(*txtTables, querytext::withTable(textOf(*txtTables), cbConditionTable->currentText()));
    clearChoice(*cbConditionColumn);
    fillColumns(m_conditionColumns, *cbConditionTable);
}

void frmQuery::cbConditionColumn_Click() {
    replaceText(*txtWhereClause,
                querytext::withConditionColumn(textOf(*txtWhereClause), cbConditionTable->currentText(),
                                               cbConditionColumn->currentText()));
}

void frmQuery::cbConditionOperator_Click() {
    replaceText(*txtWhereClause,
                querytext::withOperator(textOf(*txtWhereClause), cbConditionOperator->currentText()));
}

bool frmQuery::refuse(const QString& text, QWidget* focus) {
    const QPointer<frmQuery> self(this);
    desktop::MsgBox(text, desktop::MsgBoxIcon::Exclamation);
    if (self != nullptr && focus != nullptr) {
        tsQuery->setCurrentIndex(QueryPage);
        focus->setFocus();
    }
    return false;
}

bool frmQuery::isReady() {
    if (cbDatabase->currentIndex() < 0) {
        return refuse(QStringLiteral("Please select a database for the query."), cbDatabase);
    }
    if (textOf(*txtTables).isEmpty()) {
        return refuse(QStringLiteral("Please select a table for the query."), cbTable);
    }
    if (textOf(*txtColumns).isEmpty()) {
        return refuse(QStringLiteral("Please select a column for the query."), nullptr);
    }
    if (!querytext::isSelect(textOf(*txtColumns))) {
        return refuse(QStringLiteral("Sorry, only select statements are allowed."), nullptr);
    }
    for (QLineEdit* box : {txtMaxRows, txtTimeout}) {
        if (!platform::wholeNumber(box->text())) return refuse(NumericWanted, box);
    }
    return true;
}

void frmQuery::cmdExecute_Click() {
    if (!isReady()) return;
    const QPointer<frmQuery> self(this);
    QElapsedTimer duration;
    duration.start();
    const auto tell = [&](const QString& outcome) {
        if (self == nullptr) return;
        status().setText(QStringLiteral("%1 %2 s").arg(outcome).arg(
            QLocale::c().toString(double(duration.elapsed()) / 1000, 'f', 2)));
    };
    const WindowStatus::Running running(status());
    try {
        const desktop::Hourglass pointer;
        Adodc1->setConnectionString(
            catalog::queryInDatabase(DBConn->getConnectionString(), cbDatabase->currentText()));
        Adodc1->setMaxRecords(platform::wholeNumber(txtMaxRows->text()).value());
        Adodc1->setCommandTimeout(platform::wholeNumber(txtTimeout->text()).value());
        Adodc1->setRecordSource(
            querytext::statement(textOf(*txtColumns), textOf(*txtTables), textOf(*txtWhereClause)));
        Adodc1->Refresh();
        lblRecCount->setText(QStringLiteral("Number of rows returned: %1").arg(Adodc1->recordCount()));
        tsQuery->setCurrentIndex(ResultPage);
        tell(QStringLiteral("%1 rows in").arg(Adodc1->recordCount()));
    } catch (...) {
        // The data control has told it; everything stays as it was, if it is there still.
        tell(QStringLiteral("The query failed after"));
    }
}

void frmQuery::cmdBack_Click() {
    tsQuery->setCurrentIndex(QueryPage);
}

void frmQuery::cmdReset_Click() {
    tsQuery->setCurrentIndex(QueryPage);
    replaceText(*txtTables, {});
    replaceText(*txtColumns, querytext::allColumns());
    replaceText(*txtWhereClause, {});
    for (PickBox* box : {cbTable, cbColumn, cbConditionTable, cbConditionColumn, cbConditionOperator}) {
        clearChoice(*box);
    }
    // They were of the tables that are chosen no more.
    m_columns.clear();
    m_conditionColumns.clear();
}

void frmQuery::cmdClose_Click() {
    // In a frame the window that is to go is the one around.
    (parentWidget() != nullptr ? parentWidget() : this)->close();
}

}  // namespace tw
