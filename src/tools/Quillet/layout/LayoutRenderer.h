// Draws a layout page as the game will: the page's pieces in list order into a picture of
// the page at zoom 1, over mid grey, with locked pieces tinted red. The window and
// quillet-cli draw through it alike, so both show the same pixels.
//
// Failure style: boxes captioned "Error", each text at most once for the life of the
// renderer; what cannot be drawn is left out and the rest of the page is drawn.
#pragma once

#include "RegionCache.h"
#include "model/qlt_types.h"

class LayoutRenderer {
public:
    // The largest page side that can be drawn.
    static constexpr int32_t kLargestSide = 16384;

    // A PIXEL_FORMAT_8888 picture of `page` at `size`, through the open project; null
    // ("Unable to create tpage") when a side is negative or above kLargestSide or the
    // picture cannot be made. `previous`, the picture of an earlier drawing, is drawn over
    // anew when it has that size, which spares a page-sized allocation at every change.
    ImagePtr Render(const LPAGE& page, PageSize size, ImagePtr previous = nullptr);

    // The region pictures kept from one drawing to the next.
    const RegionCache& Cache() const { return cache_; }
    // How many boxes the renderer has shown: a window compares it around a drawing.
    size_t BoxesShown() const { return boxes_.Told(); }

private:
    RegionCache cache_;
    BoxesOnce boxes_;
};
