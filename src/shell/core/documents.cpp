#include "shell/core/documents.h"

#include "platform/runtimeerror.h"

#include <algorithm>

namespace tw {

void Documents::add(Document& document, const QString& key) {
    if (find(key) != nullptr) platform::throwDuplicateKey();
    m_entries.emplace_back(key, &document);
}

void Documents::remove(const QString& key) {
    const auto entry = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&](const auto& candidate) { return candidate.first == key; });
    if (entry == m_entries.end()) platform::throwNoSuchKey();
    m_entries.erase(entry);
}

Document* Documents::find(const QString& key) const {
    for (const auto& [entryKey, document] : m_entries) {
        if (entryKey == key) return document;
    }
    return nullptr;
}

}  // namespace tw
