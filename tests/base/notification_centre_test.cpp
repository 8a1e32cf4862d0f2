#include "base/notification_centre.h"

#include <gmock/gmock.h>

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

class NotificationCentreTest : public testing::Test {
 protected:
    NotificationCentre::Handler note(const std::string& who) {
        return [this, who](const void*) { heard.push_back(who); };
    }
    std::vector<std::string> heardAfterPost(const void* object = nullptr) {
        heard.clear();
        centre->post(u"name"_s, object);
        return heard;
    }

    std::unique_ptr<NotificationCentre> centre = std::make_unique<NotificationCentre>();
    std::vector<std::string> heard;
};

TEST_F(NotificationCentreTest, DeliversByNameAndObjectInTheOrderOfSubscription) {
    const int a = 0;
    const int b = 0;
    const auto any = centre->subscribe(u"name"_s, nullptr, note("any"));
    auto onlyA = centre->subscribe(u"name"_s, &a, note("a"));
    const auto other = centre->subscribe(u"other"_s, nullptr, note("other"));
    EXPECT_THAT(heardAfterPost(&a), ElementsAre("any", "a"));
    EXPECT_THAT(heardAfterPost(&b), ElementsAre("any"));
    const Subscription moved = std::move(onlyA);
    EXPECT_THAT(heardAfterPost(&a), ElementsAre("any", "a"));
}

TEST_F(NotificationCentreTest, AHandlerMayEndItselfAndLaterOnes) {
    Subscription later;
    Subscription self;
    const auto first = centre->subscribe(u"name"_s, nullptr, note("first"));
    self = centre->subscribe(u"name"_s, nullptr, [&](const void*) {
        heard.emplace_back("ender");
        self.end();
        later.end();
    });
    later = centre->subscribe(u"name"_s, nullptr, note("later"));
    const auto last = centre->subscribe(u"name"_s, nullptr, note("last"));
    EXPECT_THAT(heardAfterPost(), ElementsAre("first", "ender", "last"));
    EXPECT_THAT(heardAfterPost(), ElementsAre("first", "last"));
}

TEST_F(NotificationCentreTest, AHandlerThatIsAddedWaitsForTheNextDelivery) {
    std::vector<Subscription> added;
    const auto adder = centre->subscribe(u"name"_s, nullptr, [&](const void*) {
        added.push_back(centre->subscribe(u"name"_s, nullptr, note("added")));
    });
    EXPECT_THAT(heardAfterPost(), ElementsAre());
    EXPECT_THAT(heardAfterPost(), ElementsAre("added"));
}

TEST_F(NotificationCentreTest, ADeliveryWithinADeliverySeesWhatHasEnded) {
    Subscription ended;
    int depth = 0;
    const auto nester = centre->subscribe(u"name"_s, nullptr, [&](const void*) {
        heard.push_back("depth " + std::to_string(depth));
        if (depth++ > 0) { return; }
        ended.end();
        centre->post(u"name"_s, nullptr);
    });
    ended = centre->subscribe(u"name"_s, nullptr, note("ended"));
    const auto last = centre->subscribe(u"name"_s, nullptr, note("last"));
    EXPECT_THAT(heardAfterPost(), ElementsAre("depth 0", "depth 1", "last", "last"));
}

TEST_F(NotificationCentreTest, TheCentreMayGoFirstAlsoDuringADelivery) {
    const auto killer = centre->subscribe(u"name"_s, nullptr, [&](const void*) { centre.reset(); });
    const auto last = centre->subscribe(u"name"_s, nullptr, note("last"));
    NotificationCentre* const doomed = centre.get();
    doomed->post(u"name"_s, nullptr);
    EXPECT_EQ(centre, nullptr);
    EXPECT_THAT(heard, ElementsAre("last"));
}

TEST_F(NotificationCentreTest, AHandlerMayHoldSubscriptionsThatGoWithIt) {
    auto first = centre->subscribe(u"name"_s, nullptr, note("first"));
    auto second =
        std::make_shared<Subscription>(centre->subscribe(u"name"_s, nullptr, note("second")));
    auto owner = centre->subscribe(u"name"_s, nullptr, [second](const void*) {});
    second.reset();
    EXPECT_THAT(heardAfterPost(), ElementsAre("first", "second"));
    owner.end();
    EXPECT_THAT(heardAfterPost(), ElementsAre("first"));

    auto third =
        std::make_shared<Subscription>(centre->subscribe(u"name"_s, nullptr, note("third")));
    owner = centre->subscribe(u"name"_s, nullptr, [third](const void*) {});
    third.reset();
    centre.reset();
}

TEST_F(NotificationCentreTest, AThrowingHandlerLeavesTheCentreInOrder) {
    Subscription thrower = centre->subscribe(u"name"_s, nullptr, [&](const void*) {
        thrower.end();
        throw std::runtime_error("refused");
    });
    const auto last = centre->subscribe(u"name"_s, nullptr, note("last"));
    EXPECT_THROW(centre->post(u"name"_s, nullptr), std::runtime_error);
    EXPECT_THAT(heardAfterPost(), ElementsAre("last"));
}

}  // namespace
}  // namespace tweenery::test
