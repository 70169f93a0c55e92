#include "shell/frmoption.h"

#include "platform/conversions.h"
#include "platform/desktop/failures.h"
#include "platform/desktop/named.h"
#include "platform/desktop/scrollpage.h"
#include "shell/core/appstate.h"
#include "shell/numericentry.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>

#include <utility>

namespace tw {

namespace {

using desktop::named;

constexpr int RowsTab = 0;
constexpr int CharactersInLine = 58;
constexpr int Gap = 12;

/// Of a fixed width, so that its height is known before anything is laid out.
QLabel* makeExplanation(const QString& name, const QString& text, QWidget* parent) {
    auto* label = named(name, new QLabel(text, parent));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    const int width = label->fontMetrics().averageCharWidth() * CharactersInLine;
    label->setFixedWidth(width);
    label->setMinimumHeight(label->heightForWidth(width));
    return label;
}

QFrame* makePage(QWidget* parent) {
    auto* page = named(QStringLiteral("fmeOptions"), new QFrame(parent));
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(Gap, Gap, Gap, Gap);
    column->setSpacing(Gap / 2);
    return page;
}

QCheckBox* addCheckBox(QWidget& page, const QString& name, const QString& text) {
    auto* box = named(name, new QCheckBox(text, &page));
    static_cast<QVBoxLayout*>(page.layout())->addWidget(box);
    return box;
}

}  // namespace

frmOption::frmOption(AppState& state, HotTracking setHotTracking, QWidget* parent)
    : QDialog(parent), m_state(state), m_setHotTracking(std::move(setHotTracking)) {
    setObjectName(QStringLiteral("frmOption"));
    setWindowTitle(QStringLiteral("Tablewright Options"));
    makeControls();
    connectHandlers();
    showValues();
    txtNumShow->selectAll();
    txtNumShow->setFocus();
}

void frmOption::makeControls() {
    tsOptions = named(QStringLiteral("tsOptions"), new QTabWidget(this));
    // The mouse frame is the first of the two, its tab the second.
    tsOptions->addTab(new desktop::ScrollPage(makeMousePage(), tsOptions), QStringLiteral("Mouse"));
    tsOptions->insertTab(RowsTab, new desktop::ScrollPage(makeRowsPage(), tsOptions),
                         QStringLiteral("Sample Data"));
    tsOptions->setCurrentIndex(RowsTab);

    auto* column = new QVBoxLayout(this);
    column->setSpacing(Gap);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addWidget(tsOptions);
    column->addWidget(makeButtons());
}

QWidget* frmOption::makeMousePage() {
    QFrame* page = makePage(this);
    auto* column = static_cast<QVBoxLayout*>(page->layout());
    column->addWidget(makeExplanation(QStringLiteral("Label3"),
                                      QStringLiteral("By default, mouse Hot Tracking on the table name is "
                                                     "turned off.  You can turn it on by checking the check "
                                                     "box below."),
                                      page));
    chkMouseHotTracking = addCheckBox(*page, QStringLiteral("chkMouseHotTracking"),
                                      QStringLiteral("Turn on mouse hot tracking"));
    column->addSpacing(Gap);
    column->addWidget(makeExplanation(QStringLiteral("Label2"),
                                      QStringLiteral("By default, double click on a table name will refresh "
                                                     "the table definition and data .  You can change it to "
                                                     "single click by checking the check box below."),
                                      page));
    chkMouseSelectSingle = addCheckBox(*page, QStringLiteral("chkMouseSelectSingle"),
                                       QStringLiteral("Single click to select table"));
    column->addStretch();
    return page;
}

QWidget* frmOption::makeRowsPage() {
    QFrame* page = makePage(this);
    txtNumShow = named(QStringLiteral("txtNumShow"), new QLineEdit(page));
    auto* label =
        named(QStringLiteral("Label4"), new QLabel(QStringLiteral("Number of rows to show:"), page));
    label->setBuddy(txtNumShow);
    auto* entry = new QHBoxLayout;
    entry->addWidget(label);
    entry->addWidget(txtNumShow, 1);

    auto* column = static_cast<QVBoxLayout*>(page->layout());
    column->addWidget(makeExplanation(
        QStringLiteral("Label1"),
        QStringLiteral("Number of rows to show in sample data pane. Enter 0 if you would like all rows to "
                       "show. Waring: Setting this to 0 may cause the system to take a long time to response "
                       "to a complex query."),
        page));
    column->addSpacing(Gap / 2);
    column->addLayout(entry);
    column->addStretch();
    return page;
}

QWidget* frmOption::makeButtons() {
    auto* strip = new QWidget(this);
    auto* row = new QHBoxLayout(strip);
    row->setContentsMargins({});
    row->addStretch();
    const auto add = [&](const char* name, const char* text, void (frmOption::*handler)()) {
        auto* button = named(QString::fromLatin1(name), new QPushButton(QString::fromLatin1(text), strip));
        desktop::connectGuarded(button, &QPushButton::clicked, this, [this, handler] { (this->*handler)(); });
        row->addWidget(button);
        return button;
    };
    add("cmdOK", "&OK", &frmOption::cmdOK_Click)->setDefault(true);
    add("cmdCancel", "&Cancel", &frmOption::cmdCancel_Click);
    add("cmdApply", "&Apply", &frmOption::cmdApply_Click);
    return strip;
}

void frmOption::connectHandlers() {
    // Only what the user does to the text is judged at once.
    desktop::connectGuarded(txtNumShow, &QLineEdit::textEdited, this, [this] { txtNumShow_Change(); });
    // The tabs do it by themselves only while the focus is in them.
    for (const auto& [keys, step] :
         {std::pair(QKeySequence::NextChild, 1), {QKeySequence::PreviousChild, -1}}) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, [this, step = step] {
            const int count = tsOptions->count();
            tsOptions->setCurrentIndex((tsOptions->currentIndex() + step + count) % count);
        });
    }
}

void frmOption::showValues() {
    const Options& options = m_state.options;
    txtNumShow->setText(QString::number(options.NumberRecShow));
    chkMouseSelectSingle->setChecked(options.MouseClickOption == 1);
    chkMouseHotTracking->setChecked(options.MouseHotTracking == 1);
}

bool frmOption::apply() {
    if (!platform::wholeNumber(txtNumShow->text())) tsOptions->setCurrentIndex(RowsTab);
    const std::optional<qint32> rows = requireNumber(*txtNumShow);
    if (!rows) return false;
    Options& options = m_state.options;
    options.NumberRecShow = *rows;
    options.MouseClickOption = chkMouseSelectSingle->isChecked() ? 1 : 0;
    options.MouseHotTracking = chkMouseHotTracking->isChecked() ? 1 : 0;
    m_setHotTracking(options.MouseHotTracking == 1);
    return true;
}

void frmOption::cmdApply_Click() {
    apply();
}

void frmOption::cmdCancel_Click() {
    reject();
}

void frmOption::cmdOK_Click() {
    if (apply()) accept();
}

void frmOption::reject() {
    showValues();
    QDialog::reject();
}

void frmOption::txtNumShow_Change() {
    requireNumber(*txtNumShow);
}

}  // namespace tw
