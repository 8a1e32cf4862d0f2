#pragma once

#include <QAbstractItemModel>
#include <QHash>
#include <memory>
#include <unordered_set>
#include <vector>

#include "editor/element_outline.h"

namespace tweenery {

/// The tree of elements as rows, front first: an eye, a lock, and the name, in three columns. It
/// keeps its own picture of the tree, which follows in refresh(), once a turn of the event loop,
/// however many edits there were: rows come, go and move one by one, so that whatever is open on
/// them stays. Between an edit and the refresh names and flags are those of now.
class ElementsModel : public QAbstractItemModel {
    Q_OBJECT

 public:
    enum Column { Visibility, Lock, Name, ColumnCount };

    /// Neither is owned; both live longer.
    ElementsModel(DocumentContext& document, ElementOutline& outline, QObject* parent = nullptr);
    ~ElementsModel() override;

    /// Null for no row.
    PCElement::Ptr element(const QModelIndex& index) const;
    /// Not valid for an element without a row.
    QModelIndex indexOf(const PCElement& element, int column = Visibility) const;

    /// Brings the rows up to date, if they are not.
    void refresh();
    /// Has it done when the event loop's turn ends.
    void refreshLater();

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& = {}) const override { return ColumnCount; }
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

 Q_SIGNALS:
    /// Whether the element is expanded has changed.
    void expansionChanged(const QModelIndex& index);
    /// At the end of each refresh that was asked for.
    void refreshed();

 private:
    struct Node;
    using Nodes = std::vector<Node*>;

    DocumentContext& m_document;
    ElementOutline& m_outline;
    std::unique_ptr<Node> m_root;
    QHash<const PCElement*, Node*> m_nodes;
    std::unordered_set<PCElement::Ptr> m_changedParents;
    std::unordered_set<const PCElement*> m_changedElements;
    std::unordered_set<const PCElement*> m_changedExpansions;
    bool m_isScheduled = false;
    bool m_isRefreshing = false;
    std::vector<Subscription> m_subscriptions;

    void observe();
    Node* nodeAt(const QModelIndex& index) const;
    QModelIndex indexOf(const Node& node, int column = Visibility) const;
    QVariant nameData(const PCElement& element, int role) const;

    Nodes changedParentsFromTheTop() const;
    void arrange(Node& parent);
    size_t insertNew(Node& parent, size_t row, const PCElement::Elements& wanted, size_t from);
    void move(Node& node, Node& parent, size_t row);
    void removeForeign(Node& parent);
    void forget(const Node& node);
    void tellChanges();
};

}  // namespace tweenery
