#pragma once

#include <cstdint>
#include <iterator>
#include <memory>
#include <vector>

namespace tweenery {

class PCElement;

/// The children of an element, back to front. They lie in blocks of at most 128, and each child
/// knows its block, so that inserting, removing and telling a child's place cost the length of a
/// block, not that of ten thousand children.
class ElementList {
 public:
    using Ptr = std::shared_ptr<PCElement>;
    class Iterator;
    /// Children that follow one another in memory.
    struct Block {
        size_t number = 0;  // its place among the blocks
        std::vector<Ptr> items;
    };

    ElementList() = default;
    ~ElementList();
    ElementList(const ElementList&) = delete;
    ElementList& operator=(const ElementList&) = delete;

    size_t size() const { return m_blocks ? m_blocks->size : 0; }
    bool empty() const { return size() == 0; }
    /// `index` is below size().
    const Ptr& operator[](size_t index) const;
    const Ptr& front() const { return m_blocks->list.front()->items.front(); }
    const Ptr& back() const { return m_blocks->list.back()->items.back(); }
    /// The place of a child of this list.
    size_t indexOf(const PCElement& child) const;

    // Iterators are good until the next edit.
    Iterator begin() const;
    Iterator end() const;
    std::reverse_iterator<Iterator> rbegin() const;
    std::reverse_iterator<Iterator> rend() const;

    /// `index` is at most size(); `child` is in no list.
    void insert(size_t index, Ptr child);
    void push_back(Ptr child) { insert(size(), std::move(child)); }
    /// `index` is below size().
    void removeAt(size_t index);

 private:
    struct Blocks {
        size_t size = 0;
        std::vector<std::unique_ptr<Block>> list;  // none of them empty
        std::vector<uint32_t> counts;              // the size of each, close together for counting
    };
    struct Place {
        size_t block = 0;
        size_t offset = 0;
    };

    std::unique_ptr<Blocks> m_blocks;  // null as long as there was no child

    Place placeOf(size_t index) const;
    Place makeRoomAt(Place place);
    void addBlock(size_t number);
    void removeBlock(size_t number);
    void moveTail(Block& from, size_t offset, Block& to);
};

/// Walks the children in order.
class ElementList::Iterator {
 public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = Ptr;
    using difference_type = ptrdiff_t;
    using pointer = const Ptr*;
    using reference = const Ptr&;

    Iterator() = default;
    reference operator*() const { return (*m_block)->items[m_offset]; }
    pointer operator->() const { return &**this; }
    Iterator& operator++() {
        if (++m_offset == (*m_block)->items.size()) {
            ++m_block;
            m_offset = 0;
        }
        return *this;
    }
    Iterator& operator--() {
        if (m_offset == 0) m_offset = (*--m_block)->items.size();
        --m_offset;
        return *this;
    }
    Iterator operator++(int) {
        const Iterator before = *this;
        ++*this;
        return before;
    }
    Iterator operator--(int) {
        const Iterator before = *this;
        --*this;
        return before;
    }
    bool operator==(const Iterator&) const = default;

 private:
    friend class ElementList;
    explicit Iterator(const std::unique_ptr<Block>* block) : m_block(block) {}

    const std::unique_ptr<Block>* m_block = nullptr;
    size_t m_offset = 0;
};

inline ElementList::Iterator ElementList::begin() const {
    return Iterator(m_blocks ? m_blocks->list.data() : nullptr);
}
inline ElementList::Iterator ElementList::end() const {
    return Iterator(m_blocks ? m_blocks->list.data() + m_blocks->list.size() : nullptr);
}
inline std::reverse_iterator<ElementList::Iterator> ElementList::rbegin() const {
    return std::make_reverse_iterator(end());
}
inline std::reverse_iterator<ElementList::Iterator> ElementList::rend() const {
    return std::make_reverse_iterator(begin());
}

}  // namespace tweenery
