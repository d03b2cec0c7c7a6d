// TGA files made byte by byte for the reader's tests.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core_memory_buffer.h"
#include "core_tga.h"

namespace tga_bytes {

struct Destroy {
    void operator()(Core::Image* image) const { Core::destroy_image(image); }
};
using Owned = std::unique_ptr<Core::Image, Destroy>;

// The 18 header bytes of a file, then whatever follows.
inline std::string Header(uint8_t type, uint16_t width, uint16_t height, uint8_t depth,
                          uint8_t descriptor, uint16_t map_first = 0, uint16_t map_length = 0,
                          uint8_t map_bits = 0) {
    std::string bytes(18, '\0');
    bytes[2] = static_cast<char>(type);
    bytes[3] = static_cast<char>(map_first);
    bytes[4] = static_cast<char>(map_first >> 8);
    bytes[5] = static_cast<char>(map_length);
    bytes[6] = static_cast<char>(map_length >> 8);
    bytes[7] = static_cast<char>(map_bits);
    bytes[12] = static_cast<char>(width);
    bytes[13] = static_cast<char>(width >> 8);
    bytes[14] = static_cast<char>(height);
    bytes[15] = static_cast<char>(height >> 8);
    bytes[16] = static_cast<char>(depth);
    bytes[17] = static_cast<char>(descriptor);
    return bytes;
}

inline Core::TgaReader Reader(const std::string& bytes) {
    Core::TgaReader reader;
    reader.buffer.attach(
        std::make_shared<Core::MemoryBufferImpl>(std::vector<uint8_t>(bytes.begin(), bytes.end())));
    return reader;
}

inline std::string Pixel32(uint8_t b, uint8_t g, uint8_t r, uint8_t a) {
    return {static_cast<char>(b), static_cast<char>(g), static_cast<char>(r), static_cast<char>(a)};
}

}  // namespace tga_bytes
