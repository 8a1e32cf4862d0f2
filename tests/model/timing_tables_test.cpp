#include "model/timing_tables.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "model/easing.h"

namespace tweenery::test {
namespace {

// What a frame-exact export of an earlier day holds; the last digit is a matter of the solver.
TEST(TimingTables, HoldTheKnownEntries) {
    struct Row {
        PCEasingMode mode;
        std::array<double, 5> entries;  // at 0, 100, 500, 900, 999
        double least, greatest;
    };
    const std::vector<Row> rows = {
        {PCEasingModeEaseIn, {0, 0.017, 0.3154, 0.8394, 0.9983}, 0, 0.9983},
        {PCEasingModeEaseOut, {0, 0.1606, 0.6846, 0.983, 1}, 0, 1},
        {PCEasingModeEaseInOut, {0, 0.0197, 0.5, 0.9803, 1}, 0, 1},
        {PCEasingModeAnticipate, {0, -0.0422, 0.1835, 0.7962, 0.9978}, -0.0449, 0.9978},
        {PCEasingModeOvershoot, {0, 0.2038, 0.8165, 1.0422, 1}, 0, 1.0449},
        {PCEasingModeAnticOver, {0, -0.0376, 0.5, 1.0376, 1}, -0.0377, 1.0377},
    };
    constexpr double lastDigit = 0.000101;
    for (const Row& row : rows) {
        SCOPED_TRACE(stringFromEasingMode(row.mode).toStdString());
        const TimingTable* table = timingTableForEasingMode(row.mode);
        ASSERT_NE(table, nullptr);
        const std::array<size_t, 5> places{0, 100, 500, 900, 999};
        for (size_t i = 0; i < places.size(); ++i) {
            EXPECT_NEAR((*table)[places[i]], row.entries[i], lastDigit) << "entry " << places[i];
        }
        EXPECT_EQ((*table)[0], 0);
        const auto [least, greatest] = std::minmax_element(table->begin(), table->end());
        EXPECT_NEAR(*least, row.least, lastDigit);
        EXPECT_NEAR(*greatest, row.greatest, lastDigit);
        for (const double entry : *table) {
            // Rounded before it is compared with the ends: 0.00097 is 0.001, which stays.
            const bool isSnapped = entry == 0 || entry == 1;
            EXPECT_TRUE(isSnapped ||
                        (std::abs(entry) > 0.0009999 && std::abs(entry - 1) > 0.0009999))
                << entry;
            EXPECT_NEAR(entry * 10000, std::round(entry * 10000), 1e-9);
        }
    }
    EXPECT_EQ((*timingTableForEasingMode(PCEasingModeEaseIn))[23], 0.001);
    EXPECT_EQ((*timingTableForEasingMode(PCEasingModeEaseOut))[977], 0.999);
    for (const int64_t mode : {-1, 0, 7}) {
        EXPECT_EQ(timingTableForEasingMode(mode), nullptr) << mode;
    }
}

}  // namespace
}  // namespace tweenery::test
