// Putting pictures on screen buffers with exact integer rules, so that what a view draws
// can be compared byte for byte: a nearest-pixel stretch, and an alpha blend with a
// constant alpha whose source pixels count as premultiplied, as they stand.
//
// A source of SW x SH goes onto the destination rectangle (left, top, DW, DH): destination
// pixel (X, Y) takes source column ((2 (X - left) + 1) * SW) / (2 * DW), and the row
// likewise, computed in 64 bits from the unclipped rectangle. Only pixels inside the
// destination are written; empty sizes draw nothing.
#pragma once

#include <cstdint>

#include "core_images.h"
#include "core_pixels.h"

namespace Core {

struct DrawRect {
    int32_t left = 0;
    int32_t top = 0;
    int32_t width = 0;
    int32_t height = 0;
};

// (a * b + 127) / 255
inline uint32_t multiply_255(uint32_t a, uint32_t b) {
    return (a * b + 127) / 255;
}

// One pixel blended: sa = m(As, K); each colour min(255, m(Cs, K) + m(Cd, 255 - sa)); alpha
// min(255, sa + m(Ad, 255 - sa)).
Colour blend_pixel(const Colour& destination, const Colour& source, uint8_t constant_alpha);

// A whole PIXEL_FORMAT_8888 picture as the blits take it, locked for writing or for reading;
// the caller unlocks the picture when done.
Pixels<Colour> lock_colours_for_writing(Image& image);
Pixels<const Colour> lock_colours_for_reading(Image& image);

// Copies `source` stretched onto `area` of `destination`.
void stretch_copy(const Pixels<Colour>& destination, const DrawRect& area,
                  const Pixels<const Colour>& source);
// Blends `source` stretched onto `area` of `destination` with `constant_alpha`.
void alpha_blend(const Pixels<Colour>& destination, const DrawRect& area,
                 const Pixels<const Colour>& source, uint8_t constant_alpha);

}  // namespace Core
