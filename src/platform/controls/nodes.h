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

    /// Adds many nodes below one parent; they take their places, and views are told, when it ends. The tree
    /// may not be changed in between by other means.
    class Batch {
      public:
        Batch(Nodes& tree, Node& parent) : m_tree(tree), m_parent(parent) {}
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

        /// As Nodes::add().
        void add(const QString& key, const QString& text, int image, int selectedImage);

      private:
        Nodes& m_tree;
        Node& m_parent;
        std::vector<Node*> m_nodes;
    };

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
    /// A node that is not among its siblings yet.
    Node& make(Node* parent, const QString& key, const QString& text, int image, int selectedImage, int row);
    const std::vector<Node*>& childrenOf(const Node* parent) const;

    std::deque<Node> m_nodes;
    std::vector<Node*> m_roots;
    QHash<QStringView, Node*> m_byKey;  // the views look into the nodes' own keys
};

}  // namespace controls
