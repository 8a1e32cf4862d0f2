// A document that is edited at random: its layers show the model after every turn, what is saved in
// the middle of a gesture is the model of that moment, and so is what is undone, cancelled, or
// opened again.

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <algorithm>
#include <map>

#include "editor/edit_walk.h"
#include "editor/expected_layers.h"
#include "model/document.h"
#include "support/model_recorders.h"
#include "support/test_paths.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

/// The files of a package by their paths: canvas, animations, and of each image set its artwork.
using Files = std::map<QString, QByteArray>;

/// What they must be, all of it encoded anew from what is in memory.
Files encoded(PCProject& project) {
    Files files;
    const auto add = [&files](const QString& path, const Archivable& object) {
        files[path] = KeyedArchiver::archivedDataWithRootObject(object);
    };
    add(u"canvas"_s, *project.canvas());
    for (const PCAnimation::Ptr& animation : project.animationsManager().animations()) {
        const QString path = u"animations/"_s + animation->identifier() + u'/';
        files[path + kAnimationNameFile] = animation->name().toUtf8();
        const auto addTimeline = [&](const QString& name, const PCKeyedPropertyTimeline& timeline) {
            if (!timeline.isEmpty()) { add(path + name, timeline); }
        };
        addTimeline(kAnimationKeyAllFile, *animation->masterKeyframesTimeline());
        for (const auto& [identifier, group] : animation->timelineGroups()) {
            for (const PCPropertyType type : timelineGroupOrder()) {
                addTimeline(identifier.toString() + u'/' + filenameOfTimelineType(type),
                            *group->timeline(type));
            }
        }
    }
    for (const auto& set : project.imageSetManager().allImageSets()) {
        files[u"images/%1/Original.png"_s.arg(set->name())] = set->originalData();
    }
    return files;
}

void collect(const FileWrapper& directory, const QString& path, Files& into) {
    for (const auto& [name, node] : directory.fileWrappers()) {
        if (node->isRegularFile()) { into[path + name] = node->contents(); }
        collect(*node, path + name + u'/', into);
    }
}

Files stored(const QString& package) {
    Files files;
    collect(*readPackage(package), {}, files);
    std::erase_if(files, [](const auto& file) {
        const bool isRendition =
            file.first.startsWith(u"images/"_s) && !file.first.endsWith(u"/Original.png"_s);
        return isRendition || file.first == u"preferences"_s || file.first == u"version"_s;
    });
    return files;
}

/// The paths of what only one of the two has, or each otherwise.
std::string differences(const Files& a, const Files& b) {
    std::vector<Files::value_type> parts;
    std::set_symmetric_difference(a.begin(), a.end(), b.begin(), b.end(),
                                  std::back_inserter(parts));
    std::string paths;
    for (const auto& [path, bytes] : parts) {
        paths += path.toStdString() + '\n';
    }
    return paths;
}

class EditedDocument : public testing::Test {
 protected:
    ScriptedAlerts alerts;
    RecordingLog log;
    PCDocument document{alerts, log};

    PCProject& project() { return *document.project(); }
    UndoManager& undo() { return project().undoManager(); }
    int below(int count) { return std::uniform_int_distribution(0, count - 1)(m_random); }
    /// What undoing is about: replacing artwork is no step.
    Files undoable() {
        Files files = encoded(project());
        std::erase_if(files, [](const auto& file) { return file.first.startsWith(u"images/"_s); });
        return files;
    }
    void takeSnapshot() { m_waiting.push_back({document.snapshot(), encoded(project())}); }
    void writeSnapshots() {
        for (const auto& [snapshot, expected] : std::exchange(m_waiting, {})) {
            document.didWrite(snapshot, writeSnapshot(snapshot.package, m_path), m_path);
            EXPECT_EQ(differences(stored(m_path), expected), "");
            EXPECT_EQ(document.isEdited(), undo().changeCount() != snapshot.changeCount);
        }
    }
    void reopen() {
        takeSnapshot();
        writeSnapshots();
        const Files before = encoded(project());
        EXPECT_TRUE(document.revert());
        EXPECT_EQ(differences(encoded(project()), before), "");
    }
    void gesture(EditWalk& walk);

 private:
    struct Waiting {
        DocumentSnapshot snapshot;
        Files expected;
    };
    std::mt19937 m_random{1};
    QTemporaryDir m_directory{templateOfFastPlaces()};
    QString m_path = m_directory.filePath(u"Walk.tweenery"_s);
    std::vector<Waiting> m_waiting;
};

/// Some events, between two of which the document may be saved.
void EditedDocument::gesture(EditWalk& walk) {
    const Files before = undoable();
    const int64_t count = undo().changeCount();
    UndoManager& undo = this->undo();
    bool isCancelled = false;
    {
        UndoGesture gesture(undo);
        for (int events = 1 + below(4); events > 0; --events) {
            walk.step();
            walk.step();
            walk.endTurn();
            if (below(4) == 0) { takeSnapshot(); }
        }
        isCancelled = below(2) == 0;
        if (isCancelled) { gesture.cancel(); }
    }
    writeSnapshots();
    if (isCancelled) {
        EXPECT_EQ(differences(undoable(), before), "") << "cancelled";
        EXPECT_EQ(undo.changeCount(), count);
    } else if (undo.changeCount() != count) {
        const Files after = undoable();
        EXPECT_TRUE(undo.undo());
        EXPECT_EQ(differences(undoable(), before), "") << "undone";
        EXPECT_TRUE(undo.redo());
        EXPECT_EQ(differences(undoable(), after), "") << "redone";
    }
}

TEST_F(EditedDocument, IsShownSavedAndUndoneAsItIs) {
#ifdef __SANITIZE_ADDRESS__
    constexpr uint32_t kTimesOpened = 2;  // each takes many times as long
#else
    constexpr uint32_t kTimesOpened = 10;
#endif
    constexpr size_t kStepsEach = 2'000;
    for (uint32_t seed = 0; seed < kTimesOpened && !HasFailure(); ++seed) {
        EditorScene scene(document.project());
        EditWalk walk(scene, seed);
        while (walk.steps() < kStepsEach && !HasFailure()) {
            if (below(8) == 0) {
                gesture(walk);
            } else {
                for (int i = below(4); i >= 0; --i) {
                    walk.step();
                }
                walk.endTurn();
            }
            scene.layers->flush();
            SCOPED_TRACE(walk.lastSteps());
            expectLayersToShowTheModel(scene);
        }
        reopen();
    }
}

}  // namespace
}  // namespace tweenery::test
