#include <cstring>

#include "core_convert.h"
#include "pixel_traits.h"

namespace Core {
namespace {

// The bit fields each 16-bit format averages; byte formats average each byte.
struct Field {
    uint32_t mask;
    uint32_t shift;
};

template <PixelFormat F>
constexpr auto kWordFields = [] {
    if constexpr (F == PIXEL_FORMAT_555)
        return std::array<Field, 3>{{{0x1F, 0}, {0x1F, 5}, {0x1F, 10}}};
    else if constexpr (F == PIXEL_FORMAT_565)
        return std::array<Field, 3>{{{0x1F, 0}, {0x3F, 5}, {0x1F, 11}}};
    else if constexpr (F == PIXEL_FORMAT_1555)
        return std::array<Field, 4>{{{0x1F, 0}, {0x1F, 5}, {0x1F, 10}, {0x1, 15}}};
    else
        return std::array<Field, 4>{{{0xF, 0}, {0xF, 4}, {0xF, 8}, {0xF, 12}}};
}();

template <PixelFormat F>
void average(uint8_t* out, const uint8_t* a, const uint8_t* b, const uint8_t* c, const uint8_t* d) {
    constexpr uint32_t bytes = Detail::PixelTraits<F>::bytes;
    if constexpr (bytes == 2) {
        const uint32_t words[4] = {Detail::load16(a), Detail::load16(b), Detail::load16(c),
                                   Detail::load16(d)};
        uint32_t result = 0;
        for (const Field& field : kWordFields<F>) {
            uint32_t sum = 2;
            for (const uint32_t word : words)
                sum += (word >> field.shift) & field.mask;
            result |= ((sum >> 2) & field.mask) << field.shift;
        }
        Detail::store16(out, static_cast<int>(result));
    } else {
        for (uint32_t byte = 0; byte < bytes; ++byte)
            out[byte] = static_cast<uint8_t>((a[byte] + b[byte] + c[byte] + d[byte] + 2) >> 2);
    }
}

template <PixelFormat F>
void reduce(const UntypedPixels& view, uint32_t size) {
    constexpr uint32_t bytes = Detail::PixelTraits<F>::bytes;
    auto* base = static_cast<uint8_t*>(view.pixels);
    const auto row = [&](uint32_t y) { return base + int64_t{view.stride_in_bytes} * y; };
    // Row y is written after rows 2y and 2y + 1 were read, and never before them.
    for (uint32_t y = 0; y < size / 2; ++y) {
        for (uint32_t x = 0; x < size / 2; ++x) {
            const uint8_t* top = row(2 * y) + 2 * x * bytes;
            const uint8_t* bottom = row(2 * y + 1) + 2 * x * bytes;
            uint8_t pixel[bytes];
            average<F>(pixel, top, top + bytes, bottom, bottom + bytes);
            std::memcpy(row(y) + x * bytes, pixel, bytes);
        }
    }
}

}  // namespace

bool reduce_by_half(const PixelsLock& lock, int size) {
    if (!lock.has_access() || size < 0 || static_cast<uint32_t>(size) > lock.view->width ||
        static_cast<uint32_t>(size) > lock.view->height)
        return false;
    return Detail::with_format(
        lock.format, [&]<PixelFormat F>() { reduce<F>(*lock.view, static_cast<uint32_t>(size)); });
}

}  // namespace Core
