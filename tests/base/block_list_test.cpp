#include "base/block_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace tweenery::test {
namespace {

struct Item {
    mutable BlockHook hook;
};
BlockHook& blockHook(const Item& item) {
    return item.hook;
}

using List = BlockList<std::shared_ptr<Item>>;
using Reference = std::vector<std::shared_ptr<Item>>;

void expectEqual(const List& list, const Reference& expected) {
    ASSERT_EQ(list.size(), expected.size());
    EXPECT_EQ(list.empty(), expected.empty());
    EXPECT_TRUE(std::equal(list.begin(), list.end(), expected.begin(), expected.end()));
    EXPECT_TRUE(std::equal(list.rbegin(), list.rend(), expected.rbegin(), expected.rend()));
    for (size_t i = 0; i < expected.size(); ++i) {
        ASSERT_EQ(list[i], expected[i]) << i;
        ASSERT_EQ(list.indexOf(*expected[i]), i);
    }
    if (expected.empty()) { return; }
    EXPECT_EQ(list.front(), expected.front());
    EXPECT_EQ(list.back(), expected.back());
}

// Fills and empties a list at its ends, around its middle, and anywhere, over many blocks.
TEST(BlockList, IsAVectorOfItems) {
    using Place = size_t (*)(size_t count, size_t random);
    const Place places[] = {[](size_t, size_t) { return size_t{0}; },
                            [](size_t count, size_t) { return count; },
                            [](size_t count, size_t) { return count / 2; },
                            [](size_t count, size_t random) { return random % (count + 1); }};
    std::minstd_rand random(5);
    for (const Place insertion : places) {
        for (const Place removal : places) {
            List list;
            Reference expected;
            for (int i = 0; i < 600; ++i) {
                const auto item = std::make_shared<Item>();
                const size_t index = insertion(expected.size(), random());
                list.insert(index, item);
                expected.insert(expected.begin() + static_cast<ptrdiff_t>(index), item);
            }
            expectEqual(list, expected);
            while (!expected.empty()) {
                const size_t index =
                    std::min(removal(expected.size(), random()), expected.size() - 1);
                list.removeAt(index);
                expected.erase(expected.begin() + static_cast<ptrdiff_t>(index));
                if (expected.size() % 90 == 0) { expectEqual(list, expected); }
            }
            list.push_back(std::make_shared<Item>());
            EXPECT_EQ(list.size(), 1U);
        }
    }
}

}  // namespace
}  // namespace tweenery::test
