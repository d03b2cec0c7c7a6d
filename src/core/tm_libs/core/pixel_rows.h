// Converting a row of pixels from one image format to another: the one loop under every
// conversion, TGA read and TGA write.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "core_pixels.h"

namespace Core::Detail {

// Converts `count` pixels; a copy when both formats are the same. The two rows must not
// overlap.
using RowConverter = void (*)(uint8_t* destination, const uint8_t* source, uint32_t count);

// The converter of the pair; both must be image formats.
RowConverter row_converter(PixelFormat source, PixelFormat destination);

// The one pair that convert_pixels refuses: grey into 555 has never had a routine, while
// grey into 565 has.
inline bool conversion_refused(PixelFormat source, PixelFormat destination) {
    return source == PIXEL_FORMAT_GREY && destination == PIXEL_FORMAT_555;
}

// Reverses the order of `count` pixels of `bytes` each, in place: a row that runs right to
// left.
inline void reverse_pixels(uint8_t* row, uint32_t count, uint32_t bytes) {
    for (uint32_t left = 0, right = count; left + 1 < right; ++left) {
        --right;
        std::swap_ranges(row + size_t{left} * bytes, row + size_t{left + 1} * bytes,
                         row + size_t{right} * bytes);
    }
}

}  // namespace Core::Detail
