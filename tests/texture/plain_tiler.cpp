#include "plain_tiler.h"

#include <algorithm>
#include <cstdint>

#include "model/page_rect.h"

namespace {

// The record under test in 64 bits: a position plus a 32-bit size may pass 32 bits.
struct Box {
    int64_t left;
    int64_t top;
    int64_t right;
    int64_t bottom;
};

Box At(int64_t x, int64_t y, const PageRect& size) {
    return {x, y, x + RectWidth(size), y + RectHeight(size)};
}

// A non-empty intersection; touching or empty rectangles do not collide.
bool Collides(const Box& a, const PageRect& b) {
    return std::max<int64_t>(a.left, b.left) < std::min<int64_t>(a.right, b.right) &&
           std::max<int64_t>(a.top, b.top) < std::min<int64_t>(a.bottom, b.bottom);
}

void PlaceByScan(std::vector<TileRecord>& records, size_t i, PageSize page) {
    const PageRect size = records[i].rect;
    Box box = At(0, 0, size);
    for (int64_t y = 0; y < page.height; ++y) {
        box = At(0, y, size);
        bool fitted = false;
        while (!fitted && box.right <= page.width) {
            fitted = true;
            for (size_t j = 0; j < i; ++j) {
                if (Collides(box, records[j].rect)) {
                    box = At(records[j].rect.right, box.top, size);
                    fitted = false;
                    break;
                }
            }
        }
        if (fitted && box.right <= page.width) break;
    }
    const auto moved_to = [&size](int32_t x, int32_t y) {
        return OffsetRect(AtOrigin(size), x, y);
    };
    if (box.bottom > page.height || box.right > page.width)
        records[i].rect = OffsetRect(moved_to(page.width, 0), kOutsideMargin, 0);
    else
        records[i].rect = moved_to(static_cast<int32_t>(box.left), static_cast<int32_t>(box.top));
}

}  // namespace

void PlaceRegionsByScan(int order, std::vector<TileRecord>& records, PageSize page) {
    SortTileRecords(order, records);
    for (size_t i = 0; i < records.size(); ++i)
        PlaceByScan(records, i, page);
}
