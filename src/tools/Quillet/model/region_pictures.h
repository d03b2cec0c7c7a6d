// Moving pixels between a page's picture and the pictures of its regions: what a texture page
// cuts and paints, and what a layout page draws from.
//
// Failure style: null when no picture can be made; copies are clipped to both pictures.
#pragma once

#include "core_images.h"
#include "qlt_types.h"

// Converts the `size` part of `source` at `from` into `destination` at `to`; each lock is
// clipped to its picture, and a part that starts beyond the source copies nothing.
void CopyPart(Core::Image& destination, Point to, Core::Image& source, Point from, Point size);

// Cuts `rect` out of `page`: a picture of the rectangle's size (a negative width or height
// counts as 0) in the page's format, where pixels off the page are 0. Null when no picture
// of that size can be made.
ImagePtr CutRegion(Core::Image& page, const PageRect& rect);
