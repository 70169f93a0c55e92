#include "query/querycontrols.h"

#include "platform/desktop/datacontrol.h"
#include "platform/desktop/datagrid.h"
#include "platform/desktop/finder.h"
#include "platform/desktop/named.h"
#include "platform/desktop/pickbox.h"
#include "platform/desktop/scrollpage.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace tw {

namespace {

using desktop::named;
using desktop::PickBox;

/// Where the first line of a box begins.
int textTop(const QPlainTextEdit& box) {
    return box.frameWidth() + static_cast<int>(box.document()->documentMargin());
}

/// A label and its entry, side by side in the next row of a grid. Beside an entry of several lines the label
/// stands at the top.
void addRow(QGridLayout& grid, const char* labelName, const QString& text, QWidget* entry) {
    const int row = grid.count() == 0 ? 0 : grid.rowCount();
    auto* label = named(QString::fromLatin1(labelName), new QLabel(text, entry->parentWidget()));
    label->setBuddy(entry);
    const auto* lines = qobject_cast<QPlainTextEdit*>(entry);
    if (lines) label->setContentsMargins(0, textTop(*lines), 0, 0);
    grid.addWidget(label, row, 0, lines ? Qt::AlignTop : Qt::Alignment());
    grid.addWidget(entry, row, 1);
}

/// Half the usual margins above and below, so that the page shows whole on a small screen.
void tighten(QLayout& layout) {
    const QMargins usual = layout.contentsMargins();
    layout.setContentsMargins(usual.left(), usual.top() / 2, usual.right(), usual.bottom() / 2);
}

QGridLayout* makeGrid(QWidget* box) {
    auto* grid = new QGridLayout(box);
    grid->setColumnStretch(1, 1);
    return grid;
}

PickBox* makePickBox(const char* name, const QString& invitation, QWidget* parent) {
    auto* box = named(QString::fromLatin1(name), new PickBox(parent));
    box->setPlaceholderText(invitation);
    // A long name must not make the window wide.
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(18);
    box->setMinimumWidth(box->sizeHint().width() / 2);
    return box;
}

/// A box that takes lines, and as many as there is room for; the Tab key leaves it.
class TextBox final : public QPlainTextEdit {
  public:
    TextBox(int leastLines, QWidget* parent) : QPlainTextEdit(parent), m_leastLines(leastLines) {
        setTabChangesFocus(true);
    }

    QSize minimumSizeHint() const override {
        return {QPlainTextEdit::minimumSizeHint().width(),
                m_leastLines * fontMetrics().lineSpacing() + 2 * textTop(*this) + 1};
    }
    QSize sizeHint() const override {
        return {QPlainTextEdit::sizeHint().width(), minimumSizeHint().height()};
    }

  private:
    int m_leastLines;
};

QPlainTextEdit* makeTextBox(const char* name, int leastLines, QWidget* parent) {
    return named(QString::fromLatin1(name), new TextBox(leastLines, parent));
}

QLabel* makeWarning(const char* name, const QString& text, QWidget* parent) {
    auto* label = named(QString::fromLatin1(name), new QLabel(text, parent));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

}  // namespace

void QueryControls::setupControls(QWidget& window) {
    Adodc1 = named(QStringLiteral("Adodc1"), new desktop::DataControl(&window));
    tsQuery = named(QStringLiteral("tsQuery"), new QTabWidget(&window));
    tsQuery->addTab(new desktop::ScrollPage(makeQueryPage(), tsQuery), QStringLiteral("Query"));
    tsQuery->addTab(makeResultPage(), QStringLiteral("Result"));
    auto* column = new QVBoxLayout(&window);
    tighten(*column);
    column->addWidget(tsQuery, 1);
    column->addWidget(makeButtons(window));
}

QWidget* QueryControls::makeQueryPage() {
    auto* page = new QWidget(tsQuery);
    auto* sources = new QHBoxLayout;
    // Made in the reading direction, so that the Tab key follows it.
    sources->addWidget(makeSelectionSource(page), 1);
    sources->addWidget(makeConditionSource(page), 1);
    auto* column = new QVBoxLayout(page);
    tighten(*column);
    column->addLayout(sources);
    column->addWidget(makeQueryString(page), 1);
    column->addWidget(makeLimits(page));
    return page;
}

QGroupBox* QueryControls::makeSelectionSource(QWidget* page) {
    auto* box = named(QStringLiteral("fmeSelectionSource"),
                      new QGroupBox(QStringLiteral(" Column Selection Source (Required) "), page));
    cbDatabase = makePickBox("cbDatabase", QStringLiteral("(pick a database)"), box);
    cbTable = makePickBox("cbTable", QStringLiteral("(pick a table)"), box);
    cbColumn = makePickBox("cbColumn", QStringLiteral("(pick columns, one by one)"), box);
    auto* grid = makeGrid(box);
    addRow(*grid, "lblDataBase", QStringLiteral("Database"), cbDatabase);
    addRow(*grid, "lblTable", QStringLiteral("Table "), cbTable);
    addRow(*grid, "lblColumn", QStringLiteral("Column "), cbColumn);
    return box;
}

QGroupBox* QueryControls::makeConditionSource(QWidget* page) {
    auto* box = named(QStringLiteral("frmConditionSource"),
                      new QGroupBox(QStringLiteral(" Condition Source (Optional) "), page));
    cbConditionTable = makePickBox("cbConditionTable", QStringLiteral("(pick a table)"), box);
    cbConditionColumn = makePickBox("cbConditionColumn", QStringLiteral("(pick a column)"), box);
    cbConditionOperator = makePickBox("cbConditionOperator", QStringLiteral("(pick an operator)"), box);
    for (const char* entry :
         {"= (equals)", "> (greater than)", "< (less than)", "<= (less than or equal to)",
          ">= (greater than or equal to)", "!= (not equal to)", "<> (not equal to)", "!< (not less than)",
          "!> (not greater than)", "LIKE ", "BETWEEN ", "AND ", "OR ", "NOT "}) {
        cbConditionOperator->addItem(QString::fromLatin1(entry));
    }
    cbConditionOperator->setMaxVisibleItems(cbConditionOperator->count());
    auto* grid = makeGrid(box);
    addRow(*grid, "lblConditionTable", QStringLiteral("Table "), cbConditionTable);
    addRow(*grid, "lblConditionColumn", QStringLiteral("Column "), cbConditionColumn);
    addRow(*grid, "lblConditionOperator", QStringLiteral("Operator "), cbConditionOperator);
    return box;
}

QGroupBox* QueryControls::makeQueryString(QWidget* page) {
    auto* box =
        named(QStringLiteral("fmeQueryString"), new QGroupBox(QStringLiteral(" Query (Editable) "), page));
    txtColumns = makeTextBox("txtColumns", 2, box);
    txtTables = makeTextBox("txtTables", 1, box);
    txtWhereClause = makeTextBox("txtWhereClause", 2, box);
    auto* grid = makeGrid(box);
    addRow(*grid, "lblColumns", QStringLiteral("Columns"), txtColumns);
    addRow(*grid, "lblTables", QStringLiteral("Tables"), txtTables);
    addRow(*grid, "lblQuery", QStringLiteral("Conditions "), txtWhereClause);
    grid->setRowStretch(0, 3);
    grid->setRowStretch(1, 2);
    grid->setRowStretch(2, 3);
    return box;
}

QWidget* QueryControls::makeLimits(QWidget* page) {
    auto* strip = new QWidget(page);
    auto* grid = new QGridLayout(strip);
    const QMargins margins = grid->contentsMargins();
    grid->setContentsMargins(margins.left(), 0, margins.right(), 0);  // the page has margins of its own
    txtMaxRows = named(QStringLiteral("txtMaxRows"), new QLineEdit(strip));
    txtTimeout = named(QStringLiteral("txtTimeout"), new QLineEdit(strip));
    for (QLineEdit* box : {txtMaxRows, txtTimeout}) {
        box->setAlignment(Qt::AlignRight);
        box->setFixedWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("2147483647")) + 16);
    }
    addRow(*grid, "lblMaxRows", QStringLiteral("Maximum rows"), txtMaxRows);
    grid->addWidget(makeWarning("Label1",
                                QStringLiteral("Waring: Setting the maximum number of rows returned to 0 "
                                               "(zero) means all rows will be returned.  This  may cause "
                                               "the system to take a long time to response to a complex "
                                               "query."),
                                strip),
                    0, 2);
    addRow(*grid, "lblTimeout", QStringLiteral("Time-out (seconds)"), txtTimeout);
    grid->addWidget(makeWarning("Label2",
                                QStringLiteral("Warning: Setting the query timeout to 0 (zero) forces the "
                                               "system to wait for the response from the server "
                                               "indefinately."),
                                strip),
                    1, 2);
    grid->setColumnStretch(2, 1);
    return strip;
}

QWidget* QueryControls::makeResultPage() {
    auto* page = new QWidget(tsQuery);
    dgrResult = named(QStringLiteral("dgrResult"), new desktop::DataGrid(page));
    lblRecCount =
        named(QStringLiteral("lblRecCount"), new QLabel(QStringLiteral("Number of rows returned: 0"), page));
    dgrResult->setAccessibleName(QStringLiteral("Result"));
    dgrResult->setRows(&Adodc1->rows());
    mnuSaveAs = dgrResult->addSaveCommand();
    new desktop::Finder(page, {dgrResult});  // owned by the page
    auto* column = new QVBoxLayout(page);
    column->addWidget(dgrResult, 1);
    column->addWidget(lblRecCount);
    return page;
}

QWidget* QueryControls::makeButtons(QWidget& window) {
    auto* strip = new QWidget(&window);
    cmdExecute = named(QStringLiteral("cmdExecute"), new QPushButton(QStringLiteral("&Execute"), strip));
    cmdBack = named(QStringLiteral("cmdBack"), new QPushButton(QStringLiteral("&Back"), strip));
    cmdReset = named(QStringLiteral("cmdReset"), new QPushButton(QStringLiteral("&Reset"), strip));
    cmdClose = named(QStringLiteral("cmdClose"), new QPushButton(QStringLiteral("&Close"), strip));
    auto* row = new QHBoxLayout(strip);
    row->setContentsMargins({});
    row->addStretch();
    for (QPushButton* button : {cmdExecute, cmdBack, cmdReset, cmdClose}) {
        // The Enter key presses the one that has the focus.
        button->setAutoDefault(button != cmdExecute);
        row->addWidget(button);
    }
    cmdExecute->setDefault(true);
    cmdExecute->setToolTip(QStringLiteral("Run the query (F5 or Ctrl+Enter)"));
    return strip;
}

}  // namespace tw
