// How long a save that writes on another thread holds the thread that edits a big project: once to
// take the snapshot, once to learn what is on disk. Beside them the same save in place.

#include <benchmark/benchmark.h>

#include "bench/big_project.h"
#include "bench/package_files.h"
#include "bench/rounds.h"
#include "model/document.h"

using namespace Qt::StringLiterals;

namespace tweenery::bench {
namespace {

class SilentAlerts : public AlertPort {
    AlertAnswer runModal(const Alert&) override { return {}; }
};

enum Edit { OneKeyframe, EverythingInAnAnimation };

/// The big project, open with an animation selected and saved once.
class OpenDocument {
 public:
    OpenDocument() : m_target(m_scratch.path(u"Target.tweenery"_s)) {
        writeBytes(readBytes(bigPackage()), m_target);
        m_document.readFromPath(m_target);
        PCAnimationsManager& manager = m_document.project()->animationsManager();
        manager.setSelectedAnimation(manager.animations().front());
        m_document.project()->setPreviewImage(QImage(2336, 1968, QImage::Format_RGB32));
        m_document.save();
    }
    PCDocument& document() { return m_document; }

    void edit(int64_t edit) {
        m_value += 1;
        PCProject& project = *m_document.project();
        if (edit == OneKeyframe) {
            project.canvas()->children().front()->children().front()->setXTranslation(m_value, 100);
            return;
        }
        for (const auto& [identifier, group] :
             project.animationsManager().selectedAnimation()->timelineGroups()) {
            for (const auto& timeline : group->loadedTimelines()) {
                if (!timeline->isEmpty()) { timeline->setFloatPropertyValue(m_value, 100); }
            }
        }
        project.canvas()->children().front()->setOpacity(1 / static_cast<double>(m_value));
        project.undoManager().removeAllActions();
    }
    WrittenPackage write(const DocumentSnapshot& snapshot) const {
        return writeSnapshot(snapshot.package, m_target);
    }
    void didWrite(const DocumentSnapshot& snapshot, const WrittenPackage& written) {
        m_document.didWrite(snapshot, written, m_target);
    }

 private:
    ScratchDirectory m_scratch;
    QString m_target;
    SilentAlerts m_alerts;
    StandardErrorLog m_log;
    PCDocument m_document{m_alerts, m_log};
    float m_value = 1;
};

void takeSnapshot(benchmark::State& state) {
    OpenDocument open;
    Rounds rounds;
    for (auto _ : state) {
        open.edit(state.range(0));
        DocumentSnapshot snapshot;
        rounds.measure(state, [&] { snapshot = open.document().snapshot(); });
        open.didWrite(snapshot, open.write(snapshot));
    }
    rounds.report(state);
}

// `selected`: an animation is selected, whose timelines count as unsaved because they were read.
void takeFirstSnapshot(benchmark::State& state) {
    SilentAlerts alerts;
    StandardErrorLog log;
    Rounds rounds;
    for (auto _ : state) {
        PCDocument document(alerts, log);
        document.readFromPath(bigPackage());
        PCAnimationsManager& manager = document.project()->animationsManager();
        if (state.range(0) != 0) { manager.setSelectedAnimation(manager.animations().front()); }
        DocumentSnapshot snapshot;
        rounds.measure(state, [&] { snapshot = document.snapshot(); });
    }
    rounds.report(state);
}

void learnWhatIsOnDisk(benchmark::State& state) {
    OpenDocument open;
    Rounds rounds;
    for (auto _ : state) {
        open.edit(OneKeyframe);
        const DocumentSnapshot snapshot = open.document().snapshot();
        const WrittenPackage written = open.write(snapshot);
        rounds.measure(state, [&] { open.didWrite(snapshot, written); });
    }
    rounds.report(state);
}

void saveInPlace(benchmark::State& state) {
    OpenDocument open;
    Rounds rounds;
    for (auto _ : state) {
        open.edit(state.range(0));
        rounds.measure(state, [&] { open.document().save(); });
    }
    rounds.report(state);
}

void openProjectOfSnapshot(benchmark::State& state) {
    OpenDocument open;
    const DocumentSnapshot snapshot = open.document().snapshot();
    Rounds rounds;
    for (auto _ : state) {
        rounds.measure(state, [&] { benchmark::DoNotOptimize(snapshot.projectForReading()); });
    }
    rounds.report(state);
}

// What lies around the measured part takes far longer: a fixed number of rounds.
void fewRounds(benchmark::internal::Benchmark* benchmark) {
    benchmark->UseManualTime()->Iterations(20)->Unit(benchmark::kMillisecond);
}

BENCHMARK(takeFirstSnapshot)->ArgName("selected")->Arg(0)->Arg(1)->Apply(fewRounds);
BENCHMARK(takeSnapshot)
    ->ArgName("everything")
    ->Arg(OneKeyframe)
    ->Arg(EverythingInAnAnimation)
    ->Apply(fewRounds);
BENCHMARK(learnWhatIsOnDisk)->Apply(fewRounds);
BENCHMARK(saveInPlace)
    ->ArgName("everything")
    ->Arg(OneKeyframe)
    ->Arg(EverythingInAnAnimation)
    ->Apply(fewRounds);
BENCHMARK(openProjectOfSnapshot)->Apply(fewRounds);

}  // namespace
}  // namespace tweenery::bench
