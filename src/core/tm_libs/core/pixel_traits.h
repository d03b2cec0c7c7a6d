// How each image format packs and unpacks one pixel: the rule that defines every format.
// The images' get_pixel, set_pixel and fills run it as it stands; the row conversions run a
// faster statement of it (pixel_words.h) that the tests hold against this one.
//
// unpack is get_pixel: channels widened through the tables, alpha 255 where the format
// has none. pack is set_pixel: truncating shifts, the bytes, or the weighted grey.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "core_pixels.h"

namespace Core::Detail {

static_assert(std::endian::native == std::endian::little,
              "16-bit pixels are stored little-endian, as in the files");

inline uint16_t load16(const uint8_t* at) {
    uint16_t word;
    std::memcpy(&word, at, 2);
    return word;
}

inline void store16(uint8_t* at, int word) {
    const auto value = static_cast<uint16_t>(word);
    std::memcpy(at, &value, 2);
}

inline uint8_t grey_of(const Colour& colour) {
    return static_cast<uint8_t>(
        (28u * colour.blue + 150u * colour.green + 76u * colour.red + 127u) / 254u);
}

template <PixelFormat F>
struct PixelTraits;

template <>
struct PixelTraits<PIXEL_FORMAT_555> {
    static constexpr uint32_t bytes = 2;
    static Colour unpack(const uint8_t* at) {
        const uint16_t word = load16(at);
        return {widen_5[word & 31], widen_5[(word >> 5) & 31], widen_5[(word >> 10) & 31], 255};
    }
    static void pack(uint8_t* at, const Colour& c) {
        store16(at, (c.blue >> 3) | ((c.green >> 3) << 5) | ((c.red >> 3) << 10));
    }
};

template <>
struct PixelTraits<PIXEL_FORMAT_565> {
    static constexpr uint32_t bytes = 2;
    static Colour unpack(const uint8_t* at) {
        const uint16_t word = load16(at);
        return {widen_5[word & 31], widen_6[(word >> 5) & 63], widen_5[(word >> 11) & 31], 255};
    }
    static void pack(uint8_t* at, const Colour& c) {
        store16(at, (c.blue >> 3) | ((c.green >> 2) << 5) | ((c.red >> 3) << 11));
    }
};

template <>
struct PixelTraits<PIXEL_FORMAT_1555> {
    static constexpr uint32_t bytes = 2;
    static Colour unpack(const uint8_t* at) {
        const uint16_t word = load16(at);
        return {widen_5[word & 31], widen_5[(word >> 5) & 31], widen_5[(word >> 10) & 31],
                widen_1[word >> 15]};
    }
    static void pack(uint8_t* at, const Colour& c) {
        store16(at, (c.blue >> 3) | ((c.green >> 3) << 5) | ((c.red >> 3) << 10) |
                        ((c.alpha >> 7) << 15));
    }
};

template <>
struct PixelTraits<PIXEL_FORMAT_4444> {
    static constexpr uint32_t bytes = 2;
    static Colour unpack(const uint8_t* at) {
        const uint16_t word = load16(at);
        return {widen_4[word & 15], widen_4[(word >> 4) & 15], widen_4[(word >> 8) & 15],
                widen_4[word >> 12]};
    }
    static void pack(uint8_t* at, const Colour& c) {
        store16(at, (c.blue >> 4) | ((c.green >> 4) << 4) | ((c.red >> 4) << 8) |
                        ((c.alpha >> 4) << 12));
    }
};

template <>
struct PixelTraits<PIXEL_FORMAT_888> {
    static constexpr uint32_t bytes = 3;
    static Colour unpack(const uint8_t* at) { return {at[0], at[1], at[2], 255}; }
    static void pack(uint8_t* at, const Colour& c) {
        at[0] = c.blue;
        at[1] = c.green;
        at[2] = c.red;
    }
};

template <>
struct PixelTraits<PIXEL_FORMAT_8888> {
    static constexpr uint32_t bytes = 4;
    static Colour unpack(const uint8_t* at) { return {at[0], at[1], at[2], at[3]}; }
    static void pack(uint8_t* at, const Colour& c) {
        at[0] = c.blue;
        at[1] = c.green;
        at[2] = c.red;
        at[3] = c.alpha;
    }
};

template <>
struct PixelTraits<PIXEL_FORMAT_X888> {
    static constexpr uint32_t bytes = 4;
    static Colour unpack(const uint8_t* at) { return {at[0], at[1], at[2], 255}; }
    static void pack(uint8_t* at, const Colour& c) {
        at[0] = c.blue;
        at[1] = c.green;
        at[2] = c.red;
        at[3] = 255;
    }
};

template <>
struct PixelTraits<PIXEL_FORMAT_GREY> {
    static constexpr uint32_t bytes = 1;
    static Colour unpack(const uint8_t* at) { return {at[0], at[0], at[0], at[0]}; }
    static void pack(uint8_t* at, const Colour& c) { at[0] = grey_of(c); }
};

// Calls `visit.template operator()<F>()` with the image format `format` as a constant;
// false for any other value.
template <typename Visitor>
bool with_format(PixelFormat format, Visitor&& visit) {
    switch (format) {
        case PIXEL_FORMAT_555:
            visit.template operator()<PIXEL_FORMAT_555>();
            return true;
        case PIXEL_FORMAT_565:
            visit.template operator()<PIXEL_FORMAT_565>();
            return true;
        case PIXEL_FORMAT_1555:
            visit.template operator()<PIXEL_FORMAT_1555>();
            return true;
        case PIXEL_FORMAT_4444:
            visit.template operator()<PIXEL_FORMAT_4444>();
            return true;
        case PIXEL_FORMAT_888:
            visit.template operator()<PIXEL_FORMAT_888>();
            return true;
        case PIXEL_FORMAT_8888:
            visit.template operator()<PIXEL_FORMAT_8888>();
            return true;
        case PIXEL_FORMAT_X888:
            visit.template operator()<PIXEL_FORMAT_X888>();
            return true;
        case PIXEL_FORMAT_GREY:
            visit.template operator()<PIXEL_FORMAT_GREY>();
            return true;
        default:
            return false;
    }
}

}  // namespace Core::Detail
