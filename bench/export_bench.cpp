// Writing source, beside printing the same numbers and nothing else.

#include <benchmark/benchmark.h>

#include <QTextStream>
#include <charconv>

#include "bench/big_project.h"
#include "codegen/language/current_swift_code_provider.h"
#include "codegen/language/objc_code_provider.h"
#include "codegen/language/swift_code_provider.h"
#include "codegen/project_code_generator.h"
#include "storage/package_store.h"

using namespace Qt::StringLiterals;

namespace tweenery::bench {
namespace {

PCProject::Ptr openProject() {
    return PCProject::projectForReadingWithFileWrapper(readPackage(bigPackage()));
}

// A project whose timelines are all in memory.
const PCProject::Ptr& decodedProject() {
    static const PCProject::Ptr project = [] {
        PCProject::Ptr opened = openProject();
        for (const PCAnimation::Ptr& animation : opened->animationsManager().animations()) {
            animation->loadAllTimelines();
        }
        return opened;
    }();
    return project;
}

// Each keyframe prints its value and its key time.
const std::vector<double>& printedNumbers() {
    static const std::vector<double> numbers = [] {
        std::vector<double> all;
        for (const PCAnimation::Ptr& animation :
             decodedProject()->animationsManager().animations()) {
            for (const auto& [identifier, group] : animation->timelineGroups()) {
                for (const PCPropertyType type : elementTimelineTypes()) {
                    const auto timeline = group->storedTimeline(type);
                    for (size_t i = 0; timeline && i < timeline->keyframesCount(); ++i) {
                        all.push_back(
                            static_cast<double>(timeline->floatValueOfKeyframeAtIndex(i)));
                        all.push_back(timeline->timeOfKeyframe(i) /
                                      static_cast<double>(timeline->durationInMS()));
                    }
                }
            }
        }
        return all;
    }();
    return numbers;
}

template <typename Provider>
void exportSource(benchmark::State& state) {
    const bool isDecoded = state.range(0) != 0;
    const PCProject::Ptr project = isDecoded ? decodedProject() : openProject();
    size_t bytes = 0;
    for (auto _ : state) {
        PCProjectCodeGenerator generator;
        generator.setProject(project);
        generator.setLanguageProvider(std::make_unique<Provider>(GenerationStamp{"1", "1"}));
        generator.loadFileContentsByName();
        bytes = 0;
        for (const auto& [name, pieces] : generator.fileContentsByName()) {
            for (const std::string& piece : pieces) {
                bytes += piece.size();
            }
        }
    }
    state.counters["bytes"] = static_cast<double>(bytes);
}

void toCharsOfSameNumbers(benchmark::State& state) {
    const std::vector<double>& numbers = printedNumbers();
    for (auto _ : state) {
        std::string text;
        std::array<char, 64> digits{};
        for (const double number : numbers) {
            const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                           std::chars_format::fixed, 3);
            text.append(digits.data(), end.ptr);
            text += ", ";
        }
        benchmark::DoNotOptimize(text);
    }
    state.counters["numbers"] = static_cast<double>(numbers.size());
}

void textStreamOfSameNumbers(benchmark::State& state) {
    const std::vector<double>& numbers = printedNumbers();
    for (auto _ : state) {
        QString text;
        QTextStream stream(&text);
        stream.setRealNumberNotation(QTextStream::FixedNotation);
        stream.setRealNumberPrecision(3);
        for (const double number : numbers) {
            stream << number << ", ";
        }
        benchmark::DoNotOptimize(text);
    }
}

BENCHMARK(toCharsOfSameNumbers)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(textStreamOfSameNumbers)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(exportSource, PCObjCCodeProvider)
    ->ArgName("decoded")
    ->Arg(1)
    ->Arg(0)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(exportSource, CurrentSwiftCodeProvider)
    ->ArgName("decoded")
    ->Arg(1)
    ->Arg(0)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(exportSource, PCSwiftCodeProvider)
    ->ArgName("decoded")
    ->Arg(1)
    ->Arg(0)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tweenery::bench
