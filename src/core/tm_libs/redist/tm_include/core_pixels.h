// Pixel formats and the plain records through which all bulk code reads and writes
// pictures in memory.
//
// Failure style: image code answers null, false or an all-zero record; it never throws.
// Rows run from top to bottom in memory; row 0 is the top of the picture.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <type_traits>

#include "core_assert.h"

namespace Core {

// The values are fixed: the TGA code, the factory and the conversion table index by them.
enum PixelFormat : int32_t {
    PIXEL_FORMAT_555 = 0,
    PIXEL_FORMAT_565 = 1,
    PIXEL_FORMAT_1555 = 2,
    PIXEL_FORMAT_4444 = 3,
    PIXEL_FORMAT_888 = 4,
    PIXEL_FORMAT_8888 = 5,
    PIXEL_FORMAT_X888 = 6,
    PIXEL_FORMAT_GREY = 7,
    PIXEL_FORMAT_DXT1 = 8,  // block formats: names only, refused everywhere
    PIXEL_FORMAT_DXT2 = 9,
    PIXEL_FORMAT_DXT3 = 10,
    PIXEL_FORMAT_DXT4 = 11,
    PIXEL_FORMAT_DXT5 = 12,
    PIXEL_FORMAT_COUNT = 13,  // also the invalid format
};

enum CompressedPixelFormat : int32_t {
    COMPRESSED_PIXEL_FORMAT_DXT1 = 0,
    COMPRESSED_PIXEL_FORMAT_DXT3 = 1,
    COMPRESSED_PIXEL_FORMAT_DXT5 = 2,
    COMPRESSED_PIXEL_FORMAT_COUNT = 3,
};

// The formats an image can have: 0 to 7.
constexpr int kImageFormatCount = 8;
inline bool is_image_format(PixelFormat format) {
    return format >= 0 && format < kImageFormatCount;
}
// Bytes of one pixel of an image format; 0 for any other value.
uint32_t bytes_per_pixel(PixelFormat format);

// Four bytes in memory order blue, green, red, alpha: the order of an 8888 pixel.
struct Colour {
    uint8_t blue = 0;
    uint8_t green = 0;
    uint8_t red = 0;
    uint8_t alpha = 0;
    friend bool operator==(const Colour&, const Colour&) = default;
};
static_assert(sizeof(Colour) == 4);

struct Size {
    int32_t width = 0;
    int32_t height = 0;
    friend bool operator==(const Size&, const Size&) = default;
};

struct PixelRect {
    uint32_t x = 0;
    uint32_t y = 0;
    uint32_t width = 0;
    uint32_t height = 0;
};

// A view of a rectangle of pixels that it does not own. The stride is in bytes.
template <typename T>
struct Pixels {
    T* pixels = nullptr;
    uint32_t width = 0;
    uint32_t height = 0;
    int32_t stride_in_bytes = 0;

    Pixels() = default;
    Pixels(T* pixels_, uint32_t width_, uint32_t height_, int32_t stride_in_bytes_)
        : pixels(pixels_), width(width_), height(height_), stride_in_bytes(stride_in_bytes_) {
        if constexpr (!std::is_void_v<T>) {
            CORE_ASSERT_MSG(
                std::abs(int64_t{stride_in_bytes_}) >= int64_t{width_} * int64_t{sizeof(T)},
                "Get Edda, a stride change from pixels to bytes has probably been "
                "missed.");
        }
    }

    // The first pixel of row `y`.
    T* row(uint32_t y) const {
        return reinterpret_cast<T*>(
            reinterpret_cast<std::conditional_t<std::is_const_v<T>, const uint8_t*, uint8_t*>>(
                pixels) +
            int64_t{stride_in_bytes} * y);
    }

    // Writes `value` into every pixel of the rectangle, clipped to the view.
    template <typename U = T>
    void fill(uint32_t x, uint32_t y, uint32_t fill_width, uint32_t fill_height,
              const U& value) requires(!std::is_void_v<U>) {
        CORE_ASSERT(fill_width <= this->width && fill_height <= this->height);
        for (uint32_t row_index = y; row_index < y + fill_height && row_index < height;
             ++row_index) {
            T* first = row(row_index);
            for (uint32_t column = x; column < x + fill_width && column < width; ++column)
                first[column] = value;
        }
    }
};

using UntypedPixels = Pixels<void>;

// What a lock answers: the view (owned by the image) and how to read it. A null view, or
// a null `pixels` inside it, means no access.
struct PixelsLock {
    UntypedPixels* view = nullptr;
    PixelFormat format = PIXEL_FORMAT_COUNT;

    bool has_access() const { return view != nullptr && view->pixels != nullptr; }
};

// Packs `colour` once by the rules of set_pixel and fills the rectangle, clipped to the
// lock. False for a format that is not an image format.
bool fill_pixels(const PixelsLock& lock, uint32_t x, uint32_t y, uint32_t width, uint32_t height,
                 const Colour& colour);

// A generic description of a locked picture, for code that walks channels without knowing
// the format. Channels are a, r, g, b in every array.
struct PixelLayout {
    const uint8_t* widen[4] = {};  // widening tables; null for byte and absent channels
    uint32_t offset[4] = {};       // byte offset of the 16-bit word holding the channel
    uint32_t mask[4] = {};         // applied to that word
    uint32_t shift[4] = {};        // right shift after the mask
    void* pixels = nullptr;
    int32_t stride_in_bytes = 0;
    uint32_t bytes_per_pixel = 0;
    const uint8_t* narrow[4] = {};  // narrowing tables, the extended form
};
PixelLayout pixel_layout(const PixelsLock& lock);

namespace Detail {
template <size_t N, typename Rule>
constexpr std::array<uint8_t, N> make_table(Rule rule) {
    std::array<uint8_t, N> table{};
    for (size_t value = 0; value < N; ++value)
        table[value] = static_cast<uint8_t>(rule(value));
    return table;
}
constexpr size_t narrowed(size_t x, size_t maximum) {
    return (x * maximum + 127) / 255;
}
}  // namespace Detail

// The widening tables, n bits to 8. The 5-bit table widens 11 to 91, not 92: it always has.
inline constexpr auto widen_1 = Detail::make_table<2>([](size_t v) { return v * 255; });
inline constexpr auto widen_4 = Detail::make_table<16>([](size_t v) { return v * 17; });
inline constexpr auto widen_5 =
    Detail::make_table<32>([](size_t v) { return v == 11 ? 91 : (v * 255 + 15) / 31; });
inline constexpr auto widen_6 =
    Detail::make_table<64>([](size_t v) { return (v * 255 + 31) / 63; });

// The narrowing tables, 8 bits to n, with their two exceptions.
inline constexpr auto narrow_1 =
    Detail::make_table<256>([](size_t x) { return x == 127 ? 1 : Detail::narrowed(x, 1); });
inline constexpr auto narrow_4 =
    Detail::make_table<256>([](size_t x) { return Detail::narrowed(x, 15); });
inline constexpr auto narrow_5 =
    Detail::make_table<256>([](size_t x) { return x == 37 ? 5 : Detail::narrowed(x, 31); });
inline constexpr auto narrow_6 =
    Detail::make_table<256>([](size_t x) { return Detail::narrowed(x, 63); });

// "PIXEL_FORMAT_555 ", ...: the enumerators' names, padded to one length; 0 to 13.
const char* pixel_format_name(PixelFormat format);

}  // namespace Core
