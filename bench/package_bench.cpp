// Opening, checking and saving a big package, each beside the plainest way to move the same bytes.

#include <benchmark/benchmark.h>

#include <QDir>
#include <iostream>
#include <sstream>

#include "bench/big_project.h"
#include "bench/package_files.h"
#include "cli/tweenc.h"
#include "model/document.h"
#include "storage/binary_plist.h"

using namespace Qt::StringLiterals;

namespace tweenery::bench {
namespace {

constexpr auto kMilliseconds = benchmark::kMillisecond;

void runQuietly(const QStringList& arguments) {
    std::ostringstream out;
    std::ostringstream err;
    std::istringstream in;
    if (runTweenc(arguments, Console{out, err, in}) != 0) { throw std::runtime_error(err.str()); }
}

void readAllBytes(benchmark::State& state) {
    const QString path = bigPackage();
    for (auto _ : state) {
        benchmark::DoNotOptimize(readBytes(path));
    }
}

void openToInfo(benchmark::State& state) {
    const QString path = bigPackage();
    for (auto _ : state) {
        runQuietly({u"info"_s, path});
    }
}

// Every object of every property list is looked at once, with no archive to make sense of it.
void bareWalk(benchmark::State& state) {
    const PackageFiles package = readBytes(bigPackage(scaled(static_cast<int>(state.range(0)))));
    for (auto _ : state) {
        uint64_t sum = 0;
        for (const PackageFiles::File& file : package.files) {
            if (!file.data.startsWith("bplist00")) { continue; }
            const BinaryPlist plist(file.data, {});
            for (uint32_t i = 0; i < plist.objectCount(); ++i) {
                const PlistObject object = plist.object(i);
                const bool isContainer =
                    object.type == PlistType::Array || object.type == PlistType::Dict;
                for (uint32_t item = 0; isContainer && item < object.count; ++item) {
                    sum += plist.item(object, item);
                    if (object.type == PlistType::Dict) { sum += plist.value(object, item); }
                }
                sum += object.count;
            }
        }
        benchmark::DoNotOptimize(sum);
    }
}

void decodeEverything(benchmark::State& state) {
    const FileWrapper::Ptr root = readPackage(bigPackage(scaled(static_cast<int>(state.range(0)))));
    for (auto _ : state) {
        const PCProject::Ptr project = PCProject::projectForReadingWithFileWrapper(root);
        for (const PCAnimation::Ptr& animation : project->animationsManager().animations()) {
            animation->loadAllTimelines();
        }
        benchmark::DoNotOptimize(project.get());
    }
}

void checkCommand(benchmark::State& state) {
    const QString path = bigPackage(scaled(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        runQuietly({u"check"_s, path});
    }
}

// Saving after one keyframe has changed.

void linkOneAndExchange(benchmark::State& state) {
    const ScratchDirectory scratch;
    const PackageFiles package = readBytes(bigPackage());
    const QString target = scratch.path(u"Target.tweenery"_s);
    const QString staged = scratch.path(u"staged"_s);
    writeBytes(package, target);
    for (auto _ : state) {
        linkFiles(package, target, staged);
        exchange(staged, target);
        state.PauseTiming();
        removeTree(staged);
        state.ResumeTiming();
    }
}

class SilentAlerts : public AlertPort {
    AlertAnswer runModal(const Alert&) override { return {}; }
};

void saveAfterOneKeyframe(benchmark::State& state) {
    const ScratchDirectory scratch;
    const QString target = scratch.path(u"Target.tweenery"_s);
    writeBytes(readBytes(bigPackage()), target);
    SilentAlerts alerts;
    StandardErrorLog log;
    PCDocument document(alerts, log);
    document.readFromPath(target);
    PCAnimationsManager& manager = document.project()->animationsManager();
    manager.setSelectedAnimation(manager.animations().front());
    document.save();
    PCElement& element = *document.project()->canvas()->children().front()->children().front();
    float value = 0;
    for (auto _ : state) {
        element.setXTranslation(value += 1, 100);
        document.save();
    }
}

// Saving everything anew.

void writeSameBytes(benchmark::State& state) {
    const ScratchDirectory scratch;
    const PackageFiles package = readBytes(bigPackage(scaled(static_cast<int>(state.range(0)))));
    const QString target = scratch.path(u"Target.tweenery"_s);
    for (auto _ : state) {
        writeBytes(package, target);
        state.PauseTiming();
        removeTree(target);
        state.ResumeTiming();
    }
}

void saveEverything(benchmark::State& state) {
    const ScratchDirectory scratch;
    const PCProject::Ptr project = PCProject::projectForReadingWithFileWrapper(
        readPackage(bigPackage(scaled(static_cast<int>(state.range(0))))));
    PCAnimationsManager& manager = project->animationsManager();
    for (const PCAnimation::Ptr& animation : manager.animations()) {
        animation->loadAllTimelines();
    }
    const QString target = scratch.path(u"Target.tweenery"_s);
    for (auto _ : state) {
        state.PauseTiming();
        for (const PCAnimation::Ptr& animation : manager.animations()) {
            for (const auto& [identifier, group] : animation->timelineGroups()) {
                for (const auto& timeline : group->loadedTimelines()) {
                    timeline->setHasUnsavedChanges(true);
                }
            }
        }
        project->canvas()->setModified(true);
        state.ResumeTiming();
        for (const PCAnimation::Ptr& animation : manager.animations()) {
            animation->saveChangesToFileWrapper();
        }
        writePackageCopy(*project->fileWrapper(), target);
        state.PauseTiming();
        removeTree(target);
        state.ResumeTiming();
    }
}

// Work is spread over threads: only the time on the wall compares.
BENCHMARK(readAllBytes)->UseRealTime()->Unit(kMilliseconds);
BENCHMARK(openToInfo)->UseRealTime()->Unit(kMilliseconds);
BENCHMARK(bareWalk)->ArgName("times")->Arg(1)->Arg(2)->UseRealTime()->Unit(kMilliseconds);
BENCHMARK(decodeEverything)->ArgName("times")->Arg(1)->Arg(2)->UseRealTime()->Unit(kMilliseconds);
BENCHMARK(checkCommand)->ArgName("times")->Arg(1)->Arg(2)->UseRealTime()->Unit(kMilliseconds);
BENCHMARK(linkOneAndExchange)->UseRealTime()->Unit(kMilliseconds);
BENCHMARK(saveAfterOneKeyframe)->UseRealTime()->Unit(kMilliseconds);
BENCHMARK(writeSameBytes)->ArgName("times")->Arg(1)->Arg(2)->UseRealTime()->Unit(kMilliseconds);
BENCHMARK(saveEverything)->ArgName("times")->Arg(1)->Arg(2)->UseRealTime()->Unit(kMilliseconds);

}  // namespace
}  // namespace tweenery::bench
