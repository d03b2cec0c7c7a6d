// Folding and wildcard matching of the IO manager's paths.
#pragma once

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

// The folded word at `offset`; bytes past the end read as 0.
inline uint64_t folded_word_at(std::string_view text, size_t offset) {
    uint64_t word = 0;
    const size_t count = text.size() - offset < 8 ? text.size() - offset : 8;
    std::memcpy(&word, text.data() + offset, count);
    return fold_word(word);
}

}  // namespace Detail

// A hash of the folded text and a comparison of folded texts, both without a folded copy:
// eight bytes at a time, so a lookup costs little more than one of the text as it stands.
inline uint64_t folded_hash(std::string_view text) {
    uint64_t hash = text.size() * 0x9E3779B97F4A7C15ull;
    for (size_t offset = 0; offset < text.size(); offset += 8) {
        hash = (hash ^ Detail::folded_word_at(text, offset)) * 0xBF58476D1CE4E5B9ull;
        hash ^= hash >> 31;
    }
    return hash;
}

inline bool folded_equal(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t offset = 0; offset < a.size(); offset += 8) {
        if (Detail::folded_word_at(a, offset) != Detail::folded_word_at(b, offset)) return false;
    }
    return true;
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
