// The tightest order: as many regions as possible wholly on the page, then the fewest pixels
// of bounding box. Near a full page, placing regions one by one in a fixed sorted order
// loses: the first large ones take spots that leave gaps nothing else fills. The tightest
// order therefore also packs by global choice, where every step weighs every region that
// waits against every free rectangle of the page and takes the best pair, and keeps the best
// of several packings.
//
// Plain logic over rectangles, as the sort orders are; deterministic for the same records in
// the same order.
#pragma once

#include <vector>

#include "texture/RegionTiler.h"

// How a global-choice packing weighs a record in a free rectangle it fits; smaller is
// better, and equal scores go to the top-most, then left-most rectangle.
enum class FreeRectScore {
    BestShortSide,  // the smaller of the two leftover sides, then the larger
    BestLongSide,   // the larger leftover side, then the smaller
    BestArea,       // the leftover area, then the smaller leftover side
    TopLeft,        // the record's lower edge, then its left edge
    MostContact,    // the most edge shared with the page's sides and the records placed
};

// Places the records by global choice: at every step, of all records that wait and all free
// rectangles they fit, the pair of the best score (then the first record in the list), the
// record at the rectangle's top-left corner. Records that fit nowhere are parked. The list
// keeps its order.
void PlaceByGlobalChoice(FreeRectScore score, std::vector<TileRecord>& records, PageSize page);

// The tightest of the four sort orders' packings and the global-choice packings by every
// score: the most records on the page, then the smallest bounding box, then the first tried.
// So it never places fewer than any sort order does. The list takes the order of the packing
// kept.
void PlaceTightest(std::vector<TileRecord>& records, PageSize page);
