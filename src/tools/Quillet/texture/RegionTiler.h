// Packing the regions of a texture page into the page: sort by one of four keys, then place
// each record at the top-most, then left-most free position; what does not fit is parked to
// the right of the page.
//
// Plain logic over rectangles: no document, no project. The texture page document copies its
// regions into records, tiles them and writes the winning positions back.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/qlt_types.h"

enum TileOrder : int {
    TILE_BY_AREA = 0,
    TILE_BY_HEIGHT_THEN_WIDTH = 1,
    TILE_BY_WIDTH_THEN_HEIGHT = 2,
    TILE_BY_CIRCUMFERENCE = 3,
    TILE_BEST_FIT = 4,
    TILE_TIGHTEST = 5,
};

// Parked records wait at (page width + kOutsideMargin, 0); the same margin widens a page's
// working extent.
constexpr int32_t kOutsideMargin = 8;

// The working copy of one region for one pass: its rectangle enlarged by the spacing on its
// right and lower sides.
struct TileRecord {
    std::string name;
    PageRect rect;
};

// The comparison of the key `order` (0 to 3), qsort style for largest first: 1 when a goes
// after b, otherwise -1. It never answers 0.
int CompareTileRecords(int order, const TileRecord& a, const TileRecord& b);

// Sorts largest first by the key of `order` (0 to 3; any other value leaves the order as
// given). Records of fully equal keys keep their order.
void SortTileRecords(int order, std::vector<TileRecord>& records);

// Sorts as SortTileRecords does and places every record in the sorted order: at the
// top-most, then left-most position where it lies wholly on the page and overlaps none placed
// before it, else parked. Empty records (no width or no height) are never obstacles.
void PlaceRegions(int order, std::vector<TileRecord>& records, PageSize page);

// The regions' records for one pass: each rectangle moved to (page width, 0) and enlarged by
// `spacing` on its right and lower sides, in the regions' list order.
std::vector<TileRecord> MakeTileRecords(const std::vector<TREGION>& regions, unsigned spacing,
                                        PageSize page);

// The bounding rectangle's area over the sum of the records' areas; 0 when the sum is not
// above 0.
float FitRatio(const std::vector<TileRecord>& records);

struct Tiling {
    std::vector<TileRecord> records;  // the winning pass, in its sorted order
    float fit_ratio = 0;
};

// Runs one pass for `order` 0 to 3, or four passes for TILE_BEST_FIT keeping the first with
// the strictly smallest ratio.
Tiling TileRecords(const std::vector<TREGION>& regions, int order, unsigned spacing, PageSize page);
