// What the Create Texture dialog gives: the page's size and the form of its file.
#pragma once

#include <cstdint>

#include "core_pixels.h"

struct TextureDialogData {
    // The control ids of the size buttons, which the dialog remembers as the chosen size.
    static constexpr uint32_t kUserSize = 1046;
    static constexpr uint32_t kSquare256 = 1008;

    uint32_t bit_depth = 32;  // 16 or 32
    uint32_t size_choice = kSquare256;
    uint16_t width = 256;
    uint16_t height = 256;
    bool alpha = true;

    // The file's format: 1555 or 8888 with alpha, 555 or 888 without; so a page of 32 bits
    // without alpha is a 24-bit file.
    Core::PixelFormat SaveFormat() const {
        if (alpha) return bit_depth == 16 ? Core::PIXEL_FORMAT_1555 : Core::PIXEL_FORMAT_8888;
        return bit_depth == 16 ? Core::PIXEL_FORMAT_555 : Core::PIXEL_FORMAT_888;
    }
};
