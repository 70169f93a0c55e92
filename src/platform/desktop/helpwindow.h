#pragma once

#include "platform/desktop/helptopics.h"

#include <QWidget>

class QLabel;
class QLineEdit;
class QListWidget;
class QUrl;

namespace desktop {

class HelpPage;

/// The window of the help viewer: the topics on the left under a search box, the chosen topic on the right.
class HelpWindow : public QWidget {
    Q_OBJECT

  public:
    explicit HelpWindow(QWidget* parent);

    /// `folder` holds the pictures that the topics name.
    void setTopics(std::vector<HelpTopic> topics, const QString& folder);
    /// Shows all topics and opens the first.
    void showContents();
    /// Shows the topics that hold all the words, and is ready for others to be typed.
    void showSearch(const QString& words);

  private:
    void layOut();
    void search();
    void openTopic();
    void openLink(const QUrl& link);

    std::vector<HelpTopic> m_topics;
    QStringList m_words;
    QLineEdit* m_search;
    QLabel* m_found;
    QListWidget* m_list;
    HelpPage* m_page;
};

}  // namespace desktop
