#include "codegen/timing_function_code.h"

#include <array>

namespace tweenery {

const TimingFunctionCode& timingFunctionCode(PCEasingMode easingMode) {
    static const std::array<TimingFunctionCode, EasingModes().size()> functions{{
        {"linearTiming", "kCAMediaTimingFunctionLinear"},
        {"easeInTiming", "kCAMediaTimingFunctionEaseIn"},
        {"easeOutTiming", "kCAMediaTimingFunctionEaseOut"},
        {"easeInOutTiming", "kCAMediaTimingFunctionEaseInEaseOut"},
        {"anticipateTiming", "", {0.42, -0.3}, {1.0, 1.0}},
        {"overshootTiming", "", {0.0, 0.0}, {0.58, 1.3}},
        {"anticOverTiming", "", {0.42, -0.3}, {0.58, 1.3}},
    }};
    const bool isKnown = easingMode >= 0 && easingMode < static_cast<int64_t>(functions.size());
    return functions[isKnown ? static_cast<size_t>(easingMode) : 0];
}

}  // namespace tweenery
