#include "platform/controls/keyedtexts.h"

#include "platform/runtimeerror.h"

namespace controls {

void KeyedTexts::add(const QString& text, const QString& key) {
    if (m_positions.contains(key)) platform::throwDuplicateKey();
    m_positions.insert(key, m_texts.size());
    m_texts.append(text);
}

QString KeyedTexts::item(const QString& key) const {
    const auto position = m_positions.constFind(key);
    if (position == m_positions.constEnd()) platform::throwNoSuchKey();
    return m_texts.at(*position);
}

bool KeyedTexts::contains(const QString& key) const {
    return m_positions.contains(key);
}

void KeyedTexts::clear() {
    m_texts.clear();
    m_positions.clear();
}

}  // namespace controls
