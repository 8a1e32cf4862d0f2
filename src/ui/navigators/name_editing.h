#pragma once

#include <QAbstractItemView>
#include <QLineEdit>
#include <QStyledItemDelegate>

namespace tweenery {

/// The field in which the name of a row is typed.
class NameEditor : public QLineEdit {
    Q_OBJECT

 public:
    explicit NameEditor(QWidget* parent);

 protected:
    bool event(QEvent* event) override;
    /// No key goes on to the window, where it would be a command.
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

/// The field that is open in a list; null without one.
NameEditor* openNameEditor(const QAbstractItemView& list);

/// Gives rows their height and, while a name is typed, the field; lists say where it lies. What was
/// typed goes to the model when the field is left, and nowhere by Escape.
class NameDelegate : public QStyledItemDelegate {
    Q_OBJECT

 public:
    /// Where the names of the rows begin, in points from the row's left.
    using TextLeft = std::function<int(const QModelIndex& index)>;
    NameDelegate(TextLeft textLeft, QObject* parent);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
    /// Checking is the list's own.
    bool editorEvent(QEvent*, QAbstractItemModel*, const QStyleOptionViewItem&,
                     const QModelIndex&) override {
        return false;
    }

 private:
    TextLeft m_textLeft;
};

}  // namespace tweenery
