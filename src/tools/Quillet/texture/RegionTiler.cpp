#include "texture/RegionTiler.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "model/page_rect.h"

namespace {

// The sort key of `order`, compared lexicographically. Keys are exact in 64 bits: an area or
// a half perimeter of two 32-bit sizes need not fit in 32 bits.
std::pair<int64_t, int64_t> SortKey(int order, const PageRect& r) {
    const int64_t width = RectWidth(r);
    const int64_t height = RectHeight(r);
    switch (order) {
        case TILE_BY_AREA:
            return {width * height, 0};
        case TILE_BY_HEIGHT_THEN_WIDTH:
            return {height, width};
        case TILE_BY_WIDTH_THEN_HEIGHT:
            return {width, height};
        case TILE_BY_CIRCUMFERENCE:
            return {width + height, 0};
        default:
            return {0, 0};
    }
}

// `r` with its top-left corner at (x, y) and its size kept; sums wrap as 32-bit integers.
PageRect MovedTo(const PageRect& r, int32_t x, int32_t y) {
    return OffsetRect(AtOrigin(r), x, y);
}

PageRect Parked(const PageRect& r, PageSize page) {
    return OffsetRect(MovedTo(r, page.width, 0), kOutsideMargin, 0);
}

int32_t WrappedSum(int32_t value, unsigned addend) {
    return static_cast<int32_t>(static_cast<uint32_t>(value) + addend);
}

bool Overlaps(const PageRect& a, const PageRect& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

bool Contains(const PageRect& outer, const PageRect& inner) {
    return outer.left <= inner.left && outer.top <= inner.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}

struct Corner {
    int32_t x;
    int32_t y;
};

// The free part of the page as its maximal free rectangles: every free rectangle of the page
// lies inside one of them, and none of them lies inside another. The top-most, then left-most
// free position of a record is always the top-left corner of one of them, which is what makes
// placing cheap. All rectangles lie within the page, so their edges and sizes fit in 32 bits.
class FreeSpace {
public:
    explicit FreeSpace(PageSize page) {
        if (page.width > 0 && page.height > 0) free_.push_back({0, 0, page.width, page.height});
    }

    // The top-most, then left-most corner at which `width` by `height` (both above 0) is free.
    std::optional<Corner> Find(int32_t width, int32_t height) const {
        std::optional<Corner> best;
        for (const PageRect& f : free_) {
            if (RectWidth(f) < width || RectHeight(f) < height) continue;
            if (!best || std::pair(f.top, f.left) < std::pair(best->y, best->x))
                best = Corner{f.left, f.top};
        }
        return best;
    }

    // Takes `used`, which lies in a free rectangle, out of the free space.
    void Occupy(const PageRect& used) {
        std::vector<PageRect> parts;
        size_t kept = 0;
        for (size_t i = 0; i < free_.size(); ++i) {
            if (Overlaps(free_[i], used))
                AddPartsAround(free_[i], used, parts);
            else
                free_[kept++] = free_[i];
        }
        free_.resize(kept);
        // The untouched rectangles were maximal before and stay so, since every new part is a
        // piece of an old rectangle. Only the new parts need the test.
        for (size_t k = 0; k < parts.size(); ++k) {
            if (!LiesInAnother(parts, k) && !LiesInFree(parts[k])) free_.push_back(parts[k]);
        }
    }

private:
    // The parts of `f` to the left of, right of, above and below `used`, each as wide or as
    // tall as `f`; together they are all of `f` that `used` leaves free.
    static void AddPartsAround(const PageRect& f, const PageRect& used,
                               std::vector<PageRect>& parts) {
        if (used.left > f.left) parts.push_back({f.left, f.top, used.left, f.bottom});
        if (used.right < f.right) parts.push_back({used.right, f.top, f.right, f.bottom});
        if (used.top > f.top) parts.push_back({f.left, f.top, f.right, used.top});
        if (used.bottom < f.bottom) parts.push_back({f.left, used.bottom, f.right, f.bottom});
    }

    // Whether another part holds part k. No two parts are equal: parts of two maximal
    // rectangles on the same side of `used` differ in an edge that `used` does not cut, and
    // parts on different sides differ in the edge that it does.
    static bool LiesInAnother(const std::vector<PageRect>& parts, size_t k) {
        for (size_t q = 0; q < parts.size(); ++q) {
            if (q != k && Contains(parts[q], parts[k])) return true;
        }
        return false;
    }

    bool LiesInFree(const PageRect& r) const {
        return std::any_of(free_.begin(), free_.end(),
                           [&r](const PageRect& f) { return Contains(f, r); });
    }

    std::vector<PageRect> free_;
};

// The position of one record: the top-most, then left-most at which it lies wholly on the
// page and overlaps nothing placed before it, else parked. That is where a scan of the rows,
// jumping past whatever it collides with, comes to rest: every x it jumps over collides, so it
// stops at the smallest free x of the first row with room; and a record that reaches below
// the page from that row would reach lower from any later one.
PageRect Place(const PageRect& rect, PageSize page, FreeSpace& space) {
    const int32_t width = RectWidth(rect);
    const int32_t height = RectHeight(rect);
    if (width <= 0 || height <= 0) {
        // An empty record collides with nothing, so the first row takes it at x = 0; it is
        // parked only when its size passes the page's, and it is never an obstacle.
        return width > page.width || height > page.height ? Parked(rect, page)
                                                          : MovedTo(rect, 0, 0);
    }
    const std::optional<Corner> corner = space.Find(width, height);
    if (!corner) return Parked(rect, page);
    const PageRect placed = MovedTo(rect, corner->x, corner->y);
    space.Occupy(placed);
    return placed;
}

}  // namespace

int CompareTileRecords(int order, const TileRecord& a, const TileRecord& b) {
    return SortKey(order, a.rect) < SortKey(order, b.rect) ? 1 : -1;
}

void SortTileRecords(int order, std::vector<TileRecord>& records) {
    if (order < TILE_BY_AREA || order > TILE_BY_CIRCUMFERENCE) return;
    // The comparison answers -1 both ways for equal keys, so it is no ordering by itself.
    // "x comes before y" when comparing y with x answers 1, that is when x's key is the
    // greater: a strict weak ordering, which stable_sort is entitled to. Equal keys keep their
    // list order, the same on every run and every platform.
    std::stable_sort(records.begin(), records.end(),
                     [order](const TileRecord& x, const TileRecord& y) {
                         return CompareTileRecords(order, y, x) == 1;
                     });
}

void PlaceRegions(int order, std::vector<TileRecord>& records, PageSize page) {
    SortTileRecords(order, records);
    FreeSpace space(page);
    for (TileRecord& record : records)
        record.rect = Place(record.rect, page, space);
}

std::vector<TileRecord> MakeTileRecords(const std::vector<TREGION>& regions, unsigned spacing,
                                        PageSize page) {
    std::vector<TileRecord> records;
    records.reserve(regions.size());
    for (const TREGION& region : regions) {
        PageRect rect = MovedTo(region.rect, page.width, 0);
        rect.right = WrappedSum(rect.right, spacing);
        rect.bottom = WrappedSum(rect.bottom, spacing);
        records.push_back({region.name, rect});
    }
    return records;
}

float FitRatio(const std::vector<TileRecord>& records) {
    if (records.empty()) return 0;
    float total = 0;
    PageRect bounds = records.front().rect;
    for (const TileRecord& record : records) {
        // Each area is a wrapped 32-bit product and the sum a 32-bit float: that rounding
        // decides which of two close passes wins.
        const uint32_t area = static_cast<uint32_t>(RectWidth(record.rect)) *
                              static_cast<uint32_t>(RectHeight(record.rect));
        total += static_cast<float>(static_cast<int32_t>(area));
        bounds = UnionRect(bounds, record.rect);
    }
    if (total <= 0) return 0;
    // The exact product, rounded once.
    const float bounding_area =
        static_cast<float>(int64_t{RectWidth(bounds)} * int64_t{RectHeight(bounds)});
    return bounding_area / total;
}

Tiling TileRecords(const std::vector<TREGION>& regions, int order, unsigned spacing,
                   PageSize page) {
    if (order == TILE_TIGHTEST) order = TILE_BEST_FIT;
    const int passes = order == TILE_BEST_FIT ? 4 : 1;
    Tiling best;
    for (int pass = 0; pass < passes; ++pass) {
        std::vector<TileRecord> records = MakeTileRecords(regions, spacing, page);
        PlaceRegions(order == TILE_BEST_FIT ? pass : order, records, page);
        const float ratio = FitRatio(records);
        if (pass == 0 || ratio < best.fit_ratio) best = {std::move(records), ratio};
    }
    return best;
}
