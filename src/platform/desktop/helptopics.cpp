#include "platform/desktop/helptopics.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace desktop {
namespace {

// GitHub's rule: lower case, blanks become hyphens, punctuation goes.
QString anchorOf(const QString& title) {
    static const QRegularExpression punctuation(QStringLiteral(R"([^\p{L}\p{N}\s_-])"));
    QString anchor = title.toLower();
    anchor.remove(punctuation);
    anchor.replace(u' ', u'-');
    return anchor;
}

QString withoutMarkup(const QString& markdown) {
    QTextDocument document;
    document.setMarkdown(markdown, HelpMarkdown);
    return document.toPlainText();
}

}  // namespace

bool HelpTopic::holds(const QStringList& wanted) const {
    return std::all_of(wanted.begin(), wanted.end(),
                       [this](const QString& word) { return words.contains(word, Qt::CaseInsensitive); });
}

std::vector<HelpTopic> helpTopics(const QString& markdown) {
    static const QRegularExpression heading(QStringLiteral(R"(^(#{1,2})\s+(.*?)[\s#]*$)"));
    std::vector<HelpTopic> topics;
    bool inCode = false;
    for (const QString& line : markdown.split(u'\n')) {
        if (line.startsWith(QStringLiteral("```"))) inCode = !inCode;
        const auto match = heading.match(line);
        const bool begins = match.hasMatch() && !inCode;
        if (begins) {
            topics.emplace_back();
            topics.back().level = static_cast<int>(match.capturedLength(1));
            topics.back().title = withoutMarkup(match.captured(2));
            topics.back().anchor = anchorOf(topics.back().title);
        } else if (topics.empty()) {
            if (line.trimmed().isEmpty()) continue;
            topics.emplace_back();
        }
        topics.back().markdown += line + u'\n';
    }
    for (HelpTopic& topic : topics) {
        topic.words = withoutMarkup(topic.markdown);
    }
    return topics;
}

}  // namespace desktop
