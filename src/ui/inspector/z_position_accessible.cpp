#include "ui/inspector/z_position_accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <algorithm>
#include <vector>

#include "ui/inspector/z_position_pane.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

const QString kMoveUp = u"Move Up"_s;
const QString kMoveDown = u"Move Down"_s;

class ZPositionRow : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
    ZPositionRow(ZPositionList& list, int row) : m_list(list), m_row(row) {}

    bool isValid() const override { return index().isValid(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&m_list);
    }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    void setText(QAccessible::Text, const QString&) override {}
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? index().data().toString() : QString();
    }
    QRect rect() const override {
        const QRect rect = m_list.visualRect(index());
        return {m_list.viewport()->mapToGlobal(rect.topLeft()), rect.size()};
    }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        state.focusable = true;
        state.focused = m_list.hasFocus() && m_list.currentIndex() == index();
        state.invisible = !m_list.isVisible();
        return state;
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return {kMoveUp, kMoveDown}; }
    QStringList keyBindingsForAction(const QString& name) const override {
        if (name == kMoveUp) { return {u"Alt+Up"_s}; }
        return name == kMoveDown ? QStringList{u"Alt+Down"_s} : QStringList();
    }
    void doAction(const QString& name) override {
        if (!isValid()) { return; }
        if (name == kMoveUp) { m_list.moveRow(m_row, -1); }
        if (name == kMoveDown) { m_list.moveRow(m_row, 1); }
    }

 private:
    ZPositionList& m_list;
    int m_row;

    QModelIndex index() const { return m_list.model()->index(m_row, 0); }
};

class ZPositionListAccessible : public QAccessibleWidget {
 public:
    explicit ZPositionListAccessible(ZPositionList& list)
        : QAccessibleWidget(&list, QAccessible::List) {}
    ~ZPositionListAccessible() override {
        for (const QAccessible::Id id : m_rows) {
            QAccessible::deleteAccessibleInterface(id);
        }
    }

    int childCount() const override { return list().model()->rowCount(); }
    QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount()) { return nullptr; }
        while (m_rows.size() <= static_cast<size_t>(index)) {
            auto* row = new ZPositionRow(list(), static_cast<int>(m_rows.size()));
            m_rows.push_back(QAccessible::registerAccessibleInterface(row));
        }
        return QAccessible::accessibleInterface(m_rows[static_cast<size_t>(index)]);
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        const QAccessible::Id id = QAccessible::uniqueId(const_cast<QAccessibleInterface*>(child));
        const auto found = std::find(m_rows.begin(), m_rows.end(), id);
        return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        return child(list().indexAt(list().viewport()->mapFromGlobal(QPoint(x, y))).row());
    }

 private:
    mutable std::vector<QAccessible::Id> m_rows;  // made when first asked for, in order

    ZPositionList& list() const { return static_cast<ZPositionList&>(*widget()); }
};

QAccessibleInterface* makeZPositionInterface(const QString&, QObject* object) {
    auto* list = qobject_cast<ZPositionList*>(object);
    return list ? new ZPositionListAccessible(*list) : nullptr;
}

}  // namespace

void installZPositionAccessibility() {
    QAccessible::installFactory(makeZPositionInterface);
}

}  // namespace tweenery
