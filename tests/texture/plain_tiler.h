// The per-row scan that places regions by brute force, pixel row by pixel row, exactly as the
// tiling rules read. Far too slow for large pages; the tests and the benchmark hold the fast
// placement against it.
#pragma once

#include <vector>

#include "texture/RegionTiler.h"

// Sorts as PlaceRegions does, then places each record by scanning the rows of the page.
void PlaceRegionsByScan(int order, std::vector<TileRecord>& records, PageSize page);
