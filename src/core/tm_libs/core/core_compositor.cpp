#include "core_compositor.h"

#include <algorithm>
#include <array>
#include <vector>

namespace Core {
namespace {

// The source index that destination offset `at` (from the rectangle's start) samples.
uint32_t sample(int64_t at, int64_t source_length, int64_t destination_length) {
    return static_cast<uint32_t>(((2 * at + 1) * source_length) / (2 * destination_length));
}

// Every destination pixel inside the buffer gets `put` with its source pixel. The source
// column of each destination column is worked out once for the whole blit, not per row.
template <typename Put>
void stretch(const Pixels<Colour>& destination, const DrawRect& area,
             const Pixels<const Colour>& source, Put put) {
    if (area.width <= 0 || area.height <= 0 || source.width == 0 || source.height == 0) return;
    const int64_t first_x = std::max<int64_t>(area.left, 0);
    const int64_t last_x = std::min<int64_t>(int64_t{area.left} + area.width, destination.width);
    const int64_t first_y = std::max<int64_t>(area.top, 0);
    const int64_t last_y = std::min<int64_t>(int64_t{area.top} + area.height, destination.height);
    if (first_x >= last_x || first_y >= last_y) return;
    std::vector<uint32_t> columns(static_cast<size_t>(last_x - first_x));
    for (size_t index = 0; index < columns.size(); ++index)
        columns[index] =
            sample(first_x + static_cast<int64_t>(index) - area.left, source.width, area.width);
    for (int64_t y = first_y; y < last_y; ++y) {
        const Colour* in = source.row(sample(y - area.top, source.height, area.height));
        Colour* out = destination.row(static_cast<uint32_t>(y)) + first_x;
        for (size_t index = 0; index < columns.size(); ++index)
            put(out[index], in[columns[index]]);
    }
}

// The blend of one pixel; inline, as the blits call it for every pixel they cannot copy.
inline Colour blend(const Colour& destination, const Colour& source, uint8_t constant_alpha) {
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

bool is_clear(const Colour& colour) {
    return (colour.blue | colour.green | colour.red | colour.alpha) == 0;
}

// The blend of one fixed source pixel, channel by channel, for every value a destination
// channel can hold: what a one-pixel source stretched over an area (a tint) needs.
struct FixedBlend {
    std::array<uint8_t, 256> blue, green, red, alpha;

    FixedBlend(const Colour& source, uint8_t constant_alpha) {
        for (uint32_t value = 0; value < 256; ++value) {
            const Colour below{static_cast<uint8_t>(value), static_cast<uint8_t>(value),
                               static_cast<uint8_t>(value), static_cast<uint8_t>(value)};
            const Colour blended = blend(below, source, constant_alpha);
            blue[value] = blended.blue;
            green[value] = blended.green;
            red[value] = blended.red;
            alpha[value] = blended.alpha;
        }
    }
    void apply(Colour& out) const {
        out = {blue[out.blue], green[out.green], red[out.red], alpha[out.alpha]};
    }
};

}  // namespace

Colour blend_pixel(const Colour& destination, const Colour& source, uint8_t constant_alpha) {
    return blend(destination, source, constant_alpha);
}

Pixels<Colour> lock_colours_for_writing(Image& image) {
    const PixelsLock lock = image.lock_write(nullptr);
    return {static_cast<Colour*>(lock.view->pixels), lock.view->width, lock.view->height,
            lock.view->stride_in_bytes};
}

Pixels<const Colour> lock_colours_for_reading(Image& image) {
    const PixelsLock lock = image.lock_read(nullptr);
    return {static_cast<const Colour*>(lock.view->pixels), lock.view->width, lock.view->height,
            lock.view->stride_in_bytes};
}

void stretch_copy(const Pixels<Colour>& destination, const DrawRect& area,
                  const Pixels<const Colour>& source) {
    stretch(destination, area, source, [](Colour& out, const Colour& in) { out = in; });
}

void alpha_blend(const Pixels<Colour>& destination, const DrawRect& area,
                 const Pixels<const Colour>& source, uint8_t constant_alpha) {
    if (source.width == 1 && source.height == 1) {
        const FixedBlend blend(*source.row(0), constant_alpha);
        stretch(destination, area, source,
                [&blend](Colour& out, const Colour&) { blend.apply(out); });
        return;
    }
    if (constant_alpha != 255) {
        stretch(destination, area, source, [constant_alpha](Colour& out, const Colour& in) {
            out = blend(out, in, constant_alpha);
        });
        return;
    }
    // At full strength the blend of an opaque pixel is the pixel itself, and that of an
    // all-zero pixel is what lies below: the arithmetic gives exactly these bytes.
    stretch(destination, area, source, [](Colour& out, const Colour& in) {
        if (in.alpha == 255)
            out = in;
        else if (!is_clear(in))
            out = blend(out, in, 255);
    });
}

}  // namespace Core
