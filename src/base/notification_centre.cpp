#include "base/notification_centre.h"

#include <QHash>
#include <list>
#include <utility>

namespace tweenery {

struct NotificationCentre::Entry {
    using List = std::list<std::shared_ptr<Entry>>;

    // The subscriptions to one name, in the order in which they were made. One that ends during a
    // delivery stays in the list, so that the walk goes on, until the delivery is over.
    struct Topic {
        List entries;
        int deliveries = 0;
        bool hasEnded = false;

        ~Topic() {
            // Handlers that go with the list may hold subscriptions to it.
            for (const auto& entry : entries) {
                entry->hasEnded = true;
            }
        }

        void sweep() {
            List ended;  // destroyed last: a handler may hold further subscriptions
            for (auto it = entries.begin(); it != entries.end();) {
                const auto next = std::next(it);
                if ((*it)->hasEnded) { ended.splice(ended.end(), entries, it); }
                it = next;
            }
            hasEnded = false;
        }
    };

    Topic* topic = nullptr;
    const void* object = nullptr;
    Handler handler;
    List::iterator position;
    bool hasEnded = false;

    void end() {
        if (std::exchange(hasEnded, true)) { return; }
        if (topic->deliveries > 0) {
            topic->hasEnded = true;
            return;
        }
        List ended;
        ended.splice(ended.end(), topic->entries, position);
    }
};

struct NotificationCentre::State {
    QHash<QString, std::shared_ptr<Entry::Topic>> topics;
};

namespace {

// Counts a delivery under way, and clears up after the outermost one, also when a handler throws.
template <typename Topic>
class Delivery {
 public:
    explicit Delivery(Topic& topic) : m_topic(topic) { ++m_topic.deliveries; }
    ~Delivery() {
        if (--m_topic.deliveries == 0 && m_topic.hasEnded) { m_topic.sweep(); }
    }
    Delivery(const Delivery&) = delete;
    Delivery& operator=(const Delivery&) = delete;

 private:
    Topic& m_topic;
};

}  // namespace

NotificationCentre::NotificationCentre() : m_state(std::make_shared<State>()) {}
NotificationCentre::~NotificationCentre() = default;

Subscription NotificationCentre::subscribe(const QString& name, const void* object,
                                           Handler handler) {
    auto& topic = m_state->topics[name];
    if (!topic) { topic = std::make_shared<Entry::Topic>(); }
    const auto entry = std::make_shared<Entry>();
    entry->topic = topic.get();
    entry->object = object;
    entry->handler = std::move(handler);
    entry->position = topic->entries.insert(topic->entries.end(), entry);
    return Subscription([weak = std::weak_ptr<Entry>(entry)] {
        if (const auto present = weak.lock()) { present->end(); }
    });
}

void NotificationCentre::post(const QString& name, const void* object) {
    const auto topic = m_state->topics.value(name);  // kept alive should the centre go meanwhile
    if (!topic || topic->entries.empty()) { return; }
    const Delivery delivery(*topic);
    const auto last = std::prev(topic->entries.end());
    for (auto it = topic->entries.begin();; ++it) {
        const auto& entry = *it;
        const bool isWanted = !entry->object || entry->object == object;
        if (isWanted && !entry->hasEnded) { entry->handler(object); }
        if (it == last) { return; }
    }
}

}  // namespace tweenery
