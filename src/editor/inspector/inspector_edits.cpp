#include "editor/inspector/inspector_edits.h"

#include <algorithm>
#include <cmath>

#include "editor/canvas/opacity_calculator.h"
#include "editor/canvas/position_calculator.h"
#include "editor/canvas/rotation_calculator.h"
#include "editor/canvas/scale_calculator.h"
#include "editor/canvas/timed_element.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

QString stepName(InspectorField field) {
    switch (field) {
        case InspectorField::CanvasWidth:
        case InspectorField::CanvasHeight:
            return u"Canvas Size"_s;
        case InspectorField::PositionX:
        case InspectorField::PositionY:
            return u"Move"_s;
        case InspectorField::ScaleX:
        case InspectorField::ScaleY:
            return u"Scale"_s;
        case InspectorField::Rotation:
            return u"Rotate"_s;
        case InspectorField::Opacity:
            break;
    }
    return u"Opacity"_s;
}

double radians(double degrees) {
    return degrees * M_PI / 180;
}

QStringList orderAt(const PCElement& parent, EditTime when) {
    const QStringList present = PCProject::sortedSubelementIdentifiers(parent);
    if (when.isSetup()) { return present; }
    return childrenOrderInLine(parent.childrenZPositionsAtTimeInMS(when.timeInMS()), present);
}

}  // namespace

// Steps.

void InspectorEdits::asStep(const QString& name, const std::function<void()>& edit) {
    m_scene.willEdit();
    UndoManager& undoManager = m_scene.project.undoManager();
    undoManager.endEvent();
    const int64_t before = undoManager.changeCount();
    const UndoGesture gesture(undoManager);
    edit();
    if (undoManager.changeCount() != before) { undoManager.setActionName(name); }
}

void InspectorEdits::perform(const QString& name, const std::function<void()>& edit) {
    if (!m_drag) { return asStep(name, edit); }
    edit();
    m_scene.project.undoManager().setActionName(name);
}

void InspectorEdits::beginDrag() {
    if (m_drag) { return; }
    m_scene.willEdit();
    UndoManager& undoManager = m_scene.project.undoManager();
    undoManager.endEvent();
    m_drag.emplace(m_scene.target(), undoManager);
}

void InspectorEdits::endDrag() {
    m_drag.reset();
}

void InspectorEdits::cancelDrag() {
    if (!m_drag) { return; }
    m_drag->gesture.cancel();
    m_drag.reset();
}

// Numbers.

void InspectorEdits::add(InspectorField field, double delta, const EditTarget& target) {
    const PCElement::Elements elements = targets(target);
    const QPointF anchor = m_scene.project.eventAnchorPoint();
    PCElement& canvas = *m_scene.project.canvas();
    switch (field) {
        case InspectorField::CanvasWidth:
            return canvas.setSize(canvas.size() + QSizeF(delta, 0));
        case InspectorField::CanvasHeight:
            return canvas.setSize(canvas.size() + QSizeF(0, delta));
        case InspectorField::PositionX:
            return PCPositionCalculator::updateElements(elements, target.additive, {delta, 0},
                                                        target.when);
        case InspectorField::PositionY:
            return PCPositionCalculator::updateElements(elements, target.additive, {0, delta},
                                                        target.when);
        case InspectorField::ScaleX:
            return PCScaleCalculator::updateElements(elements, target.additive, {delta / 100, 0},
                                                     target.when, anchor);
        case InspectorField::ScaleY:
            return PCScaleCalculator::updateElements(elements, target.additive, {0, delta / 100},
                                                     target.when, anchor);
        case InspectorField::Rotation:  // the calculator takes away
            return PCRotationCalculator::updateElements(elements, target.additive, -radians(delta),
                                                        target.when, anchor);
        case InspectorField::Opacity:
            return PCOpacityCalculator::updateElementsWithDelta(elements, target.additive,
                                                                delta / 100, target.when, anchor);
    }
}

bool InspectorEdits::goesOn(const Series& series) const {
    constexpr double kPause = 1;
    return m_series && m_series->field == series.field && m_series->target == series.target &&
           m_series->elements == series.elements &&
           m_series->changeCount == m_scene.project.undoManager().changeCount() &&
           series.time - m_series->time < kPause;
}

void InspectorEdits::step(InspectorField field, double delta) {
    const QString name = stepName(field);
    if (m_drag) {
        return perform(name, [&] { add(field, delta, target()); });
    }
    m_scene.willEdit();
    UndoManager& undoManager = m_scene.project.undoManager();
    undoManager.endEvent();
    Series next{field, target(), targets(target()), {}, 0, m_scene.clock.now()};
    if (goesOn(next)) {
        next.deltas = std::move(m_series->deltas);
        undoManager.undo();
    }
    // What is cut at a bound on the way there has to be cut again, so that a way back begins there.
    const bool isSameWay = !next.deltas.empty() && (next.deltas.back() < 0) == (delta < 0);
    isSameWay ? void(next.deltas.back() += delta) : next.deltas.push_back(delta);
    const int64_t before = undoManager.changeCount();
    asStep(name, [&] {
        for (const double each : next.deltas) {
            add(field, each, next.target);
        }
    });
    next.changeCount = undoManager.changeCount();
    m_series.reset();
    if (next.changeCount != before) { m_series = std::move(next); }
}

void InspectorEdits::set(InspectorField field, double value) {
    perform(stepName(field), [&] {
        const EditTarget to = target();
        const PCElement::Elements elements = m_scene.selection.selectedElements();
        PCElement& canvas = *m_scene.project.canvas();
        switch (field) {
            case InspectorField::CanvasWidth:
                return canvas.setSize({value, canvas.size().height()});
            case InspectorField::CanvasHeight:
                return canvas.setSize({canvas.size().width(), value});
            case InspectorField::PositionX:
                return PCPositionCalculator::setXPosition(static_cast<float>(value), elements,
                                                          to.when);
            case InspectorField::PositionY:
                return PCPositionCalculator::setYPosition(static_cast<float>(value), elements,
                                                          to.when);
            case InspectorField::ScaleX:
                return PCScaleCalculator::setXScale(value / 100, elements, to.when);
            case InspectorField::ScaleY:
                return PCScaleCalculator::setYScale(value / 100, elements, to.when);
            case InspectorField::Rotation:
                return PCRotationCalculator::setRotation(radians(value), elements, to.when);
            case InspectorField::Opacity:
                return PCOpacityCalculator::updateElementsWithValue(
                    targets(to), to.additive, value / 100, to.when,
                    m_scene.project.eventAnchorPoint());
        }
    });
}

void InspectorEdits::setOpacity(double opacity) {
    const EditTarget to = target();
    const PCElement::Elements elements = targets(to);
    if (!to.additive) { return set(InspectorField::Opacity, opacity * 100); }
    if (elements.empty()) { return; }
    const double present = TimedElement(*elements.front(), to.when).opacity();
    perform(stepName(InspectorField::Opacity),
            [&] { add(InspectorField::Opacity, (opacity - present) * 100, to); });
}

// Switches and buttons.

void InspectorEdits::setScalesLocked(bool areLocked) {
    asStep(areLocked ? u"Lock Scales"_s : u"Unlock Scales"_s, [&] {
        for (const PCElement::Ptr& element : m_scene.selection.selectedElements()) {
            element->setScalesLocked(areLocked);
        }
    });
}

void InspectorEdits::swapCanvasSize() {
    asStep(u"Swap Width and Height"_s, [this] {
        PCElement& canvas = *m_scene.project.canvas();
        canvas.setSize(canvas.size().transposed());
    });
}

void InspectorEdits::createKeyframes(InspectorPaneKind pane) {
    m_scene.willEdit();
    const EditTime when = target().when;
    if (when.isSetup()) { return; }
    PCElement::Elements elements = m_scene.selection.selectedElements();
    if (elements.empty()) { elements.push_back(m_scene.project.canvas()); }
    asStep(u"Create Keyframe"_s, [&] {
        for (const PCElement::Ptr& element : elements) {
            for (const PCPropertyType type : keyedTypes(pane)) {
                if (const auto timeline = element->timeline(type)) {
                    timeline->setExistingValueAtTimeInMS(when.timeInMS());
                }
            }
        }
    });
}

void InspectorEdits::setImage(const QString& name) {
    const PCElement::Ptr element = m_scene.selection.firstSelectedElement();
    if (!element || element->isGroup()) { return; }
    asStep(u"Image"_s, [&] {
        const EditTime when = target().when;
        if (when.isSetup()) { return element->setImageName(name); }
        element->setImageContents(name, when.timeInMS());
    });
}

void InspectorEdits::setImportedImage(const std::function<QString()>& import) {
    asStep(u"Image"_s, [&] {
        const QString name = import();
        if (!name.isEmpty()) { setImage(name); }
    });
}

// Z-positions.

bool InspectorEdits::moveZPosition(const PCElement::Ptr& parent, const Identifier& child,
                                   size_t row) {
    m_scene.willEdit();
    const EditTime when = target().when;
    if (when.isSetup()) { return false; }
    QStringList order = orderAt(*parent, when);
    const qsizetype count = order.size();
    const qsizetype from = order.indexOf(child.toString());
    if (from < 0) { return false; }
    qsizetype to = count - std::min(static_cast<qsizetype>(row), count);
    if (from < to) { --to; }
    if (to == from) { return false; }
    order.move(from, to);
    asStep(u"Z-Position"_s, [&] { parent->setChildrenZPositions(order, when.timeInMS()); });
    return true;
}

PCElement::Elements zPositionRows(PCProject& project, const PCElement& parent, EditTime when) {
    PCElement::Elements rows;
    const QStringList order = orderAt(parent, when);
    for (auto identifier = order.rbegin(); identifier != order.rend(); ++identifier) {
        if (auto element = project.elementForIdentifier(Identifier(*identifier))) {
            rows.push_back(std::move(element));
        }
    }
    return rows;
}

}  // namespace tweenery
