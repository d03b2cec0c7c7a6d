// The free part of a page as its maximal free rectangles: every free rectangle of the page
// lies inside one of them, and none of them lies inside another. Whatever rectangle a
// packer may place, it fits the page free there exactly when it fits inside one of them,
// which makes the search for a place a walk over a short list instead of over pixels.
//
// Plain logic; all rectangles lie within the page, so their edges and sizes fit in 32 bits.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "model/qlt_types.h"

struct Corner {
    int32_t x;
    int32_t y;
    friend bool operator==(const Corner&, const Corner&) = default;
};

class FreeSpace {
public:
    // A maximal free rectangle and its number: numbers are never used twice, so a packer can
    // remember a rectangle and later ask whether it is still free as it was.
    struct Free {
        PageRect rect;
        uint32_t id;
    };

    // The whole page is free; a page without area has no free rectangle.
    explicit FreeSpace(PageSize page);

    // The rectangles that the last Occupy made come last in the list.
    const std::vector<Free>& Rects() const { return free_; }
    // The first rectangle numbered `first_new_id` or later; all those are at the list's end.
    size_t FirstNumbered(uint32_t first_new_id) const;
    uint32_t NextId() const { return next_id_; }
    bool IsFree(uint32_t id) const { return id < free_ids_.size() && free_ids_[id]; }

    // The top-most, then left-most corner at which `width` by `height` (both above 0) is free.
    std::optional<Corner> Find(int32_t width, int32_t height) const;

    // Takes `used`, which lies in a free rectangle, out of the free space.
    void Occupy(const PageRect& used);

private:
    void Add(const PageRect& rect);
    bool LiesInFree(const PageRect& rect) const;

    std::vector<Free> free_;
    std::vector<bool> free_ids_;  // by number: whether that rectangle is still free
    uint32_t next_id_ = 0;
};
