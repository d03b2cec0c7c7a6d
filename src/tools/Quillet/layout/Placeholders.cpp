#include "Placeholders.h"

#include <cstdlib>
#include <functional>

namespace {

using Painter = std::function<Core::Colour(int32_t x, int32_t y)>;

constexpr Core::Colour Grey(uint8_t level) {
    return {level, level, level, 0xFF};
}

ImagePtr Paint(const Painter& colour_at) {
    constexpr auto side = static_cast<uint32_t>(kPlaceholderSide);
    ImagePtr picture(Core::create_image(side, side, Core::PIXEL_FORMAT_888));
    if (picture == nullptr) return nullptr;
    for (uint32_t y = 0; y < side; ++y) {
        for (uint32_t x = 0; x < side; ++x)
            picture->set_pixel(x, y, colour_at(static_cast<int32_t>(x), static_cast<int32_t>(y)));
    }
    return picture;
}

// Film: holes 4 pixels wide every 8, in two bands of 6 rows; the frame between the bands.
constexpr int32_t kBandRows = 6;
constexpr int32_t kBandMargin = 3;
constexpr int32_t kFrameInset = 12;

bool InSprocketHole(int32_t x, int32_t y) {
    const bool in_band =
        (y >= kBandMargin && y < kBandMargin + kBandRows) ||
        (y >= kPlaceholderSide - kBandMargin - kBandRows && y < kPlaceholderSide - kBandMargin);
    return in_band && (x + 2) % 8 < 4;
}

bool InFrame(int32_t x, int32_t y) {
    return x >= 4 && x < kPlaceholderSide - 4 && y >= kFrameInset &&
           y < kPlaceholderSide - kFrameInset;
}

// A triangle pointing right, its tip at (42, 32) and its back edge on x = 24 from y = 22 to 42.
bool InPlayTriangle(int32_t x, int32_t y) {
    constexpr int32_t back = 24;
    constexpr int32_t tip = 42;
    constexpr int32_t middle = 32;
    constexpr int32_t half_height = 10;
    if (x < back || x > tip) return false;
    return std::abs(y - middle) * (tip - back) <= (tip - x) * half_height;
}

Core::Colour FilmColour(int32_t x, int32_t y) {
    if (InSprocketHole(x, y)) return Grey(0xE8);
    if (!InFrame(x, y)) return {0x28, 0x22, 0x20, 0xFF};
    if (InPlayTriangle(x, y)) return Grey(0xFF);
    // A sky from deep blue at the top of the frame to pale blue at its foot.
    const auto row = static_cast<uint8_t>((y - kFrameInset) * 3);
    return {static_cast<uint8_t>(0xA0 + row / 2), static_cast<uint8_t>(0x60 + row),
            static_cast<uint8_t>(0x30 + row), 0xFF};
}

bool OnDash(int32_t x, int32_t y) {
    constexpr int32_t border = 2;
    constexpr int32_t far = kPlaceholderSide - border;
    const bool across = y < border || y >= far;
    const bool down = x < border || x >= far;
    if (!across && !down) return false;
    // Dashes of 4 on, 4 off, counted along the edge they lie on.
    return ((across ? x : y) / 4) % 2 == 0;
}

bool OnCross(int32_t x, int32_t y) {
    return std::abs(x - y) < 2 || std::abs(x + y - (kPlaceholderSide - 1)) < 2;
}

Core::Colour EmptyColour(int32_t x, int32_t y) {
    if (OnDash(x, y)) return Grey(0x50);
    if (OnCross(x, y)) return Grey(0xB4);
    return Grey(0xF2);
}

}  // namespace

ImagePtr MakeFmvPlaceholder() {
    return Paint(FilmColour);
}

ImagePtr MakeEmptyPlaceholder() {
    return Paint(EmptyColour);
}
