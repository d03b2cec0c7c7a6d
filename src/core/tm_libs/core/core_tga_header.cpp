#include <algorithm>
#include <cstring>

#include "core_tga.h"

namespace Core {
namespace {

uint16_t word_at(const uint8_t* bytes, size_t offset) {
    return static_cast<uint16_t>(bytes[offset] | (bytes[offset + 1] << 8));
}

void put_word(uint8_t* bytes, size_t offset, uint16_t value) {
    bytes[offset] = static_cast<uint8_t>(value);
    bytes[offset + 1] = static_cast<uint8_t>(value >> 8);
}

constexpr const char* kTgaFormatNames[] = {
    "TGA_FORMAT_555 ", "TGA_FORMAT_ERROR", "TGA_FORMAT_1555", "TGA_FORMAT_ERROR",
    "TGA_FORMAT_888 ", "TGA_FORMAT_8888",  "TGA_FORMAT_X888", "TGA_FORMAT_GREY",
};

}  // namespace

void read_tga_header(TgaReader& reader, TgaHeader& header) {
    uint8_t bytes[kTgaHeaderBytes] = {};
    reader.buffer.read(bytes, kTgaHeaderBytes);
    header.id_length = bytes[0];
    header.colour_map_type = bytes[1];
    header.image_type = bytes[2];
    header.colour_map_first = word_at(bytes, 3);
    header.colour_map_length = word_at(bytes, 5);
    header.colour_map_bits = bytes[7];
    header.x_origin = word_at(bytes, 8);
    header.y_origin = word_at(bytes, 10);
    header.width = word_at(bytes, 12);
    header.height = word_at(bytes, 14);
    header.pixel_depth = bytes[16];
    header.descriptor = bytes[17];
    std::memset(header.id, 0, sizeof header.id);
    reader.buffer.read(header.id, header.id_length);
}

PixelFormat tga_format(const TgaHeader& header) {
    unsigned bits = 0;
    switch (header.image_type) {
        case 1:
        case 9:
            bits = header.colour_map_bits;
            break;
        case 2:
        case 10:
            bits = header.pixel_depth;
            break;
        case 3:
        case 11:
            return TGA_FORMAT_GREY;
        default:
            return TGA_FORMAT_ERROR;
    }
    // An OR, not a sum: 15 bits with 2 alpha bits reads as 30 too.
    switch ((header.descriptor & 15u) | (bits * 2)) {
        case 30:
        case 32:
            return TGA_FORMAT_555;
        case 33:
            return TGA_FORMAT_1555;
        case 48:
            return TGA_FORMAT_888;
        case 64:
            return TGA_FORMAT_X888;
        case 72:
            return TGA_FORMAT_8888;
        default:
            return TGA_FORMAT_ERROR;
    }
}

void make_tga_header(TgaHeader& header, uint16_t width, uint16_t height, PixelFormat format,
                     bool right_to_left, bool top_to_bottom, const char* id) {
    header = TgaHeader{};
    header.image_type = 2;
    header.width = width;
    header.height = height;
    header.pixel_depth = format == PIXEL_FORMAT_888                                   ? 24
                         : format == PIXEL_FORMAT_8888 || format == PIXEL_FORMAT_X888 ? 32
                                                                                      : 16;
    const uint8_t alpha_bits = format == PIXEL_FORMAT_1555   ? 1
                               : format == PIXEL_FORMAT_8888 ? 8
                                                             : 0;
    header.descriptor =
        static_cast<uint8_t>(alpha_bits | (right_to_left ? 0x10 : 0) | (top_to_bottom ? 0x20 : 0));
    if (id != nullptr) {
        const size_t length = std::min(std::strlen(id), sizeof header.id - 1);
        std::memcpy(header.id, id, length);
        header.id_length = static_cast<uint8_t>(std::min<size_t>(length, 255));
    }
    if (format == PIXEL_FORMAT_GREY) {
        header.image_type = 3;
        header.pixel_depth = 8;
    }
}

void write_tga_header(TgaWriter& writer, const TgaHeader& header) {
    uint8_t bytes[kTgaHeaderBytes] = {};
    bytes[0] = header.id_length;
    bytes[1] = header.colour_map_type;
    bytes[2] = header.image_type;
    put_word(bytes, 3, header.colour_map_first);
    put_word(bytes, 5, header.colour_map_length);
    bytes[7] = header.colour_map_bits;
    put_word(bytes, 8, header.x_origin);
    put_word(bytes, 10, header.y_origin);
    put_word(bytes, 12, header.width);
    put_word(bytes, 14, header.height);
    bytes[16] = header.pixel_depth;
    bytes[17] = header.descriptor & 63;
    writer.write(bytes, kTgaHeaderBytes);
    writer.write(header.id, header.id_length);
}

const char* tga_format_name(PixelFormat format) {
    return format >= 0 && format < kImageFormatCount ? kTgaFormatNames[format] : "TGA_FORMAT_ERROR";
}

}  // namespace Core
