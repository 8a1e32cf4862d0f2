#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "base/subscription.h"

namespace tweenery {

/// Delivers named notifications about an object, synchronously, to whoever subscribed.
/// Subscribing, unsubscribing and posting from within a handler are allowed: a handler that is
/// added during a delivery is not called by it, one that is removed is not called any more.
class NotificationCentre {
 public:
    using Handler = std::function<void(const void* object)>;

    NotificationCentre();
    ~NotificationCentre();

    /// `object` null subscribes to the notification from every object.
    Subscription subscribe(const QString& name, const void* object, Handler handler);
    /// Cost is in the number of subscriptions to `name`; nothing without one.
    void post(const QString& name, const void* object);

 private:
    struct Entry;
    struct State;
    std::shared_ptr<State> m_state;
};

}  // namespace tweenery
