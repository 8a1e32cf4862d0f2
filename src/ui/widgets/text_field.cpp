#include "ui/widgets/text_field.h"

#include <QKeyEvent>
#include <QTimer>

namespace tweenery {

TextField::TextField(QWidget* parent) : QLineEdit(parent) {}

void TextField::setValueText(const QString& text) {
    m_textBefore = text;
    if ((m_isEditing && isModified()) || text == this->text()) { return; }
    setText(text);
    if (hasFocus()) { selectAll(); }
}

void TextField::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    if (m_isEditing) { return; }  // the window or a menu had the keyboard meanwhile
    m_isEditing = true;
    m_textBefore = text();
    setModified(false);
    // After the press that gave the focus, which would put the cursor into the text.
    QTimer::singleShot(0, this, &QLineEdit::selectAll);
}

void TextField::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (event->reason() == Qt::PopupFocusReason) { return; }
    m_isEditing = event->reason() == Qt::ActiveWindowFocusReason;
    commit();
}

void TextField::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Escape:
            setText(m_textBefore);
            Q_EMIT left();
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            commit();
            selectAll();
            Q_EMIT left();
            return;
        default:
            QLineEdit::keyPressEvent(event);
    }
}

bool TextField::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        auto* key = static_cast<QKeyEvent*>(event);
        const bool isUndo = key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo);
        // Undo belongs to the project until this text was changed.
        if (isUndo && !isModified() && !isRedoAvailable()) { return false; }
    }
    return QLineEdit::event(event);
}

void TextField::commit() {
    if (text() == m_textBefore) { return; }
    m_textBefore = text();
    setModified(false);
    Q_EMIT committed(m_textBefore);
}

}  // namespace tweenery
