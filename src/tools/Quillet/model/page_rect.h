// Rectangle helpers with the meaning the format's tools always gave them: right and bottom
// exclusive; a rectangle without area is empty.
#pragma once

#include <cstdint>

#include "qlt_types.h"

inline bool IsRectEmpty(const PageRect& r) {
    return r.right <= r.left || r.bottom <= r.top;
}
// `to - from` wrapped to 32 bits as the platform's integers do; a file may hold any two
// edges, and their distance must not be undefined behaviour.
inline int32_t WrappedDifference(int32_t to, int32_t from) {
    return static_cast<int32_t>(static_cast<uint32_t>(to) - static_cast<uint32_t>(from));
}
inline int32_t RectWidth(const PageRect& r) {
    return WrappedDifference(r.right, r.left);
}
inline int32_t RectHeight(const PageRect& r) {
    return WrappedDifference(r.bottom, r.top);
}

// The smallest rectangle holding both; an empty one counts for nothing, and two empty ones
// give the all-zero rectangle.
PageRect UnionRect(const PageRect& a, const PageRect& b);
// The common part, or the all-zero rectangle.
PageRect IntersectRect(const PageRect& a, const PageRect& b);
PageRect OffsetRect(const PageRect& r, int32_t dx, int32_t dy);
bool PtInRect(const PageRect& r, int32_t x, int32_t y);
// Whether `r` lies wholly on a page of `size`: no edge off it, a negative left or top included.
inline bool LiesOnPage(const PageRect& r, PageSize size) {
    return r.left >= 0 && r.top >= 0 && r.right <= size.width && r.bottom <= size.height;
}
// `r` moved so that its top-left corner lies at 0, 0.
inline PageRect AtOrigin(const PageRect& r) {
    return OffsetRect(r, WrappedDifference(0, r.left), WrappedDifference(0, r.top));
}
