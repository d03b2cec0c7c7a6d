#include "texture/FreeSpace.h"

#include <algorithm>
#include <utility>

#include "model/page_rect.h"

namespace {

bool Overlaps(const PageRect& a, const PageRect& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

bool Contains(const PageRect& outer, const PageRect& inner) {
    return outer.left <= inner.left && outer.top <= inner.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}

// The parts of `f` to the left of, right of, above and below `used`, each as wide or as
// tall as `f`; together they are all of `f` that `used` leaves free.
void AddPartsAround(const PageRect& f, const PageRect& used, std::vector<PageRect>& parts) {
    if (used.left > f.left) parts.push_back({f.left, f.top, used.left, f.bottom});
    if (used.right < f.right) parts.push_back({used.right, f.top, f.right, f.bottom});
    if (used.top > f.top) parts.push_back({f.left, f.top, f.right, used.top});
    if (used.bottom < f.bottom) parts.push_back({f.left, used.bottom, f.right, f.bottom});
}

// Whether another part holds part k. No two parts are equal: parts of two maximal
// rectangles on the same side of `used` differ in an edge that `used` does not cut, and
// parts on different sides differ in the edge that it does.
bool LiesInAnother(const std::vector<PageRect>& parts, size_t k) {
    for (size_t q = 0; q < parts.size(); ++q) {
        if (q != k && Contains(parts[q], parts[k])) return true;
    }
    return false;
}

}  // namespace

FreeSpace::FreeSpace(PageSize page) {
    if (page.width > 0 && page.height > 0) Add({0, 0, page.width, page.height});
}

size_t FreeSpace::FirstNumbered(uint32_t first_new_id) const {
    size_t first = free_.size();
    while (first > 0 && free_[first - 1].id >= first_new_id)
        --first;
    return first;
}

std::optional<Corner> FreeSpace::Find(int32_t width, int32_t height) const {
    std::optional<Corner> best;
    for (const Free& f : free_) {
        if (RectWidth(f.rect) < width || RectHeight(f.rect) < height) continue;
        if (!best || std::pair(f.rect.top, f.rect.left) < std::pair(best->y, best->x))
            best = Corner{f.rect.left, f.rect.top};
    }
    return best;
}

void FreeSpace::Occupy(const PageRect& used) {
    std::vector<PageRect> parts;
    size_t kept = 0;
    for (const Free& f : free_) {
        if (Overlaps(f.rect, used)) {
            AddPartsAround(f.rect, used, parts);
            free_ids_[f.id] = false;
        } else {
            free_[kept++] = f;
        }
    }
    free_.resize(kept);
    // The untouched rectangles were maximal before and stay so, since every new part is a
    // piece of an old rectangle. Only the new parts need the test.
    for (size_t k = 0; k < parts.size(); ++k) {
        if (!LiesInAnother(parts, k) && !LiesInFree(parts[k])) Add(parts[k]);
    }
}

void FreeSpace::Add(const PageRect& rect) {
    free_.push_back({rect, next_id_++});
    free_ids_.push_back(true);
}

bool FreeSpace::LiesInFree(const PageRect& rect) const {
    return std::any_of(free_.begin(), free_.end(),
                       [&rect](const Free& f) { return Contains(f.rect, rect); });
}
