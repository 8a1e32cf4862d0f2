#pragma once

#include <concepts>
#include <cstddef>
#include <functional>
#include <new>
#include <type_traits>
#include <utility>

namespace tweenery {

/// The inverse of one edit, to be called once it is undone. Unlike std::function it keeps what an
/// element's setter captures inside of itself, so that a step of ten thousand edits lies in a row.
class UndoAction {
 public:
    /// `call` is any callable without arguments. What is larger than an element, a value and an
    /// index goes to the heap.
    template <typename Call>
    // NOLINTNEXTLINE(bugprone-forwarding-reference-overload): it is not for this class
        requires(!std::same_as<std::remove_cvref_t<Call>, UndoAction>)
    UndoAction(Call&& call) : m_operations(&kOperations<Stored<Call>>) {
        new (m_room) Stored<Call>(std::forward<Call>(call));
    }
    UndoAction(UndoAction&& other) noexcept : m_operations(other.m_operations) {
        m_operations->moveTo(other.m_room, m_room);
    }
    UndoAction(const UndoAction&) = delete;
    UndoAction& operator=(const UndoAction&) = delete;
    ~UndoAction() { m_operations->destroy(m_room); }

    void operator()() const { m_operations->call(m_room); }

 private:
    static constexpr size_t kRoom = 40;
    struct Operations {
        void (*call)(const std::byte* room);
        void (*moveTo)(std::byte* from, std::byte* to);
        void (*destroy)(std::byte* room);
    };
    template <typename Call>
    static constexpr bool kFits = sizeof(Call) <= kRoom && alignof(void*) % alignof(Call) == 0 &&
                                  std::is_nothrow_move_constructible_v<Call>;
    template <typename Call>
    using Stored =
        std::conditional_t<kFits<std::decay_t<Call>>, std::decay_t<Call>, std::function<void()>>;
    template <typename Held>
    static const Held& in(const std::byte* room) {
        return *std::launder(reinterpret_cast<const Held*>(room));
    }
    template <typename Held>
    static Held& in(std::byte* room) {
        return *std::launder(reinterpret_cast<Held*>(room));
    }
    template <typename Held>
    static constexpr Operations kOperations{
        [](const std::byte* room) { in<Held>(room)(); },
        [](std::byte* from, std::byte* to) { new (to) Held(std::move(in<Held>(from))); },
        [](std::byte* room) { in<Held>(room).~Held(); }};

    const Operations* m_operations;
    alignas(void*) std::byte m_room[kRoom];
};

}  // namespace tweenery
