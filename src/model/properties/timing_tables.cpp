#include "model/properties/timing_tables.h"

#include <algorithm>
#include <cmath>

#include "base/cubic_bezier.h"
#include "model/properties/easing.h"

namespace tweenery {
namespace {

// To four decimals; what is then nearer than 0.001 to an end is the end.
double tableEntry(double height) {
    const double rounded = std::round(height * 10000) / 10000;
    if (std::abs(rounded) < 0.001) { return 0; }
    if (std::abs(rounded - 1) < 0.001) { return 1; }
    return rounded;
}

TimingTable sampleCurve(const EasingMode& row) {
    TimingTable samples{};
    for (size_t i = 0; i < samples.size(); ++i) {
        const double x = static_cast<double>(i) / 1000;
        samples[i] = tableEntry(cubicBezierHeight(row.x1, row.y1, row.x2, row.y2, x));
    }
    return samples;
}

using Tables = std::array<TimingTable, 6>;

Tables sampleAllCurves() {
    Tables tables{};
    for (size_t i = 0; i < tables.size(); ++i) {
        tables[i] = sampleCurve(easingModes()[i + 1]);
    }
    return tables;
}

using SinglePrecisionTables = std::array<SinglePrecisionTable, 6>;

SinglePrecisionTables roundAllTables() {
    SinglePrecisionTables tables{};
    for (size_t i = 0; i < tables.size(); ++i) {
        const TimingTable& exact = *timingTableForEasingMode(easingModes()[i + 1].mode);
        std::transform(exact.begin(), exact.end(), tables[i].begin(),
                       [](double height) { return static_cast<float>(height); });
    }
    return tables;
}

}  // namespace

const TimingTable* timingTableForEasingMode(PCEasingMode mode) {
    if (mode < 1 || mode > 6) { return nullptr; }
    static const Tables tables = sampleAllCurves();
    return &tables[static_cast<size_t>(mode - 1)];
}

const SinglePrecisionTable* singlePrecisionTimingTable(PCEasingMode mode) {
    if (mode < 1 || mode > 6) { return nullptr; }
    static const SinglePrecisionTables tables = roundAllTables();
    return &tables[static_cast<size_t>(mode - 1)];
}

}  // namespace tweenery
