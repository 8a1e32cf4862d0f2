#pragma once

#include <functional>

#include "base/listener_set.h"

namespace tweenery {

/// Functions that are called when something has changed, each as long as its subscription is kept.
class HandlerSet {
 public:
    using Handler = std::function<void()>;

    Subscription add(Handler handler) {
        const auto owned = std::make_shared<Handler>(std::move(handler));
        const auto membership = std::make_shared<Subscription>(m_handlers.add(owned.get()));
        return Subscription([owned, membership] { membership->end(); });
    }
    void call() const {
        m_handlers.tell([](const Handler& handler) { handler(); });
    }

 private:
    ListenerSet<Handler> m_handlers;
};

}  // namespace tweenery
