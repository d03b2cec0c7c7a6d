#include "core_compositor.h"

#include <algorithm>

namespace Core {
namespace {

// The source index that destination offset `at` (from the rectangle's start) samples.
uint32_t sample(int64_t at, int64_t source_length, int64_t destination_length) {
    return static_cast<uint32_t>(((2 * at + 1) * source_length) / (2 * destination_length));
}

template <typename Put>
void stretch(const Pixels<Colour>& destination, const DrawRect& area,
             const Pixels<const Colour>& source, Put put) {
    if (area.width <= 0 || area.height <= 0 || source.width == 0 || source.height == 0) return;
    const int64_t first_x = std::max<int64_t>(area.left, 0);
    const int64_t last_x = std::min<int64_t>(int64_t{area.left} + area.width, destination.width);
    const int64_t first_y = std::max<int64_t>(area.top, 0);
    const int64_t last_y = std::min<int64_t>(int64_t{area.top} + area.height, destination.height);
    for (int64_t y = first_y; y < last_y; ++y) {
        const Colour* in = source.row(sample(y - area.top, source.height, area.height));
        Colour* out = destination.row(static_cast<uint32_t>(y));
        for (int64_t x = first_x; x < last_x; ++x)
            put(out[x], in[sample(x - area.left, source.width, area.width)]);
    }
}

}  // namespace

Colour blend_pixel(const Colour& destination, const Colour& source, uint8_t constant_alpha) {
    const uint32_t source_alpha = multiply_255(source.alpha, constant_alpha);
    const uint32_t keep = 255 - source_alpha;
    const auto colour = [&](uint8_t from, uint8_t to) {
        return static_cast<uint8_t>(
            std::min<uint32_t>(255, multiply_255(from, constant_alpha) + multiply_255(to, keep)));
    };
    return {colour(source.blue, destination.blue), colour(source.green, destination.green),
            colour(source.red, destination.red),
            static_cast<uint8_t>(
                std::min<uint32_t>(255, source_alpha + multiply_255(destination.alpha, keep)))};
}

void stretch_copy(const Pixels<Colour>& destination, const DrawRect& area,
                  const Pixels<const Colour>& source) {
    stretch(destination, area, source, [](Colour& out, const Colour& in) { out = in; });
}

void alpha_blend(const Pixels<Colour>& destination, const DrawRect& area,
                 const Pixels<const Colour>& source, uint8_t constant_alpha) {
    stretch(destination, area, source, [constant_alpha](Colour& out, const Colour& in) {
        out = blend_pixel(out, in, constant_alpha);
    });
}

}  // namespace Core
