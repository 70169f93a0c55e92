#include "compare/frmcompareprogress.h"

#include "platform/desktop/failures.h"
#include "platform/desktop/named.h"
#include "platform/desktop/scrollpage.h"
#include "platform/desktop/titlelabel.h"
#include "shell/core/appstate.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>

namespace tw {

namespace {

using desktop::named;
using desktop::TitleLabel;

constexpr int TextWidth = 380;
constexpr int Spacing = 8;
constexpr int HighestBeforeTheEnd = 99;

void addOne(qint32& count) {
    if (count < std::numeric_limits<qint32>::max()) ++count;
}

int percentOf(qint32 part, qint64 whole) {
    return whole > 0 ? static_cast<int>(std::min<qint64>(qint64(part) * 100 / whole, 100)) : 0;
}

QLabel* makeLabel(const QString& name, const QString& text, QWidget* parent) {
    return named(name, new QLabel(text, parent));
}

/// A cell as wide as the longest count, so that nothing moves while numbers grow, and the layout is not
/// asked.
QLabel* makeNumber(const QString& name, QWidget* parent) {
    QLabel* number = makeLabel(name, QString(), parent);
    number->setTextFormat(Qt::PlainText);
    number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    const QFontMetrics metrics = number->fontMetrics();
    number->setFixedSize(metrics.horizontalAdvance(QStringLiteral("2147483647")), metrics.height());
    return number;
}

/// A cell that takes the room there is and cuts what does not fit.
TitleLabel* makeText(const QString& name, const QString& text, QWidget* parent) {
    auto* label = named(name, new TitleLabel(text, parent));
    label->setMargin(0);  // in one line with the plain labels
    label->setFixedHeight(label->fontMetrics().height());
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    return label;
}

/// A value right of its label, which says what it is to a screen reader, too.
void addLabelled(QGridLayout& grid, QLabel* label, QLabel* value, int row, int cell) {
    label->setBuddy(value);
    grid.addWidget(label, row, cell);
    grid.addWidget(value, row, cell + 1);
}

QFrame* makeLine(const QString& name, QWidget* parent) {
    auto* line = named(name, new QFrame(parent));
    line->setFrameStyle(QFrame::HLine | QFrame::Sunken);
    return line;
}

}  // namespace

frmCompareProgress::frmCompareProgress(AppState& state, QWidget* result) : QDialog(result), m_state(state) {
    setObjectName(QStringLiteral("frmCompareProgress"));
    setWindowTitle(QStringLiteral("Comparing Databases "));
    makeControls();
    desktop::connectGuarded(cmdClose, &QPushButton::clicked, this, [this] { cmdClose_Click(); });
    Form_Load();
}

void frmCompareProgress::makeControls() {
    auto* page = new QWidget(this);
    auto* texts = new QVBoxLayout(page);
    texts->setContentsMargins({});
    texts->setSpacing(Spacing);
    lblProgress = makeLabel(QStringLiteral("lblProgress"),
                            QStringLiteral("Please wait.  Comparing databases is in progress..."), page);
    texts->addWidget(lblProgress);
    addCaptions(*texts);
    texts->addWidget(makeLine(QStringLiteral("Line1"), page));
    addCounters(*texts);
    texts->addWidget(makeLine(QStringLiteral("Line2"), page));
    lblCompareItem = makeText(QStringLiteral("lblCompareItem"), QStringLiteral("Compare Item"), page);
    texts->addWidget(lblCompareItem);

    ProgressBar1 = named(QStringLiteral("ProgressBar1"), new QProgressBar(this));
    ProgressBar1->setRange(0, 100);
    ProgressBar1->setAccessibleName(QStringLiteral("Progress"));
    cmdClose = named(QStringLiteral("cmdClose"), new QPushButton(QStringLiteral("&Cancel"), this));
    // The Enter key that chose OK before may still be down.
    cmdClose->setAutoDefault(false);
    auto* column = new QVBoxLayout(this);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->setSpacing(Spacing);
    column->addWidget(new desktop::ScrollPage(page, this));
    column->addWidget(ProgressBar1);
    column->addWidget(cmdClose, 0, Qt::AlignRight);
}

void frmCompareProgress::addCaptions(QBoxLayout& column) {
    QWidget* page = column.parentWidget();
    auto* grid = new QGridLayout;
    lblSystem1 = makeText(QStringLiteral("lblSystem1"), QString(), page);
    lblSystem2 = makeText(QStringLiteral("lblSystem2"), QString(), page);
    addLabelled(*grid, makeLabel(QStringLiteral("Label6"), QStringLiteral("System 1:"), page), lblSystem1, 0,
                0);
    addLabelled(*grid, makeLabel(QStringLiteral("Label7"), QStringLiteral("System 2:"), page), lblSystem2, 1,
                0);
    grid->setColumnMinimumWidth(1, TextWidth);
    grid->setColumnStretch(1, 1);
    column.addLayout(grid);
}

void frmCompareProgress::addCounters(QBoxLayout& column) {
    QWidget* page = column.parentWidget();
    lblNumMatch = makeNumber(QStringLiteral("lblNumMatch"), page);
    lblNumUnmatch = makeNumber(QStringLiteral("lblNumUnmatch"), page);
    lblPercentMatch = makeNumber(QStringLiteral("lblPercentMatch"), page);
    lblPercentUnmatch = makeNumber(QStringLiteral("lblPercentUnmatch"), page);
    column.addWidget(makeLabel(QStringLiteral("Label1"), QStringLiteral("Progress counters"), page));
    auto* grid = new QGridLayout;
    const auto add = [&](const QString& name, const QString& text, QLabel* number, int row, int cell) {
        addLabelled(*grid, makeLabel(name, text, page), number, row, cell);
    };
    add(QStringLiteral("Label4"), QStringLiteral("Items Matched:"), lblNumMatch, 0, 0);
    add(QStringLiteral("Label5"), QStringLiteral("Items Unmatched:"), lblNumUnmatch, 1, 0);
    add(QStringLiteral("Label2"), QStringLiteral("Percent Match:"), lblPercentMatch, 0, 3);
    add(QStringLiteral("Label3"), QStringLiteral("Percent Unmatch:"), lblPercentUnmatch, 1, 3);
    grid->setColumnMinimumWidth(2, lblNumMatch->fontMetrics().height());
    grid->setColumnStretch(2, 1);
    column.addLayout(grid);
}

void frmCompareProgress::Form_Load() {
    m_state.cancelled = false;
    showCounts(0);
}

void frmCompareProgress::begin() {
    show();
}

void frmCompareProgress::SetNumberNeed(qint32 expectedItems) {
    m_numberNeed = expectedItems;
}

void frmCompareProgress::InitFormLables(const QString& system1, const QString& system2) {
    lblSystem1->setText(system1);
    lblSystem2->setText(system2);
}

void frmCompareProgress::UpdateForm(ComparedState state, const QString& item) {
    count(state);
    int progress = std::min(percentOf(m_processed, m_numberNeed), HighestBeforeTheEnd);
    if (!item.isEmpty()) lblCompareItem->setText(item);
    if (state == ComparedState::Finished) {
        progress = 100;
        showEnd(QStringLiteral("Comparing databases finished."));
    }
    showCounts(progress);
}

void frmCompareProgress::count(ComparedState state) {
    if (state == ComparedState::Unmatched) addOne(m_unmatched);
    if (state == ComparedState::Matched) addOne(m_matched);
    addOne(m_processed);
}

void frmCompareProgress::showCounts(int progress) {
    const qint64 compared = qint64(m_matched) + m_unmatched;
    lblNumMatch->setText(QString::number(m_matched));
    lblNumUnmatch->setText(QString::number(m_unmatched));
    lblPercentMatch->setText(QString::number(percentOf(m_matched, compared)));
    lblPercentUnmatch->setText(QString::number(percentOf(m_unmatched, compared)));
    ProgressBar1->setValue(std::max(progress, ProgressBar1->value()));
}

void frmCompareProgress::showEnd(const QString& text) {
    m_over = true;
    lblProgress->setText(text);
    cmdClose->setText(QStringLiteral("&Close"));
    cmdClose->setDefault(true);
}

void frmCompareProgress::cancel() {
    if (m_over) return;
    m_cancelled = true;
    m_state.cancelled = true;
    end();
}

void frmCompareProgress::end() {
    if (!m_over) showEnd(QStringLiteral("Comparing databases cancelled."));
}

void frmCompareProgress::cmdClose_Click() {
    if (m_over || m_state.cancelled) {
        close();
    } else {
        cancel();
    }
}

/// The Escape key is the button.
void frmCompareProgress::reject() {
    cmdClose_Click();
}

void frmCompareProgress::closeEvent(QCloseEvent* event) {
    cancel();
    event->accept();
}

void frmCompareProgress::keepInView() {
    if (isVisible() && parentWidget()->window()->isActiveWindow()) raise();
}

}  // namespace tw
