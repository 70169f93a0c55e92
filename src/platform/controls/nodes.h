#pragma once

#include <QAbstractItemModel>
#include <QHash>

#include <deque>
#include <vector>

namespace controls {

/// One node of a tree. Lives until Nodes::clear().
struct Node {
    const QString key;
    const QString text;
    const int image = 0;  ///< picture number, 0 for none
    const int selectedImage = 0;
    Node* parent = nullptr;  ///< null for a root
    int row = 0;             ///< position among its siblings
    std::vector<Node*> children;
};

/// The keyed nodes behind a tree view. Keys are unique in the whole tree and compare exactly.
class Nodes : public QAbstractItemModel {
    Q_OBJECT

  public:
    /// Roles of the picture numbers.
    static constexpr int ImageRole = Qt::UserRole;
    static constexpr int SelectedImageRole = Qt::UserRole + 1;

    explicit Nodes(QObject* parent = nullptr);

    /// Adds a node below `parent` (null: a root), behind its siblings.
    /// Throws RuntimeError 35602 when the key is taken; the tree is then as before.
    Node& add(Node* parent, const QString& key, const QString& text, int image, int selectedImage);
    /// The node of a key, or null.
    Node* find(const QString& key) const;
    int count() const;
    void clear();

    /// Asks the view to open the branches above a node so that it shows.
    void ensureVisible(const Node& node);

    Node* node(const QModelIndex& index) const;
    QModelIndex indexOf(const Node& node) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

  Q_SIGNALS:
    void visibleWanted(const QModelIndex& index);

  private:
    const std::vector<Node*>& childrenOf(const Node* parent) const;

    std::deque<Node> m_nodes;
    std::vector<Node*> m_roots;
    QHash<QStringView, Node*> m_byKey;  // the views look into the nodes' own keys
};

}  // namespace controls
