// A hash index from folded paths to values held elsewhere, for lookups with paths as the
// caller spells them: open addressing with linear probing, the hash kept in the slot so
// that a lookup usually touches one slot and one key. The table fills to 7/8 before it
// doubles: a lookup's cost is the cache miss on its slot, and a table half the size misses
// less often than the longer probe runs cost (they lie mostly in one cache line).
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "core_path_match.h"

namespace Core {

// `Node` has a `first` (the folded key, a string that stays where it is while indexed).
template <typename Node>
class FoldedIndex {
public:
    Node* find(std::string_view path) const {
        if (slots_.empty()) return nullptr;
        const uint64_t hash = folded_hash(path);
        for (size_t at = hash & mask(); slots_[at].node != nullptr; at = (at + 1) & mask()) {
            if (slots_[at].hash == hash && folded_equal(slots_[at].node->first, path))
                return slots_[at].node;
        }
        return nullptr;
    }

    // `node` must not be indexed yet.
    void insert(Node* node) {
        if ((count_ + 1) * 8 > slots_.size() * 7) grow();
        place({folded_hash(node->first), node});
        ++count_;
    }

    void erase(const Node* node) {
        if (slots_.empty()) return;
        size_t at = folded_hash(node->first) & mask();
        while (slots_[at].node != node) {
            if (slots_[at].node == nullptr) return;
            at = (at + 1) & mask();
        }
        // Backward shift: pull later members of the run into the gap so no probe stops early.
        for (size_t next = (at + 1) & mask(); slots_[next].node != nullptr;
             next = (next + 1) & mask()) {
            const size_t home = slots_[next].hash & mask();
            const bool movable =
                at <= next ? (home <= at || home > next) : (home <= at && home > next);
            if (movable) {
                slots_[at] = slots_[next];
                at = next;
            }
        }
        slots_[at] = {};
        --count_;
    }

    void clear() {
        slots_.clear();
        count_ = 0;
    }

private:
    struct Slot {
        uint64_t hash = 0;
        Node* node = nullptr;
    };

    size_t mask() const { return slots_.size() - 1; }

    void place(Slot slot) {
        size_t at = slot.hash & mask();
        while (slots_[at].node != nullptr)
            at = (at + 1) & mask();
        slots_[at] = slot;
    }

    void grow() {
        std::vector<Slot> old(slots_.empty() ? 16 : slots_.size() * 2);
        old.swap(slots_);
        for (const Slot& slot : old) {
            if (slot.node != nullptr) place(slot);
        }
    }

    std::vector<Slot> slots_;
    size_t count_ = 0;
};

}  // namespace Core
