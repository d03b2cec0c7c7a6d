#include "core_pixels.h"

#include <array>

#include "pixel_traits.h"

namespace Core {
namespace {

constexpr const char* kFormatNames[] = {
    "PIXEL_FORMAT_555 ", "PIXEL_FORMAT_565 ",  "PIXEL_FORMAT_1555", "PIXEL_FORMAT_4444",
    "PIXEL_FORMAT_888 ", "PIXEL_FORMAT_8888",  "PIXEL_FORMAT_X888", "PIXEL_FORMAT_GREY",
    "PIXEL_FORMAT_DXT1", "PIXEL_FORMAT_DXT2",  "PIXEL_FORMAT_DXT3", "PIXEL_FORMAT_DXT4",
    "PIXEL_FORMAT_DXT5", "PIXEL_FORMAT_COUNT",
};

// One channel of a 16-bit layout.
struct WordChannel {
    const uint8_t* widen;
    uint32_t mask;
    uint32_t shift;
    const uint8_t* narrow;
};

PixelLayout word_layout(std::array<WordChannel, 4> channels) {
    PixelLayout layout;
    for (size_t channel = 0; channel < 4; ++channel) {
        layout.widen[channel] = channels[channel].widen;
        layout.mask[channel] = channels[channel].mask;
        layout.shift[channel] = channels[channel].shift;
        layout.narrow[channel] = channels[channel].narrow;
    }
    return layout;
}

PixelLayout byte_layout(std::array<uint32_t, 4> offsets, std::array<uint32_t, 4> masks,
                        std::array<uint32_t, 4> shifts) {
    PixelLayout layout;
    for (size_t channel = 0; channel < 4; ++channel) {
        layout.offset[channel] = offsets[channel];
        layout.mask[channel] = masks[channel];
        layout.shift[channel] = shifts[channel];
    }
    return layout;
}

PixelLayout layout_of(PixelFormat format) {
    const WordChannel none{nullptr, 0, 0, nullptr};
    const auto five = [](uint32_t mask, uint32_t shift) {
        return WordChannel{widen_5.data(), mask, shift, narrow_5.data()};
    };
    switch (format) {
        case PIXEL_FORMAT_555:
            return word_layout({none, five(0x7C00, 10), five(0x03E0, 5), five(0x001F, 0)});
        case PIXEL_FORMAT_565:
            // Red's mask has one bit too many; the shift by 11 drops it.
            return word_layout({none, five(0xFC00, 11),
                                WordChannel{widen_6.data(), 0x07E0, 5, narrow_6.data()},
                                five(0x001F, 0)});
        case PIXEL_FORMAT_1555:
            return word_layout({WordChannel{widen_1.data(), 0x8000, 15, narrow_1.data()},
                                five(0x7C00, 10), five(0x03E0, 5), five(0x001F, 0)});
        case PIXEL_FORMAT_4444: {
            const auto four = [](uint32_t mask, uint32_t shift) {
                return WordChannel{widen_4.data(), mask, shift, narrow_4.data()};
            };
            return word_layout(
                {four(0xF000, 12), four(0x0F00, 8), four(0x00F0, 4), four(0x000F, 0)});
        }
        case PIXEL_FORMAT_888:
            return byte_layout({0, 1, 0, 0}, {0, 0xFF00, 0xFF00, 0x00FF}, {0, 8, 8, 0});
        case PIXEL_FORMAT_8888:
            return byte_layout({2, 2, 0, 0}, {0xFF00, 0x00FF, 0xFF00, 0x00FF}, {8, 0, 8, 0});
        case PIXEL_FORMAT_X888:
            return byte_layout({2, 2, 0, 0}, {0, 0x00FF, 0xFF00, 0x00FF}, {0, 0, 8, 0});
        case PIXEL_FORMAT_GREY:
            return byte_layout({0, 0, 0, 0}, {0, 0x00FF, 0x00FF, 0x00FF}, {0, 0, 0, 0});
        default:
            return {};
    }
}

}  // namespace

uint32_t bytes_per_pixel(PixelFormat format) {
    uint32_t bytes = 0;
    Detail::with_format(format,
                        [&bytes]<PixelFormat F>() { bytes = Detail::PixelTraits<F>::bytes; });
    return bytes;
}

bool fill_pixels(const PixelsLock& lock, uint32_t x, uint32_t y, uint32_t width, uint32_t height,
                 const Colour& colour) {
    if (!lock.has_access()) return is_image_format(lock.format);
    const UntypedPixels& view = *lock.view;
    return Detail::with_format(lock.format, [&]<PixelFormat F>() {
        constexpr uint32_t bytes = Detail::PixelTraits<F>::bytes;
        uint8_t packed[bytes];
        Detail::PixelTraits<F>::pack(packed, colour);
        for (uint32_t row = y; row < y + height && row < view.height; ++row) {
            uint8_t* line =
                static_cast<uint8_t*>(view.pixels) + int64_t{view.stride_in_bytes} * row;
            for (uint32_t column = x; column < x + width && column < view.width; ++column)
                std::memcpy(line + size_t{column} * bytes, packed, bytes);
        }
    });
}

PixelLayout pixel_layout(const PixelsLock& lock) {
    PixelLayout layout = layout_of(lock.format);
    if (!is_image_format(lock.format)) return layout;
    layout.bytes_per_pixel = bytes_per_pixel(lock.format);
    if (lock.view != nullptr) {
        layout.pixels = lock.view->pixels;
        layout.stride_in_bytes = lock.view->stride_in_bytes;
    }
    return layout;
}

const char* pixel_format_name(PixelFormat format) {
    return format >= 0 && format <= PIXEL_FORMAT_COUNT ? kFormatNames[format]
                                                       : "PIXEL_FORMAT_COUNT";
}

}  // namespace Core
