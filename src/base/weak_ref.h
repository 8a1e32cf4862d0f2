#pragma once

#include <memory>

namespace tweenery {

/// A reference upward in an ownership graph: null once its object has gone. Unlike weak_ptr,
/// reading it costs no atomic increment; the pointer is good as long as somebody else owns the
/// object.
template <typename T>
class WeakRef {
 public:
    WeakRef() = default;
    explicit WeakRef(const std::shared_ptr<T>& object) : m_weak(object), m_object(object.get()) {}

    T* get() const { return m_weak.expired() ? nullptr : m_object; }
    std::shared_ptr<T> lock() const { return m_weak.lock(); }

 private:
    std::weak_ptr<T> m_weak;
    T* m_object = nullptr;
};

}  // namespace tweenery
