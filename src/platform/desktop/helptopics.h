#pragma once

#include <QString>
#include <QTextDocument>

#include <vector>

namespace desktop {

/// How help texts are read: angle brackets are text, not markup, since the program's own marker texts have
/// them.
constexpr auto HelpMarkdown =
    QTextDocument::MarkdownFeatures(QTextDocument::MarkdownDialectGitHub) | QTextDocument::MarkdownNoHTML;

/// One topic of a help file: what stands from one heading to the next.
struct HelpTopic {
    QString title;
    QString anchor;  ///< what links name: "getting-started" for "Getting started"
    int level = 1;   ///< 1 or 2
    QString markdown;
    QString words;  ///< the text without its markup, for searching

    /// Whether all these words occur, in whatever case and also inside longer words.
    bool holds(const QStringList& wanted) const;
};

/// Cuts a Markdown text at its headings of the first and second level; text before the first heading is a
/// topic without a title. Deeper headings and what looks like one in a block of code stay inside their
/// topics.
std::vector<HelpTopic> helpTopics(const QString& markdown);

}  // namespace desktop
