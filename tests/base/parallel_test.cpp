// Work on all cores: parallelFor() over a list, ParallelWalk over a tree.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "base/parallel_for.h"
#include "base/parallel_walk.h"
#include "base/spare_core.h"

namespace tweenery {
namespace {

constexpr size_t kWidth = 40;

// A tree of kWidth branches with kWidth leaves each.
struct CountedTree {
    std::array<std::atomic<int>, kWidth * kWidth> visits{};
    ParallelWalk walk;

    void visitAll() {
        walk.run([this] { walk.forEach(0, kWidth, [this](size_t branch) { visit(branch); }); });
    }
    void visit(size_t branch) {
        walk.forEach(branch * kWidth, (branch + 1) * kWidth, [this](size_t leaf) {
            ++visits[leaf];
            ::usleep(10);  // long enough for others to become idle
        });
    }
    bool allOnce() const {
        return std::all_of(visits.begin(), visits.end(), [](const auto& n) { return n == 1; });
    }
};

TEST(ParallelWalk, visitsEverythingOnce) {
    CountedTree tree;
    tree.visitAll();
    EXPECT_TRUE(tree.allOnce());
    EXPECT_TRUE(tree.walk.isBig());
}

TEST(ParallelWalk, throwsWhatAVisitThrew) {
    for (const size_t failing : {size_t{0}, size_t{70}, size_t{999}}) {
        ParallelWalk walk;
        const auto visit = [failing](size_t index) {
            if (index == failing) { throw std::runtime_error("visit " + std::to_string(index)); }
        };
        try {
            walk.run([&] { walk.forEach(0, 1000, visit); });
            ADD_FAILURE() << "nothing was thrown for " << failing;
        } catch (const std::runtime_error& error) {
            EXPECT_EQ(error.what(), "visit " + std::to_string(failing));
        }
    }
}

TEST(ParallelFor, throwsTheFailureOfTheLowestIndex) {
    for (int round = 0; round < 50; ++round) {
        try {
            parallelFor(100, [](size_t index) {
                if (index % 7 == 3) { throw std::runtime_error(std::to_string(index)); }
            });
            ADD_FAILURE() << "nothing was thrown";
        } catch (const std::runtime_error& error) { EXPECT_STREQ(error.what(), "3"); }
    }
}

TEST(ParallelFor, workAmidWorkHasNoMoreThreadsThanThereAreCores) {
    std::atomic<size_t> busy = 0;
    std::atomic<size_t> most = 0;
    const auto leaf = [&](size_t) {
        const size_t now = ++busy;
        for (size_t seen = most; seen < now && !most.compare_exchange_weak(seen, now);) {}
        ::usleep(200);  // long enough for others to come
        --busy;
    };
    parallelFor(20, [&](size_t) {
        parallelFor(5, leaf);
        ParallelWalk walk;
        walk.run([&] { walk.forEach(0, 100, leaf); });
    });
    EXPECT_LE(most, SpareCore::all());

    std::vector<SpareCore> spare;
    while (auto core = SpareCore::take()) {
        spare.push_back(std::move(*core));
    }
    EXPECT_EQ(spare.size(), SpareCore::all() - 1) << "all were given back";
}

// A process that may start no thread. The limit does not hold for the superuser.
[[noreturn]] void workWithoutThreads() {
    const rlimit none{0, 0};
    constexpr uid_t nobody = 65534;
    if (::setrlimit(RLIMIT_NPROC, &none) != 0 || (::getuid() == 0 && ::setuid(nobody) != 0)) {
        ::_exit(2);
    }
    CountedTree tree;
    tree.visitAll();
    std::atomic<int> calls = 0;
    parallelFor(100, [&](size_t) { ++calls; });
    ::_exit(tree.allOnce() && calls == 100 ? 0 : 1);
}

TEST(ParallelDeathTest, workIsDoneWhereTheSystemGivesNoThreads) {
    EXPECT_EXIT(workWithoutThreads(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace tweenery
