#include "model/properties/timing_tables.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tweenery::test {
namespace {

TEST(TimingTables, HoldTheKnownEntries) {
    struct Row {
        std::array<double, 5> entries;  // at 0, 100, 500, 900, 999
        double least, greatest;
    };
    const std::array<Row, 6> rows{{{{0, 0.017, 0.3154, 0.8394, 0.9983}, 0, 0.9983},
                                   {{0, 0.1606, 0.6846, 0.983, 1}, 0, 1},
                                   {{0, 0.0197, 0.5, 0.9803, 1}, 0, 1},
                                   {{0, -0.0422, 0.1835, 0.7962, 0.9978}, -0.0449, 0.9978},
                                   {{0, 0.2038, 0.8165, 1.0422, 1}, 0, 1.0449},
                                   {{0, -0.0376, 0.5, 1.0376, 1}, -0.0377, 1.0377}}};
    constexpr double lastDigit = 0.000101;  // a matter of the solver
    for (const EasingMode& mode : easingModes().subspan(1)) {
        SCOPED_TRACE(mode.mode);
        const Row& row = rows[static_cast<size_t>(mode.mode - 1)];
        const TimingTable& table = *timingTableForEasingMode(mode.mode);
        for (size_t i = 0; i < row.entries.size(); ++i) {
            const size_t place = std::array<size_t, 5>{0, 100, 500, 900, 999}[i];
            EXPECT_NEAR(table[place], row.entries[i], lastDigit) << "entry " << place;
        }
        const auto [least, greatest] = std::minmax_element(table.begin(), table.end());
        EXPECT_NEAR(*least, row.least, lastDigit);
        EXPECT_NEAR(*greatest, row.greatest, lastDigit);
    }
    // Rounded to four decimals before it is compared with the ends: 0.00097 is 0.001, which stays.
    EXPECT_EQ((*timingTableForEasingMode(PCEasingModeEaseIn))[23], 0.001);
    EXPECT_EQ((*timingTableForEasingMode(PCEasingModeEaseOut))[977], 0.999);
    EXPECT_EQ((*timingTableForEasingMode(PCEasingModeEaseIn))[22], 0);
    for (const PCEasingMode mode : {easingModeInstant, PCEasingModeLinear, PCEasingMode{7}}) {
        EXPECT_EQ(timingTableForEasingMode(mode), nullptr) << mode;
    }
}

}  // namespace
}  // namespace tweenery::test
