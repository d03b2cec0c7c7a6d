#include "texture/RegionTiler.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "model/page_rect.h"
#include "texture/TightestPacker.h"

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
    return MoveRecordTo(r, {x, y});
}

int32_t WrappedSum(int32_t value, unsigned addend) {
    return static_cast<int32_t>(static_cast<uint32_t>(value) + addend);
}

// The position of one record: the top-most, then left-most at which it lies wholly on the
// page and overlaps nothing placed before it, else parked. That is where a scan of the rows,
// jumping past whatever it collides with, comes to rest: every x it jumps over collides, so it
// stops at the smallest free x of the first row with room; and a record that reaches below
// the page from that row would reach lower from any later one.
PageRect Place(const PageRect& rect, PageSize page, FreeSpace& space) {
    const int32_t width = RectWidth(rect);
    const int32_t height = RectHeight(rect);
    if (width <= 0 || height <= 0) return PlaceEmptyRecord(rect, page);
    const std::optional<Corner> corner = space.Find(width, height);
    if (!corner) return ParkRecord(rect, page);
    const PageRect placed = MoveRecordTo(rect, *corner);
    space.Occupy(placed);
    return placed;
}

}  // namespace

PageRect MoveRecordTo(const PageRect& rect, Corner corner) {
    return OffsetRect(AtOrigin(rect), corner.x, corner.y);
}

PageRect ParkRecord(const PageRect& rect, PageSize page) {
    return OffsetRect(MovedTo(rect, page.width, 0), kOutsideMargin, 0);
}

PageRect PlaceEmptyRecord(const PageRect& rect, PageSize page) {
    // It is parked only when its size passes the page's, and it is never an obstacle.
    return RectWidth(rect) > page.width || RectHeight(rect) > page.height ? ParkRecord(rect, page)
                                                                          : MovedTo(rect, 0, 0);
}

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
    if (order == TILE_TIGHTEST) {
        std::vector<TileRecord> records = MakeTileRecords(regions, spacing, page);
        PlaceTightest(records, page);
        const float ratio = FitRatio(records);
        return {std::move(records), ratio};
    }
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
