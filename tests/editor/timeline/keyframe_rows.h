#pragma once

#include "editor/controller_scene.h"

namespace tweenery::test {

/// Rows of one animation as a table of tests writes them: "A x 0:0 500:10", the element, the
/// property (x and y, w and h for scales, rotation, opacity, or "- K" for the master keyframes) and
/// the keyframes as keysText() has them.
class KeyframeRows : public ControllerScene {
 public:
    KeyframeCommands& commands = controller.keyframeCommands();
    PCKeyframeManager& keyframes = controller.keyframeManager();
    PCProjectTimeManager& time = controller.timeManager();
    PCAnimation::Ptr animation;

    /// The elements A, B and the group G with C and D, of which B has another setup state.
    explicit KeyframeRows(const QStringList& rows = {}) : ControllerScene("A B G{C D}") {
        const auto b = named(*project, QStringLiteral("B"));
        b->setScale({2, 2});
        b->setZRotation(1);
        b->setOpacity(0.5);
        animation = selectNewAnimation(*project, QStringLiteral("walk"));
        for (const QString& row : rows) {
            const auto timeline = timelineOf(row);
            PCKeyedPropertyTimeline::Keyframes all;  // of which two may be of one time
            for (const QString& key : row.section(u' ', 2).split(u' ')) {
                all.push_back(
                    timelineWithKeys(nullptr, timeline->propertyType(), key.toLatin1().constData())
                        ->existingKeyframeAtKeyframeIndex(0));
            }
            timeline->setKeyframes(all);
        }
        time.setZoomInPointsPerMillisecond(0.15F);  // ticks 125 ms apart
        project->undoManager().removeAllActions();
    }

    /// Of a text that begins with an element and a property.
    PCKeyedPropertyTimeline::Ptr timelineOf(const QString& row) {
        const QString property = row.section(u' ', 1, 1);
        if (property == u'K') { return animation->masterKeyframesTimeline(); }
        for (int32_t type = 0; type < kPropertyTypeCount; ++type) {
            if (property != QChar(kLetters[type])) { continue; }
            return named(*project, row.section(u' ', 0, 0))->timeline(PCPropertyType(type));
        }
        ADD_FAILURE() << qPrintable(row);
        return nullptr;
    }
    std::string keysOf(const QString& row) { return keysText(*timelineOf(row)); }
    /// "A x 0 500, B r 0": those of the times given; a time that occurs twice selects both.
    void selectKeys(const QString& selection) {
        for (const auto& keyframe : keysAt(selection)) {
            keyframes.selectKeyframe(keyframe);
        }
    }
    PCKeyedPropertyTimeline::Keyframes keysAt(const QString& selection) {
        PCKeyedPropertyTimeline::Keyframes found;
        for (const QString& row : selection.split(QStringLiteral(", "), Qt::SkipEmptyParts)) {
            const auto timeline = timelineOf(row);
            for (const QString& at : row.split(u' ').mid(2)) {
                const auto here = timeline->keyframesBetweenStartTime(at.toInt(), at.toInt());
                EXPECT_FALSE(here.empty()) << qPrintable(at);
                found.insert(found.end(), here.begin(), here.end());
            }
        }
        return found;
    }
    /// What is selected, row by row, in the form that selectKeys() takes.
    std::string selectedKeys() {
        QStringList texts;
        for (const RowKeyframes& row : keyframesByRow(keyframes.selectedKeyframes())) {
            QString text = isMasterTimeline(*row.timeline)
                               ? QStringLiteral("- K")
                               : row.timeline->element()->name() + u' ' + letterOf(*row.timeline);
            for (const auto& keyframe : row.keyframes) {
                text += u' ' + QString::number(keyframe->timeInMS());
            }
            texts << text;
        }
        texts.sort();
        return texts.join(QStringLiteral(", ")).toStdString();
    }
    /// All rows that have keyframes, with their loop modes.
    std::string allKeys() {
        std::string text;
        for (const auto& timeline : timelinesWithKeyframes(*project)) {
            text += timeline->element()->name().toStdString() + ' ' +
                    letterOf(*timeline).toLatin1() + ' ' + keysText(*timeline) + " loop" +
                    std::to_string(timeline->repeatBehavior()) + '\n';
        }
        return text + "K " + keysText(*animation->masterKeyframesTimeline());
    }

 private:
    static constexpr char16_t kLetters[] = u"iorz..whxy..";  // by PCPropertyType

    static QChar letterOf(const PCKeyedPropertyTimeline& timeline) {
        return kLetters[timeline.propertyType()];
    }
};

}  // namespace tweenery::test
