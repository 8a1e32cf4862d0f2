#pragma once

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "base/number_text.h"
#include "model/project.h"
#include "model/properties/easing.h"

namespace tweenery::test {

/// The setup state of an element made for a test.
struct Look {
    QPointF position{0, 0};
    QPointF scale{1, 1};
    double rotation = 0;  // radians
    QSizeF size{10, 10};
    QPointF anchor{0.5, 0.5};
    double opacity = 1;
};

/// Inserts a new element in front of the parent's children. Leaves no undo step.
PCElement::Ptr addElement(const PCElement::Ptr& parent, const QString& name, const Look& look = {});
PCElement::Ptr addGroup(const PCElement::Ptr& parent, const QString& name, const Look& look = {});

/// A new animation that is selected. Leaves no undo step.
PCAnimation::Ptr selectNewAnimation(PCProject& project, const QString& name);

/// Fills the canvas from the notation of treeText(): elements back to front, a group's children in
/// braces, a plus behind the name of an expanded group: "A G{B C} H+{D}".
void buildTree(PCProject& project, std::string_view notation);
/// The children of `root` in that notation; a blank in a name shows as "_".
std::string treeText(const PCElement& root);
/// The element of that name below the canvas.
PCElement::Ptr named(PCProject& project, const QString& name);
PCElement::Elements allNamed(PCProject& project, const QStringList& names);

/// Every stored field of the tree, numbers with all their digits: equal only for equal trees.
std::string exactState(const PCElement& root);
/// "time:stored value" for each keyframe, with "!" when it is instant, the easing in parentheses
/// when it is not linear, and "k" when Key All set it.
std::string keysText(const PCKeyedPropertyTimeline& timeline);
/// A timeline with the keyframes in that notation; their values are stored as they stand.
PCKeyedPropertyTimeline::Ptr timelineWithKeys(const PCElement::Ptr& element, PCPropertyType type,
                                              const char* keys,
                                              PCRepeatBehavior repeat = PCRepeatBehaviorNever);

/// Walks what was done back and forth: the state after every undo and redo has to be the one that
/// was seen when it was done.
class UndoWalk {
 public:
    UndoWalk(PCProject& project, std::function<std::string()> state);
    /// Does one edit. Makes it one step; without a step nothing may have changed.
    void edit(const std::function<void()>& change);
    /// Undoes everything, redoes everything, and undoes it again.
    void check();

 private:
    PCProject& m_project;
    std::function<std::string()> m_state;
    std::vector<std::string> m_states;

    void undoAll();
    void redoAll();
};

namespace detail {

inline PCElement::Ptr add(const PCElement::Ptr& parent, PCElement::Ptr element, const QString& name,
                          const Look& look) {
    element->setName(name);
    element->setSize(look.size);
    element->setAnchorPoint(look.anchor);
    element->setPosition(look.position);
    element->setScale(look.scale);
    element->setZRotation(look.rotation);
    element->setOpacity(look.opacity);
    EditContext* project = parent->project();
    if (project) { project->undoManager().disableUndoRegistration(); }
    parent->insertSubelement(element, parent->children().size());
    if (project) { project->undoManager().enableUndoRegistration(); }
    return element;
}

// Reads elements up to the closing brace or the end.
inline void buildChildren(const PCElement::Ptr& parent, std::string_view& text) {
    while (!text.empty() && text.front() != '}') {
        if (text.front() == ' ') {
            text.remove_prefix(1);
            continue;
        }
        const size_t length = std::min(text.find_first_of(" +{}"), text.size());
        const QString name = QString::fromLatin1(text.data(), static_cast<qsizetype>(length));
        text.remove_prefix(length);
        const bool isExpanded = text.starts_with('+');
        if (isExpanded) { text.remove_prefix(1); }
        const bool isGroup = text.starts_with('{');
        const auto element = isGroup ? addGroup(parent, name) : addElement(parent, name);
        if (!isGroup) { continue; }
        text.remove_prefix(1);
        buildChildren(element, text);
        text.remove_prefix(1);
        element->setExpanded(isExpanded);
    }
}

inline std::string numbers(std::initializer_list<double> values) {
    std::string text;
    for (const double value : values) {
        text += ' ' + shortestText(value);
    }
    return text;
}

}  // namespace detail

inline PCElement::Ptr addElement(const PCElement::Ptr& parent, const QString& name,
                                 const Look& look) {
    return detail::add(parent, PCElement::init(), name, look);
}

inline PCElement::Ptr addGroup(const PCElement::Ptr& parent, const QString& name,
                               const Look& look) {
    return detail::add(parent, PCElement::makeGroup(), name, look);
}

inline PCAnimation::Ptr selectNewAnimation(PCProject& project, const QString& name) {
    const UndoRegistrationPause pause(project.undoManager());
    PCAnimationsManager& manager = project.animationsManager();
    PCAnimation::Ptr animation = manager.renameAnimation(manager.addNewEmptyAnimation(), name);
    manager.setSelectedAnimation(animation);
    return animation;
}

inline void buildTree(PCProject& project, std::string_view notation) {
    const UndoRegistrationPause pause(project.undoManager());
    detail::buildChildren(project.canvas(), notation);
}

inline std::string treeText(const PCElement& root) {
    std::string text;
    for (const PCElement::Ptr& child : root.children()) {
        if (!text.empty()) { text += ' '; }
        text += QString(child->name()).replace(u' ', u'_').toStdString();
        if (child->expanded()) { text += '+'; }
        if (child->isGroup()) { text += '{' + treeText(*child) + '}'; }
    }
    return text;
}

inline PCElement::Ptr named(PCProject& project, const QString& name) {
    for (const PCElement::Ptr& element : project.canvas()->elementAndAllDescendants()) {
        if (element->name() == name) { return element; }
    }
    ADD_FAILURE() << "no element is named " << name.toStdString();
    return nullptr;
}

inline PCElement::Elements allNamed(PCProject& project, const QStringList& names) {
    PCElement::Elements elements;
    for (const QString& name : names) {
        elements.push_back(named(project, name));
    }
    return elements;
}

inline std::string exactState(const PCElement& root) {
    std::string text = root.identifier().toString().toStdString() + ' ' + root.name().toStdString();
    text +=
        detail::numbers({root.position().x(), root.position().y(), root.scale().x(),
                         root.scale().y(), root.zRotation(), root.opacity(), root.anchorPoint().x(),
                         root.anchorPoint().y(), root.size().width(), root.size().height()});
    text += ' ' + root.imageName().toStdString();
    for (const bool flag :
         {root.hidden(), root.locked(), root.expanded(), root.scalesLocked(), root.isGroup()}) {
        text += flag ? '1' : '0';
    }
    for (const PCElement::Ptr& child : root.children()) {
        text += "\n(" + exactState(*child) + ')';
    }
    return text;
}

inline std::string keysText(const PCKeyedPropertyTimeline& timeline) {
    std::string text;
    for (size_t i = 0; i < timeline.keyframesCount(); ++i) {
        const KeyframeRecord record = timeline.recordOfKeyframe(i);
        if (i > 0) { text += ' '; }
        text += std::to_string(record.timeInMS) + ':' + describeValue(record.value).toStdString();
        if (record.instantTransition) { text += '!'; }
        text += easingSuffix(record.easingMode).toStdString();
        if (record.keyall) { text += 'k'; }
    }
    return text;
}

inline PCKeyedPropertyTimeline::Ptr timelineWithKeys(const PCElement::Ptr& element,
                                                     PCPropertyType type, const char* keys,
                                                     PCRepeatBehavior repeat) {
    auto timeline = PCKeyedPropertyTimeline::initForElement(element, type);
    for (const QString& text : QString::fromLatin1(keys).split(u' ', Qt::SkipEmptyParts)) {
        static const QRegularExpression pattern(
            QStringLiteral("^(\\d+):([-.e\\d]+)(!?)(?:\\((\\w+)\\))?(k?)$"));
        const auto match = pattern.match(text);
        EXPECT_TRUE(match.hasMatch()) << text.toStdString();
        const auto keyframe = timeline->setStoredPropertyValue(match.captured(2).toFloat(),
                                                               match.captured(1).toInt());
        keyframe->setInstantTransition(!match.captured(3).isEmpty());
        keyframe->setEasingMode(easingModeFromString(match.captured(4)));
        keyframe->setKeyall(!match.captured(5).isEmpty());
    }
    timeline->setRepeatBehavior(repeat);
    return timeline;
}

inline UndoWalk::UndoWalk(PCProject& project, std::function<std::string()> state)
    : m_project(project), m_state(std::move(state)), m_states{m_state()} {
    m_project.undoManager().removeAllActions();
}

inline void UndoWalk::edit(const std::function<void()>& change) {
    const int64_t count = m_project.undoManager().changeCount();
    change();
    m_project.undoManager().endEvent();
    const bool isStep = m_project.undoManager().changeCount() != count;
    if (isStep) { m_states.push_back(m_state()); }
    EXPECT_EQ(m_state(), m_states.back()) << "changed without a step";
}

inline void UndoWalk::check() {
    undoAll();
    redoAll();
    undoAll();
}

inline void UndoWalk::undoAll() {
    for (size_t i = m_states.size() - 1; i > 0; --i) {
        EXPECT_TRUE(m_project.undoManager().canUndo()) << "before undoing edit " << i;
        m_project.undoManager().undo();
        EXPECT_EQ(m_state(), m_states[i - 1]) << "after undoing edit " << i;
    }
    EXPECT_FALSE(m_project.undoManager().canUndo());
}

inline void UndoWalk::redoAll() {
    for (size_t i = 1; i < m_states.size(); ++i) {
        m_project.undoManager().redo();
        EXPECT_EQ(m_state(), m_states[i]) << "after redoing edit " << i;
    }
    EXPECT_FALSE(m_project.undoManager().canRedo());
}

}  // namespace tweenery::test
