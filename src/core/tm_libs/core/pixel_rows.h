// Converting a row of pixels from one image format to another: the one loop under every
// conversion, TGA read and TGA write.
#pragma once

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

}  // namespace Core::Detail
