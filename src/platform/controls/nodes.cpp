#include "platform/controls/nodes.h"

#include "platform/runtimeerror.h"

namespace controls {

Nodes::Nodes(QObject* parent) : QAbstractItemModel(parent) {}

Node& Nodes::add(Node* parent, const QString& key, const QString& text, int image, int selectedImage) {
    std::vector<Node*>& siblings = parent ? parent->children : m_roots;
    const int row = static_cast<int>(siblings.size());
    Node& node = make(parent, key, text, image, selectedImage, row);
    beginInsertRows(parent ? indexOf(*parent) : QModelIndex(), row, row);
    siblings.push_back(&node);
    endInsertRows();
    return node;
}

Node& Nodes::make(Node* parent, const QString& key, const QString& text, int image, int selectedImage,
                  int row) {
    Node& node = m_nodes.emplace_back(Node{key, text, image, selectedImage, parent, row, {}});
    Node*& place = m_byKey[node.key];
    if (place != nullptr) {
        m_nodes.pop_back();
        throw platform::RuntimeError(platform::errors::DuplicateNodeKey,
                                     QStringLiteral("Key is not unique in collection"));
    }
    place = &node;
    return node;
}

void Nodes::Batch::add(const QString& key, const QString& text, int image, int selectedImage) {
    const auto row = static_cast<int>(m_parent.children.size() + m_nodes.size());
    m_nodes.push_back(&m_tree.make(&m_parent, key, text, image, selectedImage, row));
}

Nodes::Batch::~Batch() {
    if (m_nodes.empty()) return;
    m_tree.beginInsertRows(m_tree.indexOf(m_parent), m_nodes.front()->row, m_nodes.back()->row);
    m_parent.children.insert(m_parent.children.end(), m_nodes.begin(), m_nodes.end());
    m_tree.endInsertRows();
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
        case Qt::EditRole:
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
