#include "ui/navigators/name_editing.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QPainter>

#include "base/limits.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/sizes.h"

namespace tweenery {
namespace {

constexpr int kMargin = 8;  // between the field's edge and its text
constexpr int kRight = 10;  // between the field and the row's right
constexpr double kRadius = 4;
constexpr double kLine = 2;
// For the number that makes a name unique.
constexpr int kLongestName = static_cast<int>(limits::kLengthOfText) - 12;

}  // namespace

NameEditor::NameEditor(QWidget* parent) : QLineEdit(parent) {
    const Appearance& appearance = Appearance::current();
    setFrame(false);
    setMaxLength(kLongestName);
    setTextMargins(kMargin - 2, 0, kMargin - 2, 0);  // the field itself takes 2
    setFont(appearance.increasesContrast() ? regularFont(sizes::rowTextSize)
                                           : lightFont(sizes::rowTextSize));
    QPalette palette = this->palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::Text, appearance.workbench().rowInk);
    palette.setColor(QPalette::Highlight, appearance.workbench().accent);
    palette.setColor(QPalette::HighlightedText, appearance.workbench().onSelected);
    setPalette(palette);
}

// Undo goes to the project until something was typed.
bool NameEditor::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const bool isUndo = key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo);
        if (isUndo && !isUndoAvailable() && !isRedoAvailable()) {
            event->ignore();
            return false;
        }
    }
    return QLineEdit::event(event);
}

void NameEditor::keyPressEvent(QKeyEvent* event) {
    QLineEdit::keyPressEvent(event);
    event->accept();
}

NameEditor* openNameEditor(const QAbstractItemView& list) {
    for (NameEditor* editor : list.viewport()->findChildren<NameEditor*>()) {
        if (!editor->isHidden()) { return editor; }  // one that was closed goes later
    }
    return nullptr;
}

void NameEditor::paintEvent(QPaintEvent* event) {
    {
        const WorkbenchColors& colors = Appearance::current().workbench();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(colors.accent, kLine));
        painter.setBrush(colors.rowLowerEdge);
        const double half = kLine / 2;
        painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), kRadius,
                                kRadius);
    }
    QLineEdit::paintEvent(event);
}

NameDelegate::NameDelegate(TextLeft textLeft, QObject* parent)
    : QStyledItemDelegate(parent), m_textLeft(std::move(textLeft)) {}

QWidget* NameDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                    const QModelIndex& index) const {
    auto* editor = new NameEditor(parent);
    editor->setAccessibleName(index.data().toString());
    return editor;
}

void NameDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    auto* field = static_cast<NameEditor*>(editor);
    const QString name = index.data(Qt::EditRole).toString();
    if (field->isModified() || field->text() == name) { return; }
    field->setText(name);
    field->selectAll();
}

void NameDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                        const QModelIndex& index) const {
    QRect rect = option.rect;
    rect.setLeft(m_textLeft(index) - kMargin);
    editor->setGeometry(rect.adjusted(0, 1, -kRight, -1));
}

}  // namespace tweenery
