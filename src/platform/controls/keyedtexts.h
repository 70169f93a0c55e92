#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

namespace controls {

/// A collection of texts, each under a key that compares exactly; keeps the order of adding.
class KeyedTexts {
  public:
    /// Throws RuntimeError 457 when the key is taken.
    void add(const QString& text, const QString& key);
    /// The text of a key; throws RuntimeError 5 when there is none.
    QString item(const QString& key) const;
    bool contains(const QString& key) const;
    qsizetype count() const { return m_texts.size(); }
    QString item(qsizetype index) const { return m_texts.at(index); }
    void clear();

  private:
    QStringList m_texts;
    QHash<QString, qsizetype> m_positions;
};

}  // namespace controls
