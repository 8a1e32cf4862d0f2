#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

namespace tweenery {

/// What an item of a BlockList keeps to know its place. The item's type offers it by a function
/// `BlockHook& blockHook(const Item&)` that is found with it.
struct BlockHook {
    void* block = nullptr;  // set by the list that the item is in
};

/// The children of a node, in order. They lie in blocks of at most 128, and each knows its block,
/// so that inserting, removing and telling a child's place cost the length of a block, not that of
/// ten thousand children. `Handle` points to an item with a BlockHook, and is never null.
template <typename Handle>
class BlockList {
 public:
    using Item = typename std::pointer_traits<Handle>::element_type;
    class Iterator;

    BlockList() = default;
    BlockList(const BlockList&) = delete;
    BlockList& operator=(const BlockList&) = delete;

    size_t size() const { return m_blocks ? m_blocks->size : 0; }
    bool empty() const { return size() == 0; }
    /// `index` is below size().
    const Handle& operator[](size_t index) const {
        const Place place = placeOf(index);
        return m_blocks->list[place.block]->items[place.offset];
    }
    const Handle& front() const { return m_blocks->list.front()->items.front(); }
    const Handle& back() const { return m_blocks->list.back()->items.back(); }
    /// The place of an item of this list.
    size_t indexOf(const Item& item) const;

    // Iterators are good until the next edit.
    Iterator begin() const { return Iterator(m_blocks ? m_blocks->list.data() : nullptr); }
    Iterator end() const {
        return Iterator(m_blocks ? m_blocks->list.data() + m_blocks->list.size() : nullptr);
    }
    auto rbegin() const { return std::make_reverse_iterator(end()); }
    auto rend() const { return std::make_reverse_iterator(begin()); }

    /// `index` is at most size(); the item is in no list.
    void insert(size_t index, Handle handle);
    void push_back(Handle handle) { insert(size(), std::move(handle)); }
    /// `index` is below size().
    void removeAt(size_t index) { removeAt(placeOf(index)); }
    /// An item of this list.
    void remove(const Item& item) { removeAt(placeOfItem(item)); }

 private:
    static constexpr size_t kGreatestBlock = 128;

    // Items that follow one another in memory.
    struct Block {
        size_t number = 0;  // its place among the blocks
        std::vector<Handle> items;
    };
    struct Blocks {
        size_t size = 0;
        std::vector<std::unique_ptr<Block>> list;  // none of them empty
        std::vector<uint32_t> counts;              // the size of each, close together for counting
    };
    struct Place {
        size_t block = 0;
        size_t offset = 0;
    };

    std::unique_ptr<Blocks> m_blocks;  // null as long as there was no item

    Place placeOf(size_t index) const;
    Place placeOfItem(const Item& item) const;
    Place makeRoomAt(Place place);
    void removeAt(Place place);
    void addBlock(size_t number);
    void removeBlock(size_t number);
    void renumberFrom(size_t number);
    void moveTail(Block& from, size_t offset, Block& to);
    static ptrdiff_t signedOf(size_t number) { return static_cast<ptrdiff_t>(number); }
};

/// Walks the items in order.
template <typename Handle>
class BlockList<Handle>::Iterator {
 public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = Handle;
    using difference_type = ptrdiff_t;
    using pointer = const Handle*;
    using reference = const Handle&;

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
        if (m_offset == 0) { m_offset = (*--m_block)->items.size(); }
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
    friend class BlockList;
    explicit Iterator(const std::unique_ptr<Block>* block) : m_block(block) {}

    const std::unique_ptr<Block>* m_block = nullptr;
    size_t m_offset = 0;
};

// Counted from the nearer end, where most edits are.
template <typename Handle>
auto BlockList<Handle>::placeOf(size_t index) const -> Place {
    const std::vector<uint32_t>& counts = m_blocks->counts;
    if (index < m_blocks->size / 2) {
        Place place{0, index};
        while (place.offset >= counts[place.block]) {
            place.offset -= counts[place.block++];
        }
        return place;
    }
    size_t block = counts.size();
    size_t start = m_blocks->size;
    while (start > index) {
        start -= counts[--block];
    }
    return {block, index - start};
}

template <typename Handle>
auto BlockList<Handle>::placeOfItem(const Item& item) const -> Place {
    const auto& block = *static_cast<const Block*>(blockHook(item).block);
    const auto found = std::find_if(block.items.begin(), block.items.end(),
                                    [&item](const Handle& other) { return &*other == &item; });
    return {block.number, static_cast<size_t>(found - block.items.begin())};
}

template <typename Handle>
size_t BlockList<Handle>::indexOf(const Item& item) const {
    const Place place = placeOfItem(item);
    const std::vector<uint32_t>& counts = m_blocks->counts;
    const auto block = counts.begin() + signedOf(place.block);
    if (place.block < counts.size() / 2) {
        return std::accumulate(counts.begin(), block, place.offset);
    }
    return m_blocks->size - std::accumulate(block, counts.end(), size_t{0}) + place.offset;
}

template <typename Handle>
void BlockList<Handle>::insert(size_t index, Handle handle) {
    if (!m_blocks) { m_blocks = std::make_unique<Blocks>(); }
    if (m_blocks->list.empty()) { addBlock(0); }
    // At the seam of two blocks the item joins the first.
    Place place = index == 0 ? Place{} : placeOf(index - 1);
    if (index > 0) { ++place.offset; }
    place = makeRoomAt(place);
    Block& block = *m_blocks->list[place.block];
    blockHook(*handle).block = &block;
    block.items.insert(block.items.begin() + signedOf(place.offset), std::move(handle));
    ++m_blocks->counts[place.block];
    ++m_blocks->size;
}

// A full block gets a neighbour: an empty one where the list grows at the block's end, so that
// blocks that are filled in order stay full, otherwise one with half of its items.
template <typename Handle>
auto BlockList<Handle>::makeRoomAt(Place place) -> Place {
    Block& full = *m_blocks->list[place.block];
    if (full.items.size() < kGreatestBlock) { return place; }
    if (place.offset == 0) {
        addBlock(place.block);
        return place;
    }
    addBlock(place.block + 1);
    if (place.offset == kGreatestBlock) { return {place.block + 1, 0}; }
    constexpr size_t kHalf = kGreatestBlock / 2;
    moveTail(full, kHalf, *m_blocks->list[place.block + 1]);
    return place.offset <= kHalf ? place : Place{place.block + 1, place.offset - kHalf};
}

template <typename Handle>
void BlockList<Handle>::removeAt(Place place) {
    Block& block = *m_blocks->list[place.block];
    blockHook(*block.items[place.offset]).block = nullptr;
    block.items.erase(block.items.begin() + signedOf(place.offset));
    --m_blocks->counts[place.block];
    --m_blocks->size;
    if (block.items.empty()) { return removeBlock(place.block); }
    // Small neighbours join, so that there are never more blocks than the count asks for.
    if (place.block + 1 == m_blocks->list.size()) { return; }
    Block& next = *m_blocks->list[place.block + 1];
    if (block.items.size() + next.items.size() > kGreatestBlock / 2) { return; }
    moveTail(next, 0, block);
    removeBlock(next.number);
}

// Moves items from `offset` on to the end of the other block.
template <typename Handle>
void BlockList<Handle>::moveTail(Block& from, size_t offset, Block& to) {
    const auto first = from.items.begin() + signedOf(offset);
    for (auto item = first; item != from.items.end(); ++item) {
        blockHook(**item).block = &to;
        to.items.push_back(std::move(*item));
    }
    from.items.erase(first, from.items.end());
    m_blocks->counts[from.number] = static_cast<uint32_t>(from.items.size());
    m_blocks->counts[to.number] = static_cast<uint32_t>(to.items.size());
}

template <typename Handle>
void BlockList<Handle>::addBlock(size_t number) {
    m_blocks->list.insert(m_blocks->list.begin() + signedOf(number), std::make_unique<Block>());
    m_blocks->counts.insert(m_blocks->counts.begin() + signedOf(number), 0);
    renumberFrom(number);
}

template <typename Handle>
void BlockList<Handle>::removeBlock(size_t number) {
    m_blocks->list.erase(m_blocks->list.begin() + signedOf(number));
    m_blocks->counts.erase(m_blocks->counts.begin() + signedOf(number));
    renumberFrom(number);
}

template <typename Handle>
void BlockList<Handle>::renumberFrom(size_t number) {
    for (; number < m_blocks->list.size(); ++number) {
        m_blocks->list[number]->number = number;
    }
}

}  // namespace tweenery
