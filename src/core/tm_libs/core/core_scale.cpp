#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

#include "core_convert.h"
#include "core_images.h"

namespace Core {
namespace {

using View = Pixels<Colour>;

View as_colours(const PixelsLock& lock) {
    const UntypedPixels& view = *lock.view;
    return View(static_cast<Colour*>(view.pixels), view.width, view.height, view.stride_in_bytes);
}

struct ImageDeleter {
    void operator()(Image* image) const { destroy_image(image); }
};
using OwnedImage = std::unique_ptr<Image, ImageDeleter>;

void copy_rows(const View& destination, const View& source) {
    for (uint32_t row = 0; row < destination.height; ++row)
        std::memcpy(destination.row(row), source.row(row),
                    size_t{destination.width} * sizeof(Colour));
}

// The centre of each destination pixel is sampled.
void scale_nearest(const View& destination, const View& source) {
    if (destination.width == source.width && destination.height == source.height)
        return copy_rows(destination, source);
    const float rx = static_cast<float>(source.width) / static_cast<float>(destination.width);
    const float ry = static_cast<float>(source.height) / static_cast<float>(destination.height);
    for (uint32_t y = 0; y < destination.height; ++y) {
        const auto row = std::min(static_cast<uint32_t>(static_cast<float>(y) * ry + ry * 0.5f),
                                  source.height - 1);
        Colour* out = destination.row(y);
        const Colour* in = source.row(row);
        for (uint32_t x = 0; x < destination.width; ++x) {
            const auto column = std::min(
                static_cast<uint32_t>(static_cast<float>(x) * rx + rx * 0.5f), source.width - 1);
            out[x] = in[column];
        }
    }
}

// One line of samples resampled to another length: a span of r source pixels per
// destination pixel, summed with partial weights when shrinking, blended when enlarging.
void resample_line(Colour* out, uint32_t out_count, size_t out_step, const Colour* in,
                   uint32_t in_count, size_t in_step) {
    const float r = static_cast<float>(in_count) / static_cast<float>(out_count);
    const uint32_t last = in_count - 1;
    float a = 0.0f;
    for (uint32_t i = 0; i < out_count; ++i, a += r) {
        const float end = a + r;
        const uint32_t first = std::min(static_cast<uint32_t>(a), last);
        const uint32_t later = std::min(static_cast<uint32_t>(end), last);
        float sum[4] = {};
        const auto add = [&](uint32_t index, float weight) {
            const Colour& c = in[index * in_step];
            sum[0] += c.blue * weight;
            sum[1] += c.green * weight;
            sum[2] += c.red * weight;
            sum[3] += c.alpha * weight;
        };
        if (r >= 1.0f) {
            if (first == later) {
                add(first, r);
            } else {
                add(first, static_cast<float>(first + 1) - a);
                for (uint32_t index = first + 1; index < later; ++index)
                    add(index, 1.0f);
                add(later, end - static_cast<float>(later));
            }
            for (float& channel : sum)
                channel *= 1.0f / r;
        } else if (first == later) {
            add(first, 1.0f);
        } else {
            const float share = (end - static_cast<float>(later)) / r;
            add(later, share);
            add(first, 1.0f - share);
        }
        const auto channel = [](float value) {
            return static_cast<uint8_t>(std::clamp(std::lround(value), 0L, 255L));
        };
        out[i * out_step] = {channel(sum[0]), channel(sum[1]), channel(sum[2]), channel(sum[3])};
    }
}

size_t step_of(const View& view) {
    return static_cast<size_t>(view.stride_in_bytes) / sizeof(Colour);
}

// Rows are resampled into a picture of the source's width and the destination's height,
// then columns: a pass whose length does not change is a copy.
bool scale_smooth(const View& destination, const View& source) {
    OwnedImage middle(create_image(source.width, destination.height, PIXEL_FORMAT_8888));
    if (!middle) return false;
    const View between = as_colours(middle->lock_read_write(nullptr));
    for (uint32_t column = 0; column < source.width; ++column) {
        if (source.height == destination.height) {
            for (uint32_t row = 0; row < source.height; ++row)
                between.row(row)[column] = source.row(row)[column];
        } else {
            resample_line(between.pixels + column, destination.height, step_of(between),
                          source.pixels + column, source.height, step_of(source));
        }
    }
    for (uint32_t row = 0; row < destination.height; ++row) {
        if (source.width == destination.width)
            std::memcpy(destination.row(row), between.row(row),
                        size_t{source.width} * sizeof(Colour));
        else
            resample_line(destination.row(row), destination.width, 1, between.row(row),
                          source.width, 1);
    }
    middle->unlock();
    return true;
}

bool scale_box(const View& destination, const View& source) {
    if (source.width % destination.width != 0 || source.height % destination.height != 0)
        return scale_smooth(destination, source);
    const uint32_t fx = source.width / destination.width;
    const uint32_t fy = source.height / destination.height;
    if (fx == 1 && fy == 1) {
        copy_rows(destination, source);
        return true;
    }
    const uint32_t n = fx * fy;
    for (uint32_t y = 0; y < destination.height; ++y) {
        for (uint32_t x = 0; x < destination.width; ++x) {
            uint32_t sum[4] = {};
            for (uint32_t dy = 0; dy < fy; ++dy) {
                const Colour* in = source.row(y * fy + dy) + x * fx;
                for (uint32_t dx = 0; dx < fx; ++dx) {
                    sum[0] += in[dx].blue;
                    sum[1] += in[dx].green;
                    sum[2] += in[dx].red;
                    sum[3] += in[dx].alpha;
                }
            }
            const auto mean = [n](uint32_t total) {
                return static_cast<uint8_t>((total + n / 2) / n);
            };
            destination.row(y)[x] = {mean(sum[0]), mean(sum[1]), mean(sum[2]), mean(sum[3])};
        }
    }
    return true;
}

// A 32-bit picture holding `lock`, or the lock itself when it is 32-bit already.
bool as_8888(const PixelsLock& lock, bool convert, OwnedImage& temporary, View& view) {
    if (lock.format == PIXEL_FORMAT_8888) {
        view = as_colours(lock);
        return true;
    }
    temporary.reset(create_image(lock.view->width, lock.view->height, PIXEL_FORMAT_8888));
    if (!temporary) return false;
    const PixelsLock own = temporary->lock_read_write(nullptr);
    view = as_colours(own);
    return !convert || convert_pixels(own, lock);
}

}  // namespace

bool scale_pixels(const PixelsLock& destination, int filter, const PixelsLock& source) {
    if (!destination.has_access() || !source.has_access()) return false;
    if (filter < SCALE_NEAREST || filter > SCALE_BOX) return false;
    OwnedImage temporary_destination;
    OwnedImage temporary_source;
    View to;
    View from;
    if (!as_8888(destination, false, temporary_destination, to) ||
        !as_8888(source, true, temporary_source, from))
        return false;
    if (to.width == 0 || to.height == 0) return true;
    if (from.width == 0 || from.height == 0) return false;
    const bool scaled = filter == SCALE_NEAREST  ? (scale_nearest(to, from), true)
                        : filter == SCALE_SMOOTH ? scale_smooth(to, from)
                                                 : scale_box(to, from);
    if (!scaled) return false;
    if (!temporary_destination) return true;
    return convert_pixels(destination, temporary_destination->lock_read(nullptr));
}

}  // namespace Core
