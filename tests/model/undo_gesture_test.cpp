// Gestures of random edits: cancelled, undone and redone, the package has to be the one that was.

#include <gtest/gtest.h>

#include <map>
#include <random>

#include "base/user_defaults.h"
#include "model/element_placement.h"
#include "support/model_builder.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

/// Every file of the tree with its bytes.
using Files = std::map<QString, QByteArray>;

void collectFiles(const FileWrapper& directory, const QString& path, Files& into) {
    for (const auto& [name, node] : directory.fileWrappers()) {
        if (node->isRegularFile()) { into[path + name] = node->contents(); }
        collectFiles(*node, path + name + u'/', into);
    }
}

std::string differences(const Files& now, const Files& before) {
    std::string text;
    for (const auto& [path, bytes] : before) {
        const auto found = now.find(path);
        if (found == now.end()) { text += "gone: " + path.toStdString() + '\n'; }
        if (found != now.end() && found->second != bytes) {
            text += "other: " + path.toStdString() + '\n';
        }
    }
    for (const auto& [path, bytes] : now) {
        if (!before.contains(path)) { text += "new: " + path.toStdString() + '\n'; }
    }
    return text;
}

/// A project with two animations, and whatever a user may do to it.
class RandomEdits {
 public:
    explicit RandomEdits(unsigned seed) : m_random(seed) {
        UserDefaults::useMemory();
        buildTree(*m_project, "A B G{C H{D E}} I+{J K}");
        for (const QString& name : {u"Bounce"_s, u"Slide"_s}) {
            m_animations.push_back(selectNewAnimation(*m_project, name));
        }
    }
    PCProject& project() { return *m_project; }
    UndoManager& undo() { return m_project->undoManager(); }
    int below(int count) { return std::uniform_int_distribution(0, count - 1)(m_random); }

    Files package() const {
        Files files;
        collectFiles(*m_project->fileWrapper(), {}, files);
        return files;
    }
    void selectAnother() {
        const int which = below(3);
        m_project->animationsManager().setSelectedAnimation(
            which == 2 ? nullptr : m_animations[static_cast<size_t>(which)]);
        undo().endEvent();
    }
    /// Some events, which touch the same elements as a drag does, or others.
    void gesture() {
        const PCElement::Ptr dragged = anyElement();
        const int kinds = below(3);
        for (int events = 1 + below(6); events > 0; --events) {
            const PCElement::Ptr element = below(3) == 0 ? anyElement() : dragged;
            if (kinds != 1) { set(*element); }
            if (kinds != 0) { key(*element); }
            if (below(4) == 0) { restructure(); }
            if (below(4) == 0) { changeKeyframes(*element); }
            undo().endEvent();
        }
    }

 private:
    std::mt19937 m_random;
    PCProject::Ptr m_project = PCProject::init();
    Subscription m_told = m_project->animationsManager().addChangeListener(m_project.get());
    std::vector<PCAnimation::Ptr> m_animations;

    double number() { return std::uniform_real_distribution(-2.0, 2.0)(m_random); }
    QPointF point() { return {number(), number()}; }
    PCElement::Ptr anyElement(bool isGroup = false) {
        auto all = m_project->canvas()->elementAndAllDescendants();
        if (isGroup) {
            std::erase_if(all, [](const auto& element) { return !element->isGroup(); });
        } else if (all.size() > 1) {
            all.erase(all.begin());
        }
        return all[static_cast<size_t>(below(static_cast<int>(all.size())))];
    }

    void set(PCElement& element) {
        switch (below(13)) {
            case 0:
                return element.setPosition(point());
            case 1:
                return element.setZRotation(number());
            case 2:
                return element.setScale(point());
            case 3:
                return element.setAnchorPoint(point());
            case 4:
                return element.setOpacity(number());
            case 5:
                return element.setSize({number(), number()});
            case 6:
                return element.setName(QString(QChar(u'A' + below(4))));
            case 7:
                return element.setImageName(below(2) == 0 ? u"gone.png"_s : QString());
            case 8:
                return element.setHidden(!element.hidden());
            case 9:
                return element.setLocked(!element.locked());
            case 10:
                return element.setExpanded(!element.expanded());
            case 11:
                return element.setScalesLocked(!element.scalesLocked());
            default:
                return element.setPlacement({point(), number(), point()});
        }
    }

    void key(PCElement& element) {
        if (m_project->isSetupMode()) { return; }
        const int32_t time = 100 * below(5);
        switch (below(6)) {
            case 0:
                element.setTranslation(point(), time);
                return;
            case 1:
                element.setScale(point(), time);
                return;
            case 2:
                element.setAnchorPoint(point(), time);
                return;
            case 3:
                element.setImageContents(u"%1.png"_s.arg(below(3)), time);
                return;
            case 4:
                element.setChildrenZPositions(PCProject::sortedSubelementIdentifiers(element),
                                              time);
                return;
            default:
                m_project->animationsManager()
                    .selectedAnimation()
                    ->masterKeyframesTimeline()
                    ->setFloatPropertyValue(0, time);
        }
    }

    void changeKeyframes(PCElement& element) {
        const auto timeline = element.translationXTimeline();
        if (!timeline || timeline->isEmpty()) { return; }
        const auto keyframe = timeline->existingKeyframeAtKeyframeIndex(
            static_cast<size_t>(below(static_cast<int>(timeline->keyframesCount()))));
        switch (below(6)) {
            case 0:
                return timeline->deleteKeyframe(keyframe);
            case 1:
                timeline->duplicateKeyframe(keyframe);
                return;
            case 2:
                return keyframe->setEasingMode(static_cast<PCEasingMode>(below(7)));
            case 3:
                return keyframe->setInstantTransition(below(2) == 0);
            case 4:
                return timeline->setRepeatBehavior(static_cast<PCRepeatBehavior>(below(3)));
            default:
                return timeline->moveKeyframes({keyframe}, below(200));
        }
    }

    void restructure() {
        const PCElement::Ptr element = anyElement();
        const bool isFull = m_project->canvas()->elementAndAllDescendants().size() > 40;
        if (isFull || element == m_project->canvas()) {
            while (m_project->canvas()->children().size() > 1) {
                m_project->canvas()->removeSubelementAtIndex(0);
            }
        }
        if (!element->parentElement()) { return; }
        switch (below(9)) {
            case 0:
                return m_project->moveItems({element}, anyElement(true), below(3));
            case 1:
                return m_project->groupElements({element, anyElement()});
            case 2:
                return m_project->ungroupElements({anyElement(true)});
            case 3:
                m_project->duplicateItems({element}, 50);
                return;
            case 4:
                return m_project->moveElementsForward({element});
            case 5:
                return m_project->moveElementsBackward({element});
            case 6:
                return element->removeFromParentElement();
            case 7:
                return m_project->moveElementsToFront({element});
            default:
                return anyElement(true)->insertSubelement(PCElement::init(), 0);
        }
    }
};

TEST(Gestures, OfAnyEditsCancelUndoAndRedoToTheSamePackage) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        RandomEdits edits(seed);
        for (int i = 0; i < 50; ++i) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", gesture " + std::to_string(i));
            if (i % 10 == 0) { edits.selectAnother(); }
            const Files before = edits.package();
            const int64_t count = edits.undo().changeCount();
            if (edits.below(2) == 0) {
                UndoGesture gesture(edits.undo());
                edits.gesture();
                gesture.cancel();
                ASSERT_EQ(differences(edits.package(), before), "") << "cancelled";
                ASSERT_EQ(edits.undo().changeCount(), count);
                continue;
            }
            {
                const UndoGesture gesture(edits.undo());
                edits.gesture();
                if (edits.below(4) == 0) { edits.package(); }
                edits.gesture();
            }
            if (edits.undo().changeCount() == count) { continue; }
            const Files after = edits.package();
            ASSERT_TRUE(edits.undo().undo());
            ASSERT_EQ(differences(edits.package(), before), "") << "undone";
            ASSERT_TRUE(edits.undo().redo());
            ASSERT_EQ(differences(edits.package(), after), "") << "redone";
            if (edits.below(4) == 0) { edits.undo().undo(); }
        }
        while (edits.undo().undo()) {}
    }
}

}  // namespace
}  // namespace tweenery::test
