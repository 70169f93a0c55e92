#include "platform/desktop/helppage.h"

#include "platform/desktop/helptopics.h"

#include <QDir>
#include <QEvent>
#include <QFontDatabase>
#include <QImage>
#include <QResizeEvent>
#include <QTextBlock>
#include <QTextTable>

#include <algorithm>

namespace desktop {
namespace {

constexpr int PageMargin = 24;
constexpr double Body = 1.08;                             // of the application's font
constexpr double HeadingSizes[] = {1.8, 1.4, 1.2, 1.08};  // by level, the last for all deeper ones

void addToFormat(const QTextBlock& block, const QTextCharFormat& format) {
    QTextCursor cursor(block);
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    cursor.mergeCharFormat(format);
}

bool isCode(const QTextBlock& block) {
    return block.isValid() && block.blockFormat().nonBreakableLines();
}

void formatHeading(const QTextBlock& block, QTextBlockFormat& layout, double points) {
    const int level = layout.headingLevel();
    QTextCharFormat text;
    text.setFontPointSize(points * HeadingSizes[std::min(level, 4) - 1]);
    text.setFontWeight(QFont::DemiBold);
    addToFormat(block, text);
    layout.setTopMargin(block.blockNumber() == 0 ? 0 : 14);
    layout.setBottomMargin(8);
}

void formatBlock(const QTextBlock& block, double points, const QColor& codeGround) {
    QTextBlockFormat layout = block.blockFormat();
    if (layout.headingLevel() > 0) {
        formatHeading(block, layout, points);
    } else if (isCode(block)) {
        layout.setBackground(codeGround);
        layout.setLeftMargin(12);
        layout.setTopMargin(isCode(block.previous()) ? 0 : 4);
        layout.setBottomMargin(isCode(block.next()) ? 0 : 14);
    } else {
        // A line with a picture is as high as the picture.
        if (!block.text().contains(QChar::ObjectReplacementCharacter))
            layout.setLineHeight(135, QTextBlockFormat::ProportionalHeight);
        layout.setTopMargin(0);
        layout.setBottomMargin(block.textList() ? 3 : 10);
    }
    QTextCursor(block).setBlockFormat(layout);
}

}  // namespace

HelpPage::HelpPage(QWidget* parent) : QTextBrowser(parent) {
    setOpenLinks(false);
    setFrameShape(QFrame::NoFrame);
}

void HelpPage::showTopic(const QString& markdown, const QStringList& words) {
    m_markdown = markdown;
    m_words = words;
    m_pictures.clear();
    QFont body = font();
    body.setPointSizeF(QFontInfo(body).pointSizeF() * Body);
    document()->setDefaultFont(body);
    document()->setMarkdown(markdown, HelpMarkdown);
    format();
    findHits(words);
    m_shownHit = -1;
    moveCursor(QTextCursor::Start);
    if (m_hits.isEmpty()) {
        markHits();
    } else {
        showNextHit();
    }
}

void HelpPage::showNextHit() {
    if (m_hits.isEmpty()) return;
    m_shownHit = (m_shownHit + 1) % hits();
    QTextCursor at = m_hits.at(m_shownHit);
    at.clearSelection();
    setTextCursor(at);
    ensureCursorVisible();
    markHits();
}

void HelpPage::format() {
    QTextFrameFormat page = document()->rootFrame()->frameFormat();
    page.setMargin(PageMargin);
    document()->rootFrame()->setFrameFormat(page);
    const double points = document()->defaultFont().pointSizeF();
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        if (!QTextCursor(block).currentTable())
            formatBlock(block, points, palette().color(QPalette::AlternateBase));
    }
    formatTables();
}

void HelpPage::formatTables() {
    for (QTextFrame* frame : document()->rootFrame()->childFrames()) {
        auto* table = qobject_cast<QTextTable*>(frame);
        if (!table) continue;
        QTextTableFormat format = table->format();
        format.setBorderCollapse(true);
        format.setBorder(1);
        format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        format.setBorderBrush(palette().color(QPalette::Midlight));
        format.setCellPadding(6);
        format.setCellSpacing(0);
        format.setTopMargin(4);
        format.setBottomMargin(14);
        table->setFormat(format);
        for (int column = 0; column < table->columns(); ++column) {
            QTextTableCell cell = table->cellAt(0, column);
            QTextCharFormat head = cell.format();
            head.setBackground(palette().color(QPalette::AlternateBase));
            head.setFontWeight(QFont::DemiBold);
            cell.setFormat(head);
        }
    }
}

QImage HelpPage::fitted(const QUrl& name) const {
    const QImage picture(QDir(m_folder).filePath(name.path()));
    const int room = std::max(viewport()->width() - 2 * PageMargin, 1);
    if (picture.width() <= room) return picture;
    const double ratio = devicePixelRatioF();
    QImage shown = picture.scaledToWidth(static_cast<int>(room * ratio), Qt::SmoothTransformation);
    shown.setDevicePixelRatio(ratio);
    return shown;
}

QVariant HelpPage::loadResource(int type, const QUrl& name) {
    if (type != QTextDocument::ImageResource) return QTextBrowser::loadResource(type, name);
    m_pictures.insert(name);
    return fitted(name);
}

/// The document would scale by leaving out lines, so it is given pictures of the right size.
void HelpPage::fitPictures() {
    if (m_pictures.isEmpty()) return;
    for (const QUrl& name : m_pictures)
        document()->addResource(QTextDocument::ImageResource, name, fitted(name));
    document()->markContentsDirty(0, document()->characterCount());
}

void HelpPage::resizeEvent(QResizeEvent* event) {
    QTextBrowser::resizeEvent(event);
    if (event->size().width() != event->oldSize().width()) fitPictures();
}

void HelpPage::findHits(const QStringList& words) {
    m_hits.clear();
    for (const QString& word : words) {
        for (QTextCursor hit = document()->find(word); !hit.isNull(); hit = document()->find(word, hit)) {
            m_hits.append(hit);
        }
    }
    std::sort(m_hits.begin(), m_hits.end());
}

void HelpPage::markHits() {
    QList<QTextEdit::ExtraSelection> marks;
    for (int hit = 0; hit < hits(); ++hit) {
        QTextEdit::ExtraSelection mark;
        mark.cursor = m_hits.at(hit);
        mark.format.setForeground(Qt::black);
        mark.format.setBackground(hit == m_shownHit ? QColor(255, 178, 64) : QColor(255, 235, 140));
        marks.append(mark);
    }
    setExtraSelections(marks);
}

void HelpPage::changeEvent(QEvent* event) {
    QTextBrowser::changeEvent(event);
    const bool looksChange = event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange;
    if (looksChange && !m_markdown.isEmpty()) showTopic(m_markdown, m_words);
}

}  // namespace desktop
