#pragma once

#include <QString>

#include <memory>
#include <utility>
#include <vector>

namespace tw {

class DBConnection;

/// What a command says that needs a document with a server behind it, when there is none.
inline const QString NoServerConnection = QStringLiteral(
    "Failure to find a server connection.  Please make sure that there is at least one active connection.");

/// What other windows may ask of an open document window.
class Document {
  public:
    virtual ~Document() = default;
    /// Its connection object, made on first use; shared, since a query window outlives its document.
    virtual std::shared_ptr<DBConnection> connection() = 0;
};

/// The open document windows in the order they were opened, each under a key.
class Documents {
  public:
    /// Throws RuntimeError 457 when the key is taken.
    void add(Document& document, const QString& key);
    /// Throws RuntimeError 5 when there is none under the key.
    void remove(const QString& key);
    /// Null when there is none under the key.
    Document* find(const QString& key) const;
    const std::vector<std::pair<QString, Document*>>& all() const { return m_entries; }

  private:
    std::vector<std::pair<QString, Document*>> m_entries;
};

}  // namespace tw
