#include "platform/desktop/helpwindow.h"

#include "platform/desktop/celldelegate.h"
#include "platform/desktop/helppage.h"
#include "platform/desktop/scrollpage.h"

#include <QDesktopServices>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpression>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>

namespace desktop {
namespace {

constexpr int TopicRole = Qt::UserRole;
constexpr QSize FirstSize(58, 40);  // in lines of text

}  // namespace

HelpWindow::HelpWindow(QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_search(new QLineEdit(this)),
      m_found(new QLabel(this)),
      m_list(new QListWidget(this)),
      m_page(new HelpPage(this)) {
    layOut();
    connect(m_search, &QLineEdit::textChanged, this, &HelpWindow::search);
    connect(m_search, &QLineEdit::returnPressed, m_page, &HelpPage::showNextHit);
    connect(m_list, &QListWidget::currentRowChanged, this, &HelpWindow::openTopic);
    connect(m_page, &HelpPage::anchorClicked, this, &HelpWindow::openLink);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
        m_search->setFocus();
        m_search->selectAll();
    });
    connect(new QShortcut(QKeySequence::FindNext, this), &QShortcut::activated, m_page,
            &HelpPage::showNextHit);
    connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this, &QWidget::close);
}

void HelpWindow::layOut() {
    m_search->setPlaceholderText(QStringLiteral("Search for words"));
    m_search->setClearButtonEnabled(true);
    m_search->setAccessibleName(m_search->placeholderText());
    m_list->setAccessibleName(QStringLiteral("Topics"));
    m_page->setAccessibleName(QStringLiteral("Topic"));
    m_found->setContentsMargins(2, 0, 2, 0);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setUniformItemSizes(true);
    m_list->setItemDelegate(new CellDelegate(m_list, CellDelegate::FocusMark::AroundCell));

    auto* left = new QWidget(this);
    auto* column = new QVBoxLayout(left);
    column->setContentsMargins(8, 8, 0, 0);
    column->addWidget(m_search);
    column->addWidget(m_found);
    column->addWidget(m_list);
    auto* halves = new QSplitter(this);
    halves->addWidget(left);
    halves->addWidget(m_page);
    halves->setChildrenCollapsible(false);
    halves->setStretchFactor(1, 1);
    const QSize size = (FirstSize * fontMetrics().height()).boundedTo(roomOnScreen(*this));
    halves->setSizes({size.width() * 3 / 10, size.width() * 7 / 10});
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(halves);
    resize(size);
}

void HelpWindow::setTopics(std::vector<HelpTopic> topics, const QString& folder) {
    m_page->setFolder(folder);
    m_topics = std::move(topics);
    search();
}

void HelpWindow::showContents() {
    m_search->clear();
    m_list->setCurrentRow(0);
    m_list->setFocus();
}

void HelpWindow::showSearch(const QString& words) {
    m_search->setText(words);
    m_search->setFocus();
    m_search->selectAll();
}

void HelpWindow::search() {
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    m_words = m_search->text().split(blanks, Qt::SkipEmptyParts);
    const QListWidgetItem* before = m_list->currentItem();
    const int topicBefore = before ? before->data(TopicRole).toInt() : 0;

    const QSignalBlocker quiet(m_list);
    m_list->clear();
    for (int topic = 0; topic < static_cast<int>(m_topics.size()); ++topic) {
        const HelpTopic& candidate = m_topics[static_cast<size_t>(topic)];
        if (!candidate.holds(m_words)) continue;
        const QString indent(candidate.level > 1 && m_words.isEmpty() ? 4 : 0, u' ');
        auto* item = new QListWidgetItem(indent + candidate.title, m_list);
        item->setData(TopicRole, topic);
        item->setSizeHint(QSize(0, fontMetrics().height() + 8));
        if (topic == topicBefore) m_list->setCurrentItem(item);
    }
    if (!m_list->currentItem()) m_list->setCurrentRow(0);
    const int found = m_list->count();
    m_found->setText(found == 0   ? QStringLiteral("No topic holds all these words")
                     : found == 1 ? QStringLiteral("1 topic")
                                  : QStringLiteral("%1 topics").arg(found));
    openTopic();
}

void HelpWindow::openTopic() {
    const QListWidgetItem* item = m_list->currentItem();
    const QString markdown =
        item ? m_topics[static_cast<size_t>(item->data(TopicRole).toInt())].markdown : QString();
    m_page->showTopic(markdown, m_words);
}

void HelpWindow::openLink(const QUrl& link) {
    if (!link.scheme().isEmpty()) {
        // Other schemes start programs.
        if (link.scheme() == QStringLiteral("https") || link.scheme() == QStringLiteral("http"))
            QDesktopServices::openUrl(link);
        return;
    }
    const auto topic = std::find_if(m_topics.begin(), m_topics.end(), [&](const HelpTopic& candidate) {
        return candidate.anchor == link.fragment();
    });
    if (topic == m_topics.end()) return;
    m_search->clear();
    m_list->setCurrentRow(static_cast<int>(topic - m_topics.begin()));
}

}  // namespace desktop
