#include "core_convert.h"

#include <algorithm>
#include <limits>

#include "pixel_rows.h"

namespace Core {
namespace {

// Whether the rows of `view` lie end to end for `width` pixels of `bytes` each.
bool rows_touch(const UntypedPixels& view, uint32_t width, PixelFormat format) {
    return int64_t{view.stride_in_bytes} == int64_t{width} * bytes_per_pixel(format);
}

}  // namespace

bool convert_pixels(const PixelsLock& destination, const PixelsLock& source) {
    if (!is_image_format(destination.format) || !is_image_format(source.format)) return false;
    if (Detail::conversion_refused(source.format, destination.format)) return false;
    if (destination.view == nullptr || source.view == nullptr) return false;
    const UntypedPixels& to = *destination.view;
    const UntypedPixels& from = *source.view;
    const uint32_t width = std::min(to.width, from.width);
    const uint32_t height = std::min(to.height, from.height);
    if (width == 0 || height == 0) return true;
    if (to.pixels == nullptr || from.pixels == nullptr) return false;
    const Detail::RowConverter convert = Detail::row_converter(source.format, destination.format);
    // Whole pictures of the same shape are one run of pixels: one call, one memcpy when the
    // formats agree.
    if (rows_touch(to, width, destination.format) && rows_touch(from, width, source.format) &&
        uint64_t{width} * height <= std::numeric_limits<uint32_t>::max()) {
        convert(static_cast<uint8_t*>(to.pixels), static_cast<const uint8_t*>(from.pixels),
                width * height);
        return true;
    }
    for (uint32_t row = 0; row < height; ++row) {
        convert(static_cast<uint8_t*>(to.pixels) + int64_t{to.stride_in_bytes} * row,
                static_cast<const uint8_t*>(from.pixels) + int64_t{from.stride_in_bytes} * row,
                width);
    }
    return true;
}

}  // namespace Core
