#include "ui/window/toolbar_dialog.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "ui/window/toolbar_items.h"

namespace tweenery {

namespace {

using namespace Qt::StringLiterals;

constexpr QSize kListSize(190, 360);

QListWidgetItem* listItem(const QString& identifier) {
    const QString label = toolbarItem(identifier)->label;
    auto* item = new QListWidgetItem(label.isEmpty() ? u"Divider"_s : label);
    item->setData(Qt::UserRole, identifier);
    return item;
}

QString identifierOf(const QListWidgetItem* item) {
    return item->data(Qt::UserRole).toString();
}

QVBoxLayout* titled(const QString& title, QListWidget* list) {
    auto* label = new QLabel(title);
    label->setBuddy(list);
    list->setAccessibleName(title);
    list->setFixedSize(kListSize);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* column = new QVBoxLayout;
    column->addWidget(label);
    column->addWidget(list);
    return column;
}

}  // namespace

ToolbarDialog::ToolbarDialog(const QStringList& identifiers, QWidget* parent)
    : QDialog(parent), m_available(new QListWidget), m_chosen(new QListWidget) {
    setWindowTitle(u"Customize Toolbar"_s);
    m_chosen->setDragDropMode(QAbstractItemView::InternalMove);
    m_chosen->setDefaultDropAction(Qt::MoveAction);

    auto* moves = new QVBoxLayout;
    auto* ends = new QHBoxLayout;
    const auto addButton = [this](QBoxLayout* layout, const QString& text, auto action) {
        auto* button = new QPushButton(text);
        button->setAutoDefault(false);
        connect(button, &QAbstractButton::clicked, this, action);
        layout->addWidget(button);
        return button;
    };
    moves->addStretch();
    addButton(moves, u"Add"_s, [this] { addCurrent(); });
    addButton(moves, u"Remove"_s, [this] { removeCurrent(); });
    addButton(moves, u"Move Up"_s, [this] { moveCurrent(-1); });
    addButton(moves, u"Move Down"_s, [this] { moveCurrent(1); });
    moves->addStretch();
    addButton(ends, u"Reset"_s, [this] { showItems(toolbarItems::byDefault()); });
    ends->addStretch();
    addButton(ends, u"Cancel"_s, &QDialog::reject);
    addButton(ends, u"Done"_s, &QDialog::accept)->setDefault(true);

    auto* lists = new QHBoxLayout;
    lists->addLayout(titled(u"Available"_s, m_available));
    lists->addLayout(moves);
    lists->addLayout(titled(u"In the toolbar"_s, m_chosen));
    auto* column = new QVBoxLayout(this);
    column->addLayout(lists);
    column->addLayout(ends);
    connect(m_available, &QListWidget::itemDoubleClicked, this, &ToolbarDialog::addCurrent);
    showItems(identifiers);
}

QStringList ToolbarDialog::identifiers() const {
    QStringList found;
    for (int row = 0; row < m_chosen->count(); ++row) {
        found << identifierOf(m_chosen->item(row));
    }
    return found;
}

void ToolbarDialog::showItems(const QStringList& identifiers) {
    m_chosen->clear();
    for (const QString& identifier : identifiers) {
        m_chosen->addItem(listItem(identifier));
    }
    updateAvailable();
}

// What may stand in the toolbar once and does already is not offered again.
void ToolbarDialog::updateAvailable() {
    const QStringList present = identifiers();
    m_available->clear();
    for (const QString& identifier : toolbarItems::allowed()) {
        if (toolbarItems::mayRepeat(identifier) || !present.contains(identifier)) {
            m_available->addItem(listItem(identifier));
        }
    }
    m_available->setCurrentRow(0);
}

void ToolbarDialog::addCurrent() {
    const QListWidgetItem* item = m_available->currentItem();
    if (!item) { return; }
    const int row = m_chosen->currentRow() < 0 ? m_chosen->count() : m_chosen->currentRow() + 1;
    m_chosen->insertItem(row, listItem(identifierOf(item)));
    m_chosen->setCurrentRow(row);
    updateAvailable();
}

void ToolbarDialog::removeCurrent() {
    delete m_chosen->takeItem(m_chosen->currentRow());
    updateAvailable();
}

void ToolbarDialog::moveCurrent(int by) {
    const int row = m_chosen->currentRow();
    const int target = row + by;
    if (row < 0 || target < 0 || target >= m_chosen->count()) { return; }
    m_chosen->insertItem(target, m_chosen->takeItem(row));
    m_chosen->setCurrentRow(target);
}

}  // namespace tweenery
