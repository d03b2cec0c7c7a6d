// Each image format's pixel as one machine word, unpacked to channels and packed again by
// arithmetic alone: no table lookups and no branches, so the compiler can run a whole row
// through vector registers.
//
// These are a second statement of the rule in pixel_traits.h, made for speed; the tests hold
// them against it for every 16-bit pixel, every grey and random 24- and 32-bit pixels. The
// widenings are exact for every input: 5 bits widen by (v * 1053 + 65) >> 7, which gives the
// table's 91 for 11 as well; 6 bits by (v * 259 + 33) >> 6.
#pragma once

#include <cstdint>

#include "core_pixels.h"

namespace Core::Detail {

// Channels of 8 bits kept in 16-bit lanes: the widest sum (the grey weights) fits.
struct Channels {
    uint16_t blue, green, red, alpha;
};

inline uint16_t lane(uint32_t value) {
    return static_cast<uint16_t>(value);
}
inline uint16_t widened_1(uint32_t v) {
    return lane(v * 255u);
}
inline uint16_t widened_4(uint32_t v) {
    return lane(v * 17u);
}
inline uint16_t widened_5(uint32_t v) {
    return lane(lane(v * 1053u + 65u) >> 7);
}
inline uint16_t widened_6(uint32_t v) {
    return lane(lane(v * 259u + 33u) >> 6);
}

// Three bytes as one unit, so an 888 row is an array of words like the others.
struct Bytes3 {
    uint8_t byte[3];
};

template <PixelFormat F>
struct PixelWord;

template <>
struct PixelWord<PIXEL_FORMAT_555> {
    using Word = uint16_t;
    static Channels unpack(Word w) {
        return {widened_5(w & 31u), widened_5((w >> 5) & 31u), widened_5((w >> 10) & 31u), 255};
    }
    static Word pack(const Channels& c) {
        return lane((uint32_t{c.blue} >> 3) | ((uint32_t{c.green} >> 3) << 5) |
                    ((uint32_t{c.red} >> 3) << 10));
    }
};

template <>
struct PixelWord<PIXEL_FORMAT_565> {
    using Word = uint16_t;
    static Channels unpack(Word w) {
        return {widened_5(w & 31u), widened_6((w >> 5) & 63u), widened_5((w >> 11) & 31u), 255};
    }
    static Word pack(const Channels& c) {
        return lane((uint32_t{c.blue} >> 3) | ((uint32_t{c.green} >> 2) << 5) |
                    ((uint32_t{c.red} >> 3) << 11));
    }
};

template <>
struct PixelWord<PIXEL_FORMAT_1555> {
    using Word = uint16_t;
    static Channels unpack(Word w) {
        return {widened_5(w & 31u), widened_5((w >> 5) & 31u), widened_5((w >> 10) & 31u),
                widened_1((w >> 15) & 1u)};
    }
    static Word pack(const Channels& c) {
        return lane((uint32_t{c.blue} >> 3) | ((uint32_t{c.green} >> 3) << 5) |
                    ((uint32_t{c.red} >> 3) << 10) | ((uint32_t{c.alpha} >> 7) << 15));
    }
};

template <>
struct PixelWord<PIXEL_FORMAT_4444> {
    using Word = uint16_t;
    static Channels unpack(Word w) {
        return {widened_4(w & 15u), widened_4((w >> 4) & 15u), widened_4((w >> 8) & 15u),
                widened_4((w >> 12) & 15u)};
    }
    static Word pack(const Channels& c) {
        return lane((uint32_t{c.blue} >> 4) | ((uint32_t{c.green} >> 4) << 4) |
                    ((uint32_t{c.red} >> 4) << 8) | ((uint32_t{c.alpha} >> 4) << 12));
    }
};

template <>
struct PixelWord<PIXEL_FORMAT_888> {
    using Word = Bytes3;
    static Channels unpack(Word w) { return {w.byte[0], w.byte[1], w.byte[2], 255}; }
    static Word pack(const Channels& c) {
        return {{static_cast<uint8_t>(c.blue), static_cast<uint8_t>(c.green),
                 static_cast<uint8_t>(c.red)}};
    }
};

template <>
struct PixelWord<PIXEL_FORMAT_8888> {
    using Word = uint32_t;
    static Channels unpack(Word w) {
        return {lane(w & 255u), lane((w >> 8) & 255u), lane((w >> 16) & 255u), lane(w >> 24)};
    }
    static Word pack(const Channels& c) {
        return uint32_t{c.blue} | (uint32_t{c.green} << 8) | (uint32_t{c.red} << 16) |
               (uint32_t{c.alpha} << 24);
    }
};

template <>
struct PixelWord<PIXEL_FORMAT_X888> {
    using Word = uint32_t;
    // The fourth byte is never read: it means nothing.
    static Channels unpack(Word w) {
        return {lane(w & 255u), lane((w >> 8) & 255u), lane((w >> 16) & 255u), 255};
    }
    static Word pack(const Channels& c) {
        return uint32_t{c.blue} | (uint32_t{c.green} << 8) | (uint32_t{c.red} << 16) | 0xFF000000u;
    }
};

template <>
struct PixelWord<PIXEL_FORMAT_GREY> {
    using Word = uint8_t;
    static Channels unpack(Word w) { return {w, w, w, w}; }
    // The weights add up to 254, so the sum stays below 65,536.
    static Word pack(const Channels& c) {
        const uint16_t sum =
            lane(lane(lane(28u * c.blue) + lane(150u * c.green)) + lane(lane(76u * c.red) + 127u));
        return static_cast<uint8_t>(sum / 254u);
    }
};

}  // namespace Core::Detail
