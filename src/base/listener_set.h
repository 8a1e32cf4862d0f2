#pragma once

#include <algorithm>
#include <vector>

namespace tweenery {

/// Who wants to be told of something, each once, in the order in which they came. Listeners are not
/// owned: whoever adds one takes it away before it goes. They may add and take away listeners while
/// they are being told: one that is added is told from the next time on, one that was taken away no
/// more.
template <class Listener>
class ListenerSet {
 public:
    /// False, and nothing happens, when it is a member already.
    bool add(Listener* listener) {
        if (contains(listener)) { return false; }
        m_members.push_back(listener);
        return true;
    }
    /// False, and nothing happens, when it is no member.
    bool remove(Listener* listener) { return std::erase(m_members, listener) > 0; }
    void removeAll() { m_members.clear(); }
    bool contains(const Listener* listener) const {
        return std::find(m_members.begin(), m_members.end(), listener) != m_members.end();
    }
    size_t size() const { return m_members.size(); }

    /// Calls `call(listener)` for each member.
    template <class Call>
    void tell(Call call) const {
        const auto round = m_members;
        for (Listener* listener : round) {
            if (contains(listener)) { call(*listener); }
        }
    }

 private:
    std::vector<Listener*> m_members;
};

}  // namespace tweenery
