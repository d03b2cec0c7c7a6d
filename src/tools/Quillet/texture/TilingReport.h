// What one tiling of a texture page came to: how many regions it placed on the page, which it
// parked beside it, how much of the page they fill, its fit ratio and how long it took. The
// editor's status line and the command line tell it.
//
// Plain logic over regions: no document. The texture page document fills in the tiler's part
// (order, spacing, ratio, time).
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "model/qlt_types.h"

struct TilingReport {
    int order = 0;  // a TileOrder
    unsigned spacing = 0;
    PageSize page;
    size_t regions = 0;
    size_t placed = 0;                // regions lying wholly on the page
    std::vector<std::string> parked;  // the others, in the page's list order
    double fill = 0;                  // the placed regions' own areas over the page's, in percent
    float fit_ratio = 0;
    double milliseconds = 0;  // wall time of the tiling
};

// The placement part of a report: how `regions` lie on a page of `page` now. A page without
// area is filled 0%.
TilingReport MeasurePlacement(const std::vector<TREGION>& regions, PageSize page);

// "Placed P of N regions, fill F%", F with one decimal.
std::string PlacementLine(const TilingReport& report);
// "Fit ratio = R", R with two decimals: the line every tiling has always shown.
std::string FitRatioLine(float fit_ratio);
