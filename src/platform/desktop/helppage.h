#pragma once

#include <QTextBrowser>

namespace desktop {

/// Shows one help topic and marks the words that were searched for.
class HelpPage : public QTextBrowser {
    Q_OBJECT

  public:
    explicit HelpPage(QWidget* parent = nullptr);

    /// Shows a Markdown text with all occurrences of the words marked, the first of them in sight.
    void showTopic(const QString& markdown, const QStringList& words);
    /// Brings the next occurrence in sight, behind the last one the first.
    void showNextHit();
    int hits() const { return static_cast<int>(m_hits.size()); }

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void format();
    void formatTables();
    void findHits(const QStringList& words);
    void markHits();

    QString m_markdown;
    QStringList m_words;
    QList<QTextCursor> m_hits;
    int m_shownHit = -1;
};

}  // namespace desktop
