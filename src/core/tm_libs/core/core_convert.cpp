#include "core_convert.h"

#include <algorithm>

#include "pixel_traits.h"

namespace Core {

bool convert_pixels(const PixelsLock& destination, const PixelsLock& source) {
    if (!is_image_format(destination.format) || !is_image_format(source.format)) return false;
    if (source.format == PIXEL_FORMAT_GREY && destination.format == PIXEL_FORMAT_555) return false;
    if (destination.view == nullptr || source.view == nullptr) return false;
    const UntypedPixels& to = *destination.view;
    const UntypedPixels& from = *source.view;
    const uint32_t width = std::min(to.width, from.width);
    const uint32_t height = std::min(to.height, from.height);
    if (width == 0 || height == 0) return true;
    if (to.pixels == nullptr || from.pixels == nullptr) return false;
    const Detail::RowConverter convert = Detail::row_converter(source.format, destination.format);
    for (uint32_t row = 0; row < height; ++row) {
        convert(static_cast<uint8_t*>(to.pixels) + int64_t{to.stride_in_bytes} * row,
                static_cast<const uint8_t*>(from.pixels) + int64_t{from.stride_in_bytes} * row,
                width);
    }
    return true;
}

}  // namespace Core
