#pragma once

#include <optional>

#include "editor/inspector/inspector_panes.h"
#include "ui/widgets/text_field.h"

namespace tweenery {

/// A field of the inspector: shows a number, takes a typed one, and steps it by the arrow keys. A
/// text that is none stays, marked, with the reason as its tool tip.
class NumberField : public TextField {
    Q_OBJECT

 public:
    NumberField(InspectorField field, QWidget* parent);

    InspectorField field() const { return m_field; }
    /// In the field's unit; none: the values differ. Does not touch a text that is being changed.
    void setValue(std::optional<double> value);
    bool isRefused() const { return m_isRefused; }
    /// Takes a refused text and its mark away.
    void forgetRefusal();

 Q_SIGNALS:
    void typed(double number);
    void stepped(double delta);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

 private:
    InspectorField m_field;
    std::optional<double> m_value;
    bool m_isRefused = false;

    void take(const QString& text);
    void refuse(const QString& reason);
    void setReason(const QString& reason);
    void showValue();
    void updateColors();
};

}  // namespace tweenery
