#pragma once

#include <QLineEdit>

namespace tweenery {

/// A field of one line whose text stands in its middle, as a dialog's or as a part of a row. Escape
/// leaves it as it was, Return and the loss of focus take what was typed.
class TextField : public QLineEdit {
    Q_OBJECT

 public:
    explicit TextField(QWidget* parent = nullptr);

    /// What Escape goes back to, and what shows unless the user is changing the text.
    void setValueText(const QString& text);
    /// Takes what was typed so far; the keyboard stays.
    void commit();

 Q_SIGNALS:
    /// The user changed the text and is done; never for a field that was only visited.
    void committed(const QString& text);
    /// The user left the field by Return or Escape, after committed().
    void left();

 protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

 private:
    QString m_textBefore;
    bool m_isEditing = false;
};

}  // namespace tweenery
