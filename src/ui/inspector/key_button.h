#pragma once

#include <QAbstractButton>

#include "editor/inspector/inspector_values.h"

namespace tweenery {

/// The round button of a pane that creates keyframes. Tells by a ring that the property is
/// animated, by a diamond that a keyframe stands at the playhead. Only the circle reacts.
class KeyButton : public QAbstractButton {
    Q_OBJECT

 public:
    KeyButton(InspectorPaneKind pane, QWidget* parent);

    void setState(KeyState state);
    /// Off in setup mode, when it has no tool tip either.
    void setInAnimation(bool isInAnimation);
    /// The middle of its circle, which is not that of the widget's room for the diamond alone.
    static QPoint centreFromTopLeft();

 protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& point) const override;
    void nextCheckState() override {}
    bool event(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

 private:
    InspectorPaneKind m_pane;
    KeyState m_state = KeyState::NotAnimated;
    bool m_isUnderPointer = false;

    QColor fill() const;
    void setUnderPointer(bool isUnder);
};

}  // namespace tweenery
