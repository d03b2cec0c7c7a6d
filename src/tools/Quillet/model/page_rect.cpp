#include "page_rect.h"

#include <algorithm>

PageRect UnionRect(const PageRect& a, const PageRect& b) {
    if (IsRectEmpty(a)) return IsRectEmpty(b) ? PageRect{} : b;
    if (IsRectEmpty(b)) return a;
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

PageRect IntersectRect(const PageRect& a, const PageRect& b) {
    const PageRect common{std::max(a.left, b.left), std::max(a.top, b.top),
                          std::min(a.right, b.right), std::min(a.bottom, b.bottom)};
    return IsRectEmpty(common) ? PageRect{} : common;
}

PageRect OffsetRect(const PageRect& r, int32_t dx, int32_t dy) {
    // Sums wrap as 32-bit integers do on the platform, without undefined behaviour.
    const auto add = [](int32_t a, int32_t b) {
        return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
    };
    return {add(r.left, dx), add(r.top, dy), add(r.right, dx), add(r.bottom, dy)};
}

bool PtInRect(const PageRect& r, int32_t x, int32_t y) {
    return x >= r.left && x < r.right && y >= r.top && y < r.bottom;
}
