#include "platform/controls/nodes.h"

#include "platform/runtimeerror.h"

namespace controls {

Nodes::Nodes(QObject* parent) : QAbstractItemModel(parent) {}

Node& Nodes::add(Node* parent, const QString& key, const QString& text, int image, int selectedImage) {
    if (m_byKey.contains(key)) {
        throw platform::RuntimeError(platform::errors::DuplicateNodeKey,
                                     QStringLiteral("Key is not unique in collection"));
    }
    std::vector<Node*>& siblings = parent ? parent->children : m_roots;
    const int row = static_cast<int>(siblings.size());
    beginInsertRows(parent ? indexOf(*parent) : QModelIndex(), row, row);
    Node& node = m_nodes.emplace_back(Node{key, text, image, selectedImage, parent, row, {}});
    siblings.push_back(&node);
    m_byKey.insert(node.key, &node);
    endInsertRows();
    return node;
}

Node* Nodes::find(const QString& key) const {
    return m_byKey.value(key);
}

int Nodes::count() const {
    return static_cast<int>(m_nodes.size());
}

void Nodes::clear() {
    beginResetModel();
    m_byKey.clear();
    m_roots.clear();
    m_nodes.clear();
    endResetModel();
}

void Nodes::ensureVisible(const Node& node) {
    Q_EMIT visibleWanted(indexOf(node));
}

Node* Nodes::node(const QModelIndex& index) const {
    return index.isValid() ? static_cast<Node*>(index.internalPointer()) : nullptr;
}

QModelIndex Nodes::indexOf(const Node& node) const {
    return createIndex(node.row, 0, &node);
}

QModelIndex Nodes::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent)) return {};
    return createIndex(row, column, childrenOf(node(parent))[static_cast<size_t>(row)]);
}

QModelIndex Nodes::parent(const QModelIndex& index) const {
    const Node* child = node(index);
    return child && child->parent ? indexOf(*child->parent) : QModelIndex();
}

int Nodes::rowCount(const QModelIndex& parent) const {
    return static_cast<int>(childrenOf(node(parent)).size());
}

int Nodes::columnCount(const QModelIndex&) const {
    return 1;
}

QVariant Nodes::data(const QModelIndex& index, int role) const {
    const Node* wanted = node(index);
    if (!wanted) return {};
    switch (role) {
        case Qt::DisplayRole:
            return wanted->text;
        case ImageRole:
            return wanted->image;
        case SelectedImageRole:
            return wanted->selectedImage;
        default:
            return {};
    }
}

const std::vector<Node*>& Nodes::childrenOf(const Node* parent) const {
    return parent ? parent->children : m_roots;
}

}  // namespace controls
