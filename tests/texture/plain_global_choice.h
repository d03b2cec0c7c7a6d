// Global-choice packing by brute force: at every step, every waiting record is scored in every
// maximal free rectangle of the page, which is found again from scratch, and contact is
// measured against every record placed. Far too slow for large pages; the tests hold the
// fast packing against it.
#pragma once

#include <vector>

#include "texture/TightestPacker.h"

void PlaceByGlobalChoiceByBruteForce(FreeRectScore score, std::vector<TileRecord>& records,
                                     PageSize page);
