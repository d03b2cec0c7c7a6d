// Draws a layout page as the game will: the page's pieces in list order into a picture of
// the page at zoom 1, over mid grey, with locked pieces tinted red.
#pragma once

#include "model/qlt_types.h"

class LayoutRenderer {
public:
    // A new 8888 picture of `page` at `size`; null when none can be made.
    ImagePtr Render(const LPAGE& page, PageSize size);
};
