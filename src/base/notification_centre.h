#pragma once

#include <QString>
#include <functional>
#include <memory>

namespace tweenery {

/// Delivers named notifications about an object, synchronously, to whoever subscribed.
/// Subscribing, unsubscribing and posting from within a handler are allowed: a handler that is
/// added during a delivery is not called by it, one that is removed is not called any more.
class NotificationCentre {
 public:
    using Handler = std::function<void(const void* object)>;

    /// Ends the subscription when it goes; harmless after the centre has gone.
    class Subscription {
     public:
        Subscription() = default;
        Subscription(Subscription&&) noexcept;
        Subscription& operator=(Subscription&&) noexcept;
        ~Subscription();
        void end();

     private:
        friend class NotificationCentre;
        struct Entry;
        std::weak_ptr<Entry> m_entry;
    };

    NotificationCentre();
    ~NotificationCentre();

    /// `object` null subscribes to the notification from every object.
    [[nodiscard]] Subscription subscribe(const QString& name, const void* object, Handler handler);
    /// Cost is in the number of subscriptions to `name`; nothing without one.
    void post(const QString& name, const void* object);

 private:
    struct State;
    std::shared_ptr<State> m_state;
};

}  // namespace tweenery
