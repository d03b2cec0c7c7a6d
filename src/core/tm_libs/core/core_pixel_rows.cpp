#include "pixel_rows.h"

#include <array>
#include <cstring>
#include <utility>

#include "pixel_words.h"

namespace Core::Detail {
namespace {

// The loops are plain C++ that the compiler vectorises. On x86-64, GCC also builds each for
// AVX2, and the build the processor can run is chosen when the program loads: the 16-bit
// formats' shifts and multiplies run twice as wide there. (Clang cannot clone templates.)
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
#define CORE_ROW_CLONES __attribute__((target_clones("arch=x86-64-v3", "default")))
#else
#define CORE_ROW_CLONES
#endif

template <typename Word>
void store(uint8_t* at, Word word) {
    std::memcpy(at, &word, sizeof word);
}
// Byte by byte: a copy of the three-byte unit as a whole keeps the compiler from vectorising.
void store(uint8_t* at, Bytes3 word) {
    at[0] = word.byte[0];
    at[1] = word.byte[1];
    at[2] = word.byte[2];
}

template <PixelFormat S, PixelFormat D>
CORE_ROW_CLONES void convert_row(uint8_t* __restrict destination, const uint8_t* __restrict source,
                                 uint32_t count) {
    using From = PixelWord<S>;
    using To = PixelWord<D>;
    if constexpr (S == D) {
        std::memcpy(destination, source, size_t{count} * sizeof(typename From::Word));
    } else {
        for (uint32_t index = 0; index < count; ++index) {
            typename From::Word word;
            std::memcpy(&word, source + size_t{index} * sizeof word, sizeof word);
            const typename To::Word packed = To::pack(From::unpack(word));
            store(destination + size_t{index} * sizeof packed, packed);
        }
    }
}

// The 64 converters, indexed [source][destination].
template <size_t... Index>
constexpr auto make_row_converters(std::index_sequence<Index...>) {
    return std::array<RowConverter, sizeof...(Index)>{
        &convert_row<static_cast<PixelFormat>(Index / kImageFormatCount),
                     static_cast<PixelFormat>(Index % kImageFormatCount)>...};
}

const auto kRowConverters =
    make_row_converters(std::make_index_sequence<kImageFormatCount * kImageFormatCount>());

}  // namespace

RowConverter row_converter(PixelFormat source, PixelFormat destination) {
    return kRowConverters[static_cast<size_t>(source * kImageFormatCount + destination)];
}

}  // namespace Core::Detail
