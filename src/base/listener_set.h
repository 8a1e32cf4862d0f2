#pragma once

#include <algorithm>
#include <memory>
#include <vector>

#include "base/subscription.h"

namespace tweenery {

/// Who wants to be told of something, each once, in the order in which they came. Listeners are not
/// owned; each stays a member as long as it keeps its subscription. They may come and go while they
/// are being told: one that is added is told from the next time on, one that has left no more.
template <class Listener>
class ListenerSet {
 public:
    /// Of somebody who is a member already, the earlier subscription counts, and this one is empty.
    Subscription add(Listener* listener) {
        if (contains(listener)) { return {}; }
        m_members->push_back(listener);
        return Subscription([members = std::weak_ptr<Members>(m_members), listener] {
            if (const auto present = members.lock()) { std::erase(*present, listener); }
        });
    }
    /// False, and nothing happens, when it is no member.
    bool remove(Listener* listener) { return std::erase(*m_members, listener) > 0; }
    void removeAll() { m_members->clear(); }
    bool contains(const Listener* listener) const {
        return std::find(m_members->begin(), m_members->end(), listener) != m_members->end();
    }
    size_t size() const { return m_members->size(); }

    /// Calls `call(listener)` for each member.
    template <class Call>
    void tell(Call call) const {
        const auto members = m_members;  // kept alive should the set go meanwhile
        const Members round = *members;
        for (Listener* listener : round) {
            const bool isStillThere =
                std::find(members->begin(), members->end(), listener) != members->end();
            if (isStillThere) { call(*listener); }
        }
    }

 private:
    using Members = std::vector<Listener*>;
    std::shared_ptr<Members> m_members = std::make_shared<Members>();
};

}  // namespace tweenery
