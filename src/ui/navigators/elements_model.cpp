#include "ui/navigators/elements_model.h"

#include <QMetaObject>
#include <algorithm>
#include <unordered_map>

using namespace Qt::StringLiterals;

namespace tweenery {

struct ElementsModel::Node {
    PCElement::Ptr element;
    Node* parent = nullptr;
    size_t row = 0;
    std::vector<std::unique_ptr<Node>> children;

    void countRowsFrom(size_t first) {
        for (size_t i = first; i < children.size(); ++i) {
            children[i]->row = i;
        }
    }
};

namespace {

bool isInTree(const PCElement& element, const PCElement& canvas) {
    const PCElement* above = &element;
    while (above && above != &canvas) {
        above = above->parentElement();
    }
    return above != nullptr;
}

// Which of `rows` make the longest list that goes up.
std::vector<bool> longestAscent(const std::vector<size_t>& rows) {
    constexpr size_t kNone = SIZE_MAX;
    std::vector<size_t> ends;  // of the best ascent of each length
    std::vector<size_t> before(rows.size(), kNone);
    for (size_t i = 0; i < rows.size(); ++i) {
        const auto place =
            std::lower_bound(ends.begin(), ends.end(), rows[i],
                             [&](size_t end, size_t row) { return rows[end] < row; });
        if (place != ends.begin()) { before[i] = *std::prev(place); }
        if (place == ends.end()) {
            ends.push_back(i);
        } else {
            *place = i;
        }
    }
    std::vector<bool> isIn(rows.size());
    for (size_t i = ends.empty() ? kNone : ends.back(); i != kNone; i = before[i]) {
        isIn[i] = true;
    }
    return isIn;
}

}  // namespace

ElementsModel::ElementsModel(DocumentContext& document, ElementOutline& outline, QObject* parent)
    : QAbstractItemModel(parent),
      m_document(document),
      m_outline(outline),
      m_root(std::make_unique<Node>()) {
    m_root->element = document.project()->canvas();
    m_nodes.insert(m_root->element.get(), m_root.get());
    arrange(*m_root);
    observe();
}

ElementsModel::~ElementsModel() = default;

void ElementsModel::observe() {
    NotificationCentre& centre = m_document.project()->notificationCentre();
    const auto whenPosted = [&](const QString& name, auto handle) {
        m_subscriptions.push_back(
            centre.subscribe(name, nullptr, [this, handle](const void* object) {
                handle(static_cast<const PCElement*>(object));
                refreshLater();
            }));
    };
    whenPosted(ElementNotification::subelements, [this](const PCElement* parent) {
        m_changedParents.insert(std::const_pointer_cast<PCElement>(parent->shared_from_this()));
    });
    const auto note = [this](const PCElement* element) { m_changedElements.insert(element); };
    whenPosted(ElementNotification::name, note);
    whenPosted(ElementNotification::hidden, note);
    whenPosted(ElementNotification::locked, note);
    whenPosted(ElementNotification::expanded,
               [this](const PCElement* element) { m_changedExpansions.insert(element); });
}

// Keeping up with the tree.

void ElementsModel::refreshLater() {
    if (std::exchange(m_isScheduled, true)) { return; }
    QMetaObject::invokeMethod(this, &ElementsModel::refresh, Qt::QueuedConnection);
}

void ElementsModel::refresh() {
    if (!m_isScheduled || m_isRefreshing) { return; }
    m_isRefreshing = true;
    m_isScheduled = false;
    const Nodes parents = changedParentsFromTheTop();
    m_changedParents.clear();
    for (Node* parent : parents) {
        arrange(*parent);
    }
    for (Node* parent : parents) {
        removeForeign(*parent);
    }
    tellChanges();
    m_isRefreshing = false;
    Q_EMIT refreshed();
}

// Of those that have rows: what is new is arranged as it is inserted.
ElementsModel::Nodes ElementsModel::changedParentsFromTheTop() const {
    std::vector<std::pair<int, Node*>> parents;
    for (const PCElement::Ptr& element : m_changedParents) {
        Node* node = m_nodes.value(element.get());
        const bool isShown = node && isInTree(*element, *m_root->element);
        if (isShown) { parents.emplace_back(element->depth(), node); }
    }
    std::sort(parents.begin(), parents.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    Nodes nodes;
    for (const auto& [depth, node] : parents) {
        nodes.push_back(node);
    }
    return nodes;
}

// Gives `parent` the rows of its element's children, each new or from where it was. What is no
// child any more stays between them until its new parent takes it, or removeForeign(). Parents
// further up are arranged already, so that no row is moved below itself.
void ElementsModel::arrange(Node& parent) {
    const ElementList& children = parent.element->children();
    PCElement::Elements wanted(children.begin(), children.end());
    std::reverse(wanted.begin(), wanted.end());

    std::vector<size_t> oldRows;
    Nodes known(wanted.size());
    for (size_t i = 0; i < wanted.size(); ++i) {
        Node* node = m_nodes.value(wanted[i].get());
        known[i] = node;
        if (node && node->parent == &parent) { oldRows.push_back(node->row); }
    }
    const std::vector<bool> isInOrder = longestAscent(oldRows);

    size_t row = 0;
    auto nextIsInOrder = isInOrder.begin();
    for (size_t i = 0; i < wanted.size();) {
        if (!known[i]) {
            i = insertNew(parent, row, wanted, i);
            row = m_nodes.value(wanted[i - 1].get())->row + 1;
            continue;
        }
        const bool stays = known[i]->parent == &parent && *nextIsInOrder++;
        if (!stays) { move(*known[i], parent, row); }
        row = known[i]->row + 1;
        ++i;
    }
}

// The new ones among `wanted` from `from` on; returns where they end.
size_t ElementsModel::insertNew(Node& parent, size_t row, const PCElement::Elements& wanted,
                                size_t from) {
    std::vector<std::unique_ptr<Node>> nodes;
    size_t end = from;
    for (; end < wanted.size() && !m_nodes.contains(wanted[end].get()); ++end) {
        nodes.push_back(std::make_unique<Node>(Node{wanted[end], &parent, 0, {}}));
        m_nodes.insert(wanted[end].get(), nodes.back().get());
    }
    Nodes added;
    for (const auto& node : nodes) {
        added.push_back(node.get());
    }
    beginInsertRows(indexOf(parent), static_cast<int>(row),
                    static_cast<int>(row + added.size() - 1));
    parent.children.insert(parent.children.begin() + static_cast<ptrdiff_t>(row),
                           std::make_move_iterator(nodes.begin()),
                           std::make_move_iterator(nodes.end()));
    parent.countRowsFrom(row);
    endInsertRows();
    for (Node* node : added) {
        if (!node->element->children().empty()) { arrange(*node); }
    }
    return end;
}

void ElementsModel::move(Node& node, Node& parent, size_t row) {
    Node& old = *node.parent;
    const size_t oldRow = node.row;
    if (&old == &parent && (row == oldRow || row == oldRow + 1)) { return; }
    beginMoveRows(indexOf(old), static_cast<int>(oldRow), static_cast<int>(oldRow), indexOf(parent),
                  static_cast<int>(row));
    auto owned = std::move(old.children[oldRow]);
    old.children.erase(old.children.begin() + static_cast<ptrdiff_t>(oldRow));
    const size_t place = &old == &parent && row > oldRow ? row - 1 : row;
    owned->parent = &parent;
    parent.children.insert(parent.children.begin() + static_cast<ptrdiff_t>(place),
                           std::move(owned));
    old.countRowsFrom(&old == &parent ? std::min(oldRow, place) : oldRow);
    if (&old != &parent) { parent.countRowsFrom(place); }
    endMoveRows();
}

// What another parent had was moved to it, so this has left the tree.
void ElementsModel::removeForeign(Node& parent) {
    const auto isForeign = [&parent](size_t row) {
        return parent.children[row]->element->parentElement() != parent.element.get();
    };
    for (size_t end = parent.children.size(); end > 0;) {
        if (!isForeign(end - 1)) {
            --end;
            continue;
        }
        size_t first = end - 1;
        while (first > 0 && isForeign(first - 1)) {
            --first;
        }
        const auto begin = parent.children.begin();
        const auto from = begin + static_cast<ptrdiff_t>(first);
        const auto to = begin + static_cast<ptrdiff_t>(end);
        beginRemoveRows(indexOf(parent), static_cast<int>(first), static_cast<int>(end - 1));
        std::for_each(from, to, [this](const auto& node) { forget(*node); });
        parent.children.erase(from, to);
        parent.countRowsFrom(first);
        endRemoveRows();
        end = first;
    }
}

void ElementsModel::forget(const Node& node) {
    m_nodes.remove(node.element.get());
    for (const auto& child : node.children) {
        forget(*child);
    }
}

// One signal for all changed rows of a parent.
void ElementsModel::tellChanges() {
    std::unordered_map<Node*, std::pair<size_t, size_t>> spans;
    for (const PCElement* element : std::exchange(m_changedElements, {})) {
        const Node* node = m_nodes.value(element);
        if (!node || !node->parent) { continue; }
        auto& [first, last] = spans.try_emplace(node->parent, node->row, node->row).first->second;
        first = std::min(first, node->row);
        last = std::max(last, node->row);
    }
    for (const auto& [parent, span] : spans) {
        const auto& rows = parent->children;
        Q_EMIT dataChanged(indexOf(*rows[span.first]), indexOf(*rows[span.second], Name));
    }
    for (const PCElement* element : std::exchange(m_changedExpansions, {})) {
        if (const Node* node = m_nodes.value(element)) { Q_EMIT expansionChanged(indexOf(*node)); }
    }
}

// The rows.

ElementsModel::Node* ElementsModel::nodeAt(const QModelIndex& index) const {
    return index.isValid() ? static_cast<Node*>(index.internalPointer()) : m_root.get();
}

QModelIndex ElementsModel::indexOf(const Node& node, int column) const {
    if (&node == m_root.get()) { return {}; }
    return createIndex(static_cast<int>(node.row), column, &node);
}

PCElement::Ptr ElementsModel::element(const QModelIndex& index) const {
    return index.isValid() ? nodeAt(index)->element : nullptr;
}

QModelIndex ElementsModel::indexOf(const PCElement& element, int column) const {
    const Node* node = m_nodes.value(&element);
    return node ? indexOf(*node, column) : QModelIndex();
}

QModelIndex ElementsModel::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent)) { return {}; }
    return createIndex(row, column, nodeAt(parent)->children[static_cast<size_t>(row)].get());
}

QModelIndex ElementsModel::parent(const QModelIndex& index) const {
    return index.isValid() ? indexOf(*nodeAt(index)->parent) : QModelIndex();
}

int ElementsModel::rowCount(const QModelIndex& parent) const {
    return parent.column() > 0 ? 0 : static_cast<int>(nodeAt(parent)->children.size());
}

QVariant ElementsModel::nameData(const PCElement& element, int role) const {
    const bool isText = role == Qt::DisplayRole || role == Qt::EditRole;
    return isText ? element.name() : QVariant();
}

QVariant ElementsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) { return {}; }
    const PCElement& element = *nodeAt(index)->element;
    if (index.column() == Name) { return nameData(element, role); }
    const bool isEye = index.column() == Visibility;
    if (role == Qt::AccessibleTextRole) {
        return (isEye ? u"Visible, %1"_s : u"Locked, %1"_s).arg(element.name());
    }
    if (role != Qt::CheckStateRole) { return {}; }
    const bool isChecked = isEye ? !element.hidden() : element.locked();
    return isChecked ? Qt::Checked : Qt::Unchecked;
}

bool ElementsModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid()) { return false; }
    const PCElement::Ptr element = nodeAt(index)->element;
    if (index.column() == Name && role == Qt::EditRole) {
        m_outline.rename(*element, value.toString());
        return true;
    }
    if (index.column() == Name || role != Qt::CheckStateRole) { return false; }
    const bool isChecked = value.toInt() == Qt::Checked;
    if (index.column() == Lock) {
        m_outline.setLocked(*element, isChecked);
    } else if (isChecked == element->hidden()) {
        const EyeDrag press(*m_document.project(), *element);
    }
    return true;
}

// The header is hidden, but not for whoever reads the screen.
QVariant ElementsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static const QStringList kTitles{u"Visible"_s, u"Locked"_s, u"Name"_s};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) { return {}; }
    return kTitles.value(section);
}

Qt::ItemFlags ElementsModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) { return Qt::ItemIsDropEnabled; }
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled;
    flags.setFlag(Qt::ItemIsSelectable, !nodeAt(index)->element->locked());
    flags.setFlag(Qt::ItemIsEditable, index.column() == Name);
    flags.setFlag(Qt::ItemIsUserCheckable, index.column() != Name);
    return flags;
}

}  // namespace tweenery
