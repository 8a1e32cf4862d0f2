#pragma once

#include <QWidget>

#include "editor/document_window_controller.h"
#include "editor/inspector/inspector_values.h"
#include "ui/inspector/key_button.h"
#include "ui/inspector/number_field.h"
#include "ui/inspector/scrubby_label.h"

namespace tweenery {

/// One pane of the inspector, as wide as its list: draws its background and shows the values that
/// it is given. What the user does goes to the controller's inspector edits.
class PropertyPane : public QWidget {
    Q_OBJECT

 public:
    /// The controller outlives it. Without a key button for the size of the canvas.
    PropertyPane(InspectorPaneKind kind, int height, PCDocumentWindowController& controller);

    InspectorPaneKind kind() const { return m_kind; }
    const std::vector<NumberField*>& fields() const { return m_fields; }
    /// Of the elements that are selected now.
    virtual void showValues(const InspectorValues& values, EditTime when);

 Q_SIGNALS:
    /// The user is done with a field, and the keyboard goes to the canvas.
    void left();
    /// Something may show another value.
    void edited();

 protected:
    PCDocumentWindowController& controller() { return m_controller; }
    /// For an edit by anything but a field: what was being typed is taken first.
    InspectorEdits& edits();
    /// A label and a field whose upper edge is at `top`.
    void addField(InspectorField field, int top);
    /// Connects dragBegan() and dragEnded() of a control.
    template <class Control>
    void addDrag(Control* control);
    void paintEvent(QPaintEvent* event) override;

 private:
    InspectorPaneKind m_kind;
    PCDocumentWindowController& m_controller;
    KeyButton* m_keyButton = nullptr;
    std::vector<NumberField*> m_fields;
    std::vector<ScrubbyLabel*> m_labels;

    void setUpField(NumberField& field);
};

template <class Control>
void PropertyPane::addDrag(Control* control) {
    connect(control, &Control::dragBegan, this, [this] { edits().beginDrag(); });
    connect(control, &Control::dragEnded, this, [this](bool isCancelled) {
        isCancelled ? edits().cancelDrag() : edits().endDrag();
        Q_EMIT edited();
    });
}

/// All of them, in the order of their kinds. Nobody's children yet.
std::vector<std::unique_ptr<PropertyPane>> makePropertyPanes(
    PCDocumentWindowController& controller);

}  // namespace tweenery
