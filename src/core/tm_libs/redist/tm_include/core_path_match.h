// Folding and wildcard matching of the IO manager's paths.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace Core {

// ASCII letters to lower case; every other byte, UTF-8 included, stays as it is.
inline char fold_char(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
std::string fold_path(std::string_view path);

namespace Detail {

constexpr uint64_t kByteOnes = 0x0101010101010101ull;

// Folds the ASCII capitals among eight bytes: a byte below 0x80 whose value lies in 'A'..'Z'
// gains 0x20. No byte carries into its neighbour.
inline uint64_t fold_word(uint64_t word) {
    const uint64_t low_bits = word & (0x7F * kByteOnes);
    const uint64_t at_least_a = low_bits + (0x80 - 'A') * kByteOnes;
    const uint64_t beyond_z = low_bits + (0x80 - 'Z' - 1) * kByteOnes;
    const uint64_t capitals = at_least_a & ~beyond_z & ~word & (0x80 * kByteOnes);
    return word | (capitals >> 2);
}

// Eight or four bytes as a little-endian number, whatever the machine: byte i of the text
// is byte lane i of the word, so that words of whole loads and of tails agree.
template <typename Word>
inline Word load_little(const char* bytes) {
    Word word;
    std::memcpy(&word, bytes, sizeof word);
    if constexpr (std::endian::native == std::endian::big) {
        if constexpr (sizeof word == 8) word = __builtin_bswap64(word);
        if constexpr (sizeof word == 4) word = __builtin_bswap32(word);
    }
    return word;
}

// The folded word of the eight bytes at `at`.
inline uint64_t folded_word(const char* at) {
    return fold_word(load_little<uint64_t>(at));
}

// The folded word of the text's last `text.size() % 8` bytes, in lanes 0 and up, the others
// 0. Loads of a fixed size, overlapping where they must, without reading past the text: a
// copy of a variable length would be a library call, and its bytes stored one by one and
// read back as a word stall the load.
inline uint64_t folded_tail(std::string_view text) {
    const size_t count = text.size() % 8;
    if (count == 0) return 0;
    const char* end = text.data() + text.size();
    uint64_t word = 0;
    if (text.size() >= 8) {
        word = load_little<uint64_t>(end - 8) >> (8 * (8 - count));
    } else if (count >= 4) {
        const uint64_t first = load_little<uint32_t>(text.data());
        const uint64_t last = load_little<uint32_t>(end - 4);
        word = first | last << (8 * (count - 4));
    } else {
        const auto byte = [&text](size_t at) { return uint64_t{static_cast<uint8_t>(text[at])}; };
        word =
            byte(0) | byte(count / 2) << (8 * (count / 2)) | byte(count - 1) << (8 * (count - 1));
    }
    return fold_word(word);
}

}  // namespace Detail

// A hash of the folded text and a comparison of folded texts, both without a folded copy:
// eight bytes at a time, so a lookup costs little more than one of the text as it stands.
inline uint64_t folded_hash(std::string_view text) {
    const auto mix = [](uint64_t hash, uint64_t word) {
        hash = (hash ^ word) * 0xBF58476D1CE4E5B9ull;
        return hash ^ (hash >> 31);
    };
    uint64_t hash = text.size() * 0x9E3779B97F4A7C15ull;
    size_t offset = 0;
    for (; offset + 8 <= text.size(); offset += 8)
        hash = mix(hash, Detail::folded_word(text.data() + offset));
    return offset < text.size() ? mix(hash, Detail::folded_tail(text)) : hash;
}

inline bool folded_equal(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t offset = 0; offset + 8 <= a.size(); offset += 8) {
        if (Detail::folded_word(a.data() + offset) != Detail::folded_word(b.data() + offset))
            return false;
    }
    return Detail::folded_tail(a) == Detail::folded_tail(b);
}

// The wildcard match of IO paths; case-sensitive (callers fold first).
//
// Up to and including the pattern's last '/', '*' stops at '/', '?' takes one character
// but never '/', and '/' or '\' match only '/'. The last component is a list of
// alternatives separated by ';' in which '*' also crosses '/' when `star_crosses_slash`
// and '<' always does. A pattern without '/' judges only the name's last component.
// "abc.*" matches "abc".
bool match(std::string_view pattern, std::string_view name, bool star_crosses_slash);

}  // namespace Core
