#pragma once

#include <QSet>
#include <QTextBrowser>
#include <QUrl>

namespace desktop {

/// Shows one help topic with its pictures, never wider than the page, and marks the words that were searched
/// for.
class HelpPage : public QTextBrowser {
    Q_OBJECT

  public:
    explicit HelpPage(QWidget* parent = nullptr);

    /// Where the files are that the texts name as pictures.
    void setFolder(const QString& folder) { m_folder = folder; }
    /// Shows a Markdown text with all occurrences of the words marked, the first of them in sight.
    void showTopic(const QString& markdown, const QStringList& words);
    /// Brings the next occurrence in sight, behind the last one the first.
    void showNextHit();
    int hits() const { return static_cast<int>(m_hits.size()); }

  protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    QVariant loadResource(int type, const QUrl& name) override;

  private:
    void format();
    void formatTables();
    void fitPictures();
    QImage fitted(const QUrl& name) const;
    void findHits(const QStringList& words);
    void markHits();

    QString m_folder;
    QString m_markdown;
    QStringList m_words;
    QSet<QUrl> m_pictures;  ///< named by the topic
    QList<QTextCursor> m_hits;
    int m_shownHit = -1;
};

}  // namespace desktop
