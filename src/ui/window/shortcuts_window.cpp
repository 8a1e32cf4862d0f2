#include "ui/window/shortcuts_window.h"

#include <QBoxLayout>
#include <QDialog>
#include <QHeaderView>
#include <QKeySequence>
#include <QLineEdit>
#include <QTreeWidget>

#include "editor/commands.h"
#include "editor/pointer_hints.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr QSize kSize{520, 620};
constexpr int kTitleWidth = 290;

// Every word must stand somewhere in the row.
bool matches(const QTreeWidgetItem& row, const QStringList& words) {
    const QString text = row.parent()->text(0) + u' ' + row.text(0) + u' ' + row.text(1);
    return std::all_of(words.begin(), words.end(), [&text](const QString& word) {
        return text.contains(word, Qt::CaseInsensitive);
    });
}

// The list with its search field.
class ShortcutsWindow : public QDialog {
 public:
    explicit ShortcutsWindow(QWidget* parent) : QDialog(parent) {
        setWindowTitle(u"Keyboard Shortcuts"_s);
        setAttribute(Qt::WA_DeleteOnClose);
        resize(kSize);
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(sizes::dialogMargin, sizes::dialogMargin, sizes::dialogMargin,
                                   sizes::dialogMargin);
        m_search = new QLineEdit(this);
        m_search->setAccessibleName(u"Search Shortcuts"_s);
        m_search->setPlaceholderText(u"Search"_s);
        m_search->setClearButtonEnabled(true);
        connect(m_search, &QLineEdit::textChanged, this, &ShortcutsWindow::filter);
        layout->addWidget(m_search);
        makeList();
        layout->addWidget(m_list);
    }

 private:
    QLineEdit* m_search;
    QTreeWidget* m_list;

    void makeList() {
        m_list = new QTreeWidget(this);
        m_list->setAccessibleName(u"Shortcuts"_s);
        m_list->setColumnCount(2);
        m_list->setHeaderHidden(true);
        m_list->setRootIsDecorated(false);
        m_list->setItemsExpandable(false);
        m_list->setFrameShape(QFrame::NoFrame);
        for (const QString& menu : menuTitles()) {
            QTreeWidgetItem* section = addSection(menu);
            for (const Command& command : allCommands()) {
                if (command.menu == menu) { addCommand(*section, command); }
            }
            section->setHidden(section->childCount() == 0);
        }
        QTreeWidgetItem* pointer = addSection(u"Pointer and Keys on the Canvas"_s);
        for (const PointerHint& hint : pointerHints()) {
            addRow(*pointer, hint.effect, hint.input);
        }
        m_list->expandAll();
        m_list->setColumnWidth(0, kTitleWidth);
    }

    QTreeWidgetItem* addSection(const QString& title) {
        auto* section = new QTreeWidgetItem(m_list, {title});
        section->setFlags(Qt::ItemIsEnabled);
        section->setFont(0, headingFont());
        section->setFirstColumnSpanned(true);
        return section;
    }

    void addCommand(QTreeWidgetItem& section, const Command& command) {
        if (command.shortcuts.isEmpty()) { return; }
        QString title = command.title;
        title.remove(u'…');
        if (!command.submenu.isEmpty()) { title.prepend(command.submenu + u' '); }
        QStringList keys;
        for (const QKeySequence& shortcut : QKeySequence::listFromString(command.shortcuts)) {
            keys << shortcut.toString(QKeySequence::NativeText);
        }
        addRow(section, title, keys.join(u" or "_s));
    }

    static void addRow(QTreeWidgetItem& section, const QString& title, const QString& keys) {
        auto* row = new QTreeWidgetItem(&section, {title, keys});
        row->setToolTip(0, title);
        row->setToolTip(1, keys);
        row->setSizeHint(0, {0, sizes::menuItemHeight});
    }

    void filter(const QString& text) {
        const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
        for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
            QTreeWidgetItem* section = m_list->topLevelItem(i);
            bool hasMatch = false;
            for (int j = 0; j < section->childCount(); ++j) {
                const bool isMatch = matches(*section->child(j), words);
                section->child(j)->setHidden(!isMatch);
                hasMatch = hasMatch || isMatch;
            }
            section->setHidden(!hasMatch);
        }
    }
};

}  // namespace

void showShortcuts(QWidget& parent) {
    auto* window = parent.findChild<ShortcutsWindow*>(QString(), Qt::FindDirectChildrenOnly);
    if (!window) { window = new ShortcutsWindow(&parent); }
    window->show();
    window->raise();
    window->activateWindow();
}

}  // namespace tweenery
