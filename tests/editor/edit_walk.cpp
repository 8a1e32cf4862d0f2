#include "editor/edit_walk.h"

#include "editor/canvas/opacity_calculator.h"
#include "editor/canvas/position_calculator.h"
#include "editor/canvas/rotation_calculator.h"
#include "editor/canvas/scale_calculator.h"
#include "model/element_placement.h"

namespace tweenery::test {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t kMostElements = 24;
constexpr size_t kMostAnimations = 3;
constexpr size_t kStepsRemembered = 12;

QImage filled(int side, const QColor& color) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

}  // namespace

EditWalk::EditWalk(EditorScene& scene, uint32_t seed) : m_scene(scene), m_random(seed) {
    if (!scene.canvas->children().empty()) { return; }
    scene.addImage(u"red.png"_s, filled(20, Qt::red));
    scene.addImage(u"dense@2x.png"_s, filled(50, Qt::green));
    buildTree(project(), "A B G{C D H{E}} F");
    for (const PCElement::Ptr& element : project().canvas()->elementAndAllDescendants()) {
        if (!element->isCanvas()) { element->setPosition({real(0, 200), real(0, 150)}); }
    }
    project().undoManager().removeAllActions();
}

const std::vector<EditWalk::Kind>& EditWalk::kinds() {
    using W = EditWalk;
    static const std::vector<Kind> all = {
        {"field", &W::setField},
        {"field", &W::setField},
        {"look", &W::setLook},
        {"flag", &W::setFlag},
        {"key", &W::keyNumber},
        {"key", &W::keyNumber},
        {"key other", &W::keyOther},
        {"timeline", &W::editTimeline},
        {"calculate", &W::calculate},
        {"calculate", &W::calculate},
        {"add", &W::addElementOrGroup},
        {"remove", &W::removeElement},
        {"move", &W::moveElements},
        {"group", &W::groupElements},
        {"duplicate", &W::duplicateElements},
        {"animation", &W::chooseAnimation},
        {"delete animation", &W::deleteAnimation},
        {"time", &W::chooseTime},
        {"time", &W::chooseTime},
        {"select", &W::select},
        {"select", &W::select},
        {"images", &W::changeImages},
        {"screen", &W::changeScreen},
        {"undo", &W::undo},
        {"undo", &W::undo},
        {"redo", &W::redo},
    };
    return all;
}

void EditWalk::step() {
    const Kind& kind = kinds()[static_cast<size_t>(number(static_cast<int>(kinds().size())))];
    ++m_count;
    m_steps.push_back(kind.name);
    (this->*kind.edit)();
}

void EditWalk::endTurn() {
    project().undoManager().endEvent();
    m_steps.push_back("|");
}

void EditWalk::oneOf(const std::vector<std::function<void()>>& edits) {
    edits[static_cast<size_t>(number(static_cast<int>(edits.size())))]();
}

std::string EditWalk::lastSteps() const {
    std::string text;
    const size_t first = m_steps.size() - std::min(m_steps.size(), kStepsRemembered);
    for (size_t i = first; i < m_steps.size(); ++i) {
        text += std::string(" ") + m_steps[i];
    }
    return text;
}

// What is edited.

QString EditWalk::imageName() {
    const QStringList names{u"red.png"_s, u"dense.png"_s, u"gone.png"_s, QString()};
    return names[number(static_cast<int>(names.size()))];
}

EditTime EditWalk::shown() {
    return project().isSetupMode() ? EditTime::setup() : m_scene.layers->shown();
}

PCElement::Ptr EditWalk::element() {
    auto all = project().canvas()->elementAndAllDescendants();
    const bool mayBeCanvas = all.size() == 1 || chance(30);
    return all[static_cast<size_t>(mayBeCanvas ? 0 : 1 + number(static_cast<int>(all.size()) - 1))];
}

PCElement::Ptr EditWalk::group() {
    const PCElement::Ptr chosen = element();
    return chosen->isGroup() ? chosen : project().canvas();
}

PCElement::Elements EditWalk::elements() {
    PCElement::Elements chosen;
    for (const PCElement::Ptr& each : project().canvas()->elementAndAllDescendants()) {
        if (!each->isCanvas() && chance(5)) { chosen.push_back(each); }
    }
    return chosen;
}

PCKeyedPropertyTimeline::Ptr EditWalk::timeline() {
    const PCElement::Ptr owner = element();
    const auto& types = elementTimelineTypes();
    return owner->timeline(types[static_cast<size_t>(number(static_cast<int>(types.size())))]);
}

// Edits of the setup state.

void EditWalk::setField() {
    const PCElement::Ptr edited = element();
    oneOf({
        [&] { edited->setPosition(point(200)); },
        [&] { edited->setScale(chance(8) ? QPointF(0, 1) : point(2)); },
        [&] { edited->setZRotation(real(0, 6)); },
        [&] { edited->setAnchorPoint(QPointF(real(0, 1), real(0, 1))); },
        [&] {
            edited->setPlacement(ElementPlacement{point(200), real(0, 6), point(2)});
        },
        [&] { edited->setOpacity(real(-0.2, 1.2)); },
    });
}

void EditWalk::setLook() {
    const PCElement::Ptr edited = element();
    if (chance(2)) {
        edited->setImageName(imageName());
    } else {
        edited->setSize({real(0, 80), real(0, 80)});
    }
}

void EditWalk::setFlag() {
    const PCElement::Ptr edited = element();
    if (edited->isCanvas()) { return; }
    oneOf({
        [&] { edited->setHidden(!edited->hidden()); },
        [&] { edited->setLocked(!edited->locked()); },
        [&] { edited->setScalesLocked(!edited->scalesLocked()); },
        [&] { edited->setName(QString(QChar(u'A' + number(6)))); },
        [&] { edited->setExpanded(!edited->expanded()); },
    });
}

// Edits of timelines.

void EditWalk::keyNumber() {
    if (project().isSetupMode()) { return; }
    const PCElement::Ptr edited = element();
    oneOf({
        [&] { edited->setTranslation(point(100), time()); },
        [&] { edited->setScale(point(2), time()); },
        [&] { edited->setZRotation(static_cast<float>(real(0, 6)), time()); },
        [&] { edited->setOpacity(static_cast<float>(real(0, 1)), time()); },
        [&] { edited->setAnchorPoint(QPointF(real(0, 1), real(0, 1)), time()); },
    });
}

void EditWalk::keyOther() {
    if (project().isSetupMode()) { return; }
    if (chance(2)) {
        element()->setImageContents(imageName(), time());
        return;
    }
    if (chance(3)) {
        const auto& animation = project().animationsManager().selectedAnimation();
        animation->masterKeyframesTimeline()->setFloatPropertyValue(0, time());
        return;
    }
    const PCElement::Ptr parent = group();
    QStringList order = PCProject::sortedSubelementIdentifiers(*parent);
    std::shuffle(order.begin(), order.end(), m_random);
    if (chance(4) && !order.isEmpty()) { order.removeLast(); }
    parent->setChildrenZPositions(order, time());
}

void EditWalk::editTimeline() {
    const auto edited = timeline();
    if (project().isSetupMode() || !edited || edited->isEmpty()) { return; }
    const auto keyframe = edited->existingKeyframeAtKeyframeIndex(
        static_cast<size_t>(number(static_cast<int>(edited->keyframesCount()))));
    oneOf({
        [&] { edited->deleteKeyframe(keyframe); },
        [&] { edited->duplicateKeyframe(keyframe); },
        [&] { edited->removeAllKeyframes(); },
        [&] { edited->setRepeatBehavior(PCRepeatBehavior{number(3)}); },
        [&] { keyframe->setEasingMode(PCEasingMode{number(7)}); },
        [&] { keyframe->setInstantTransition(!keyframe->instantTransition()); },
        [&] { edited->moveKeyframes({keyframe}, 7); },
    });
}

void EditWalk::calculate() {
    const PCElement::Elements chosen =
        chance(2) ? m_scene.selection.selectedElements() : elements();
    const bool additive = chance(3);
    oneOf({
        [&] { PCPositionCalculator::updateElements(chosen, additive, point(20), shown()); },
        [&] {
            PCScaleCalculator::updateElements(chosen, additive, point(0.3), shown(), point(100));
        },
        [&] {
            PCRotationCalculator::updateElements(chosen, additive, real(-1, 1), shown(),
                                                 point(100));
        },
        [&] {
            PCOpacityCalculator::updateElementsWithDelta(chosen, additive, real(-0.3, 0.3), shown(),
                                                         {});
        },
    });
}

// Structure.

void EditWalk::addElementOrGroup() {
    if (project().canvas()->elementAndAllDescendants().size() > kMostElements) {
        return removeElement();
    }
    const PCElement::Ptr added = chance(3) ? PCElement::makeGroup() : PCElement::init();
    added->setPosition(point(100));
    added->setSize({real(1, 60), real(1, 60)});
    const PCElement::Ptr parent = group();
    parent->insertSubelement(added, static_cast<size_t>(number(4)));
    added->setImageName(imageName());
}

void EditWalk::removeElement() {
    const PCElement::Ptr removed = element();
    if (removed->isCanvas()) { return; }
    removed->removeFromParentElement();
    if (chance(3)) { removed->setPosition(point(50)); }
}

void EditWalk::moveElements() {
    const PCElement::Elements moved = elements();
    oneOf({
        [&] { project().moveElementsToFront(moved); },
        [&] { project().moveElementsToBack(moved); },
        [&] { project().moveElementsForward(moved); },
        [&] { project().moveElementsBackward(moved); },
        [&] { project().moveItems(moved, group(), number(4)); },
    });
}

void EditWalk::groupElements() {
    const PCElement::Elements chosen = elements();
    if (chance(2)) {
        if (!chosen.empty()) { project().groupElements(chosen); }
        return;
    }
    const PCElement::Ptr group = this->group();
    if (!group->isCanvas()) { project().ungroupElements({group}); }
}

void EditWalk::duplicateElements() {
    if (project().canvas()->elementAndAllDescendants().size() > kMostElements) { return; }
    const PCElement::Ptr source = element();
    if (!source->isCanvas()) { project().duplicateItems({source}, 10); }
}

// Animations and time.

void EditWalk::chooseAnimation() {
    PCAnimationsManager& manager = project().animationsManager();
    if (manager.animations().size() < kMostAnimations) { manager.addNewEmptyAnimation(); }
    const int count = static_cast<int>(manager.animations().size());
    const int chosen = number(count + 1);
    manager.setSelectedAnimation(
        chosen == count ? nullptr : manager.animations()[static_cast<size_t>(chosen)]);
}

void EditWalk::deleteAnimation() {
    PCAnimationsManager& manager = project().animationsManager();
    if (manager.animations().empty() || !chance(5)) { return; }
    manager.deleteAnimation(manager.animations().front());
}

void EditWalk::chooseTime() {
    m_scene.layers->show(chance(6) ? EditTime::setup() : EditTime::at(time()));
}

// Selection, images, screen.

void EditWalk::select() {
    if (chance(3)) { return m_scene.selection.deselectAllElements(); }
    m_scene.selection.selectElements(elements());
}

void EditWalk::changeImages() {
    if (!chance(4)) { return; }
    m_scene.addImage(u"red.png"_s, filled(10 + number(20), Qt::red));
}

void EditWalk::changeScreen() {
    if (!chance(4)) { return; }
    oneOf({
        [&] { project().setBackingScale(chance(2) ? 1 : 2); },
        [&] { m_scene.magnify(chance(2) ? 1 : 2); },
        [&] { project().canvas()->setSize(QSizeF(real(100, 250), real(100, 200))); },
    });
}

// Undo.

void EditWalk::undo() {
    project().undoManager().undo();
}

void EditWalk::redo() {
    project().undoManager().redo();
}

}  // namespace tweenery::test
