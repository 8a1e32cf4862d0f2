#include "model/element_list.h"

#include <algorithm>

#include "model/element.h"

namespace tweenery {
namespace {

constexpr size_t kGreatestBlock = 128;

}  // namespace

ElementList::~ElementList() = default;

ElementList::Place ElementList::placeOf(size_t index) const {
    Place place{0, index};
    while (place.offset >= m_blocks->counts[place.block]) {
        place.offset -= m_blocks->counts[place.block++];
    }
    return place;
}

const ElementList::Ptr& ElementList::operator[](size_t index) const {
    const Place place = placeOf(index);
    return m_blocks->list[place.block]->items[place.offset];
}

size_t ElementList::indexOf(const PCElement& child) const {
    const Block& block = *child.m_block;
    size_t index = 0;
    for (size_t before = 0; before < block.number; ++before) {
        index += m_blocks->counts[before];
    }
    const auto place = std::find_if(block.items.begin(), block.items.end(),
                                    [&child](const Ptr& item) { return item.get() == &child; });
    return index + static_cast<size_t>(place - block.items.begin());
}

void ElementList::insert(size_t index, Ptr child) {
    if (!m_blocks) m_blocks = std::make_unique<Blocks>();
    if (m_blocks->list.empty()) addBlock(0);
    // At the seam of two blocks the child joins the first.
    Place place = index == 0 ? Place{} : placeOf(index - 1);
    if (index > 0) ++place.offset;
    place = makeRoomAt(place);
    Block& block = *m_blocks->list[place.block];
    child->m_block = &block;
    block.items.insert(block.items.begin() + static_cast<ptrdiff_t>(place.offset),
                       std::move(child));
    ++m_blocks->counts[place.block];
    ++m_blocks->size;
}

// A full block gets a neighbour: an empty one where the list grows at the block's end, so that
// blocks that are filled in order stay full, otherwise one with half of its children.
ElementList::Place ElementList::makeRoomAt(Place place) {
    Block& full = *m_blocks->list[place.block];
    if (full.items.size() < kGreatestBlock) return place;
    if (place.offset == 0) {
        addBlock(place.block);
        return place;
    }
    addBlock(place.block + 1);
    if (place.offset == kGreatestBlock) return {place.block + 1, 0};
    constexpr size_t kHalf = kGreatestBlock / 2;
    moveTail(full, kHalf, *m_blocks->list[place.block + 1]);
    return place.offset <= kHalf ? place : Place{place.block + 1, place.offset - kHalf};
}

void ElementList::removeAt(size_t index) {
    const Place place = placeOf(index);
    Block& block = *m_blocks->list[place.block];
    block.items[place.offset]->m_block = nullptr;
    block.items.erase(block.items.begin() + static_cast<ptrdiff_t>(place.offset));
    --m_blocks->counts[place.block];
    --m_blocks->size;
    if (block.items.empty()) return removeBlock(place.block);
    // Small neighbours join, so that there are never more blocks than the count asks for.
    if (place.block + 1 == m_blocks->list.size()) return;
    Block& next = *m_blocks->list[place.block + 1];
    if (block.items.size() + next.items.size() > kGreatestBlock / 2) return;
    moveTail(next, 0, block);
    removeBlock(next.number);
}

// Moves children from `offset` on to the end of the other block.
void ElementList::moveTail(Block& from, size_t offset, Block& to) {
    const auto first = from.items.begin() + static_cast<ptrdiff_t>(offset);
    for (auto child = first; child != from.items.end(); ++child) {
        (*child)->m_block = &to;
        to.items.push_back(std::move(*child));
    }
    from.items.erase(first, from.items.end());
    m_blocks->counts[from.number] = static_cast<uint32_t>(from.items.size());
    m_blocks->counts[to.number] = static_cast<uint32_t>(to.items.size());
}

void ElementList::addBlock(size_t number) {
    const auto place = static_cast<ptrdiff_t>(number);
    m_blocks->list.insert(m_blocks->list.begin() + place, std::make_unique<Block>());
    m_blocks->counts.insert(m_blocks->counts.begin() + place, 0);
    for (size_t i = number; i < m_blocks->list.size(); ++i) {
        m_blocks->list[i]->number = i;
    }
}

void ElementList::removeBlock(size_t number) {
    const auto place = static_cast<ptrdiff_t>(number);
    m_blocks->list.erase(m_blocks->list.begin() + place);
    m_blocks->counts.erase(m_blocks->counts.begin() + place);
    for (size_t i = number; i < m_blocks->list.size(); ++i) {
        m_blocks->list[i]->number = i;
    }
}

}  // namespace tweenery
