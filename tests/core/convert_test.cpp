#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>

#include "core_compositor.h"
#include "core_convert.h"
#include "core_images.h"

namespace {

using namespace Core;

struct Destroy {
    void operator()(Image* image) const { destroy_image(image); }
};
using Owned = std::unique_ptr<Image, Destroy>;

Owned Make(uint32_t width, uint32_t height, PixelFormat format) {
    return Owned(create_image(width, height, format));
}

// Every pixel a format can hold where there are few enough (each 16-bit word, each grey),
// random ones for 24 and 32 bits; 257 wide, so the conversion's vector loop has a tail.
Owned EverySourcePixel(PixelFormat format) {
    constexpr uint32_t kWidth = 257;
    constexpr uint32_t kHeight = 256;
    Owned image = Make(kWidth, kHeight, format);
    std::mt19937 random(static_cast<uint32_t>(format));
    const uint32_t bytes = bytes_per_pixel(format);
    auto* data = static_cast<uint8_t*>(image->get_data());
    for (uint32_t index = 0; index < kWidth * kHeight; ++index) {
        const uint32_t value = bytes <= 2 ? index : static_cast<uint32_t>(random());
        std::memcpy(data + size_t{index} * bytes, &value, bytes);
    }
    return image;
}

// The conversions run a faster statement of the pixel rule; they must agree with get_pixel
// then set_pixel for every pixel, and copy a pixel unchanged within one format.
TEST(ConvertTest, EveryPairFollowsUnpackThenPack) {
    for (int from = 0; from < kImageFormatCount; ++from) {
        const auto source_format = static_cast<PixelFormat>(from);
        Owned source = EverySourcePixel(source_format);
        const Size size = source->get_size();
        const auto width = static_cast<uint32_t>(size.width);
        const auto height = static_cast<uint32_t>(size.height);
        for (int to = 0; to < kImageFormatCount; ++to) {
            const auto target_format = static_cast<PixelFormat>(to);
            Owned converted = Make(width, height, target_format);
            const bool done =
                convert_pixels(converted->lock_write(nullptr), source->lock_read(nullptr));
            if (source_format == PIXEL_FORMAT_GREY && target_format == PIXEL_FORMAT_555) {
                EXPECT_FALSE(done);
                continue;
            }
            ASSERT_TRUE(done) << from << " to " << to;
            Owned expected = Make(width, height, target_format);
            if (from == to) {
                std::memcpy(expected->get_data(), source->get_data(),
                            size_t{width} * height * bytes_per_pixel(source_format));
            } else {
                for (uint32_t y = 0; y < height; ++y)
                    for (uint32_t x = 0; x < width; ++x)
                        expected->set_pixel(x, y, source->get_pixel(x, y));
            }
            EXPECT_EQ(std::memcmp(expected->get_data(), converted->get_data(),
                                  size_t{width} * height * bytes_per_pixel(target_format)),
                      0)
                << pixel_format_name(source_format) << " to " << pixel_format_name(target_format);
        }
    }
}

TEST(ConvertTest, ChannelRulesAtTheirEdges) {
    Owned colour = Make(1, 1, PIXEL_FORMAT_8888);
    Owned opaque = Make(1, 1, PIXEL_FORMAT_X888);
    colour->set_pixel(0, 0, {1, 2, 3, 0});
    convert_pixels(opaque->lock_write(nullptr), colour->lock_read(nullptr));
    EXPECT_EQ(static_cast<uint8_t*>(opaque->get_data())[3], 255);

    static_cast<uint8_t*>(opaque->get_data())[3] = 7;
    convert_pixels(colour->lock_write(nullptr), opaque->lock_read(nullptr));
    EXPECT_EQ(colour->get_pixel(0, 0), (Colour{1, 2, 3, 255}));

    Owned grey = Make(1, 1, PIXEL_FORMAT_GREY);
    *static_cast<uint8_t*>(grey->get_data()) = 200;
    convert_pixels(colour->lock_write(nullptr), grey->lock_read(nullptr));
    EXPECT_EQ(colour->get_pixel(0, 0), (Colour{200, 200, 200, 200}));

    Owned five = Make(1, 1, PIXEL_FORMAT_555);
    *static_cast<uint16_t*>(five->get_data()) = 0x1234;
    EXPECT_FALSE(convert_pixels(five->lock_write(nullptr), grey->lock_read(nullptr)));
    EXPECT_EQ(*static_cast<uint16_t*>(five->get_data()), 0x1234);
    Owned six = Make(1, 1, PIXEL_FORMAT_565);
    EXPECT_TRUE(convert_pixels(six->lock_write(nullptr), grey->lock_read(nullptr)));

    // 565 green to 555: widened by the 6-bit table, then shifted by 3.
    *static_cast<uint16_t*>(six->get_data()) = 1 << 5;  // green 1 of 63 widens to 4
    convert_pixels(five->lock_write(nullptr), six->lock_read(nullptr));
    EXPECT_EQ(*static_cast<uint16_t*>(five->get_data()), 0);

    EXPECT_FALSE(
        convert_pixels(PixelsLock{nullptr, PIXEL_FORMAT_DXT1}, colour->lock_read(nullptr)));
}

TEST(ConvertTest, CopiesTheSmallerOfBothSizes) {
    Owned source = Make(10, 10, PIXEL_FORMAT_8888);
    Owned target = Make(4, 20, PIXEL_FORMAT_8888);
    fill_pixels(source->lock_write(nullptr), 0, 0, 10, 10, {1, 1, 1, 1});
    ASSERT_TRUE(convert_pixels(target->lock_write(nullptr), source->lock_read(nullptr)));
    EXPECT_EQ(target->get_pixel(3, 9), (Colour{1, 1, 1, 1}));
    EXPECT_EQ(target->get_pixel(3, 10), Colour{});
}

TEST(ScaleTest, NearestBoxAndSmooth) {
    Owned source = Make(2, 2, PIXEL_FORMAT_8888);
    source->set_pixel(0, 0, {0, 0, 0, 255});
    source->set_pixel(1, 0, {100, 100, 100, 255});
    source->set_pixel(0, 1, {200, 200, 200, 255});
    source->set_pixel(1, 1, {255, 255, 255, 255});

    Owned doubled = Make(4, 4, PIXEL_FORMAT_8888);
    ASSERT_TRUE(
        scale_pixels(doubled->lock_write(nullptr), SCALE_NEAREST, source->lock_read(nullptr)));
    EXPECT_EQ(doubled->get_pixel(1, 1), source->get_pixel(0, 0));
    EXPECT_EQ(doubled->get_pixel(2, 3), source->get_pixel(1, 1));

    Owned mean = Make(1, 1, PIXEL_FORMAT_8888);
    ASSERT_TRUE(scale_pixels(mean->lock_write(nullptr), SCALE_BOX, source->lock_read(nullptr)));
    EXPECT_EQ(mean->get_pixel(0, 0), (Colour{139, 139, 139, 255}));  // (555 + 2) / 4
    ASSERT_TRUE(scale_pixels(mean->lock_write(nullptr), SCALE_SMOOTH, source->lock_read(nullptr)));
    EXPECT_EQ(mean->get_pixel(0, 0).blue, 139);

    Owned grey = Make(1, 1, PIXEL_FORMAT_GREY);  // through a 32-bit picture and back
    ASSERT_TRUE(scale_pixels(grey->lock_write(nullptr), SCALE_BOX, source->lock_read(nullptr)));
    EXPECT_EQ(grey->get_pixel(0, 0).blue, 139);
    EXPECT_FALSE(scale_pixels(mean->lock_write(nullptr), 7, source->lock_read(nullptr)));
}

TEST(ReduceTest, HalvesInTheChannelsOwnBits) {
    Owned colour = Make(2, 2, PIXEL_FORMAT_8888);
    colour->set_pixel(0, 0, {0, 10, 255, 1});
    colour->set_pixel(1, 0, {1, 10, 255, 1});
    colour->set_pixel(0, 1, {2, 10, 255, 0});
    colour->set_pixel(1, 1, {3, 11, 255, 0});
    ASSERT_TRUE(reduce_by_half(colour->lock_read_write(nullptr), 2));
    EXPECT_EQ(colour->get_pixel(0, 0), (Colour{2, 10, 255, 1}));

    Owned word = Make(2, 2, PIXEL_FORMAT_1555);
    auto* words = static_cast<uint16_t*>(word->get_data());
    words[0] = 0x8000 | 31;
    words[1] = 0x8000 | 30;
    words[2] = 1;
    words[3] = 0;
    ASSERT_TRUE(reduce_by_half(word->lock_read_write(nullptr), 2));
    EXPECT_EQ(words[0], 0x8000 | 16);  // alpha (1+1+0+0+2)>>2 = 1, blue (62+2)>>2 = 16
    EXPECT_FALSE(reduce_by_half(word->lock_read_write(nullptr), 4));
}

TEST(CompositorTest, BlendArithmeticAndStretchSampling) {
    EXPECT_EQ(blend_pixel({0xCD, 0xCD, 0xCD, 0xFF}, {0x00, 0x00, 0xFF, 0x80}, 128),
              (Colour{0x9A, 0x9A, 0xFF, 0xFF}));
    EXPECT_EQ(blend_pixel({1, 2, 3, 4}, {9, 8, 7, 255}, 255), (Colour{9, 8, 7, 255}));

    Colour source_pixels[2] = {{1, 0, 0, 255}, {2, 0, 0, 255}};
    const Pixels<const Colour> source(source_pixels, 2, 1, 8);
    Colour target_pixels[5] = {};
    const Pixels<Colour> target(target_pixels, 5, 1, 20);
    // Four destination pixels from -1: columns ((2i+1)*2)/8 = 0,0,1,1; the first is clipped.
    stretch_copy(target, {-1, 0, 4, 1}, source);
    EXPECT_EQ(target_pixels[0].blue, 1);
    EXPECT_EQ(target_pixels[1].blue, 2);
    EXPECT_EQ(target_pixels[2].blue, 2);
    EXPECT_EQ(target_pixels[3].blue, 0);
    alpha_blend(target, {0, 0, 0, 1}, source, 255);  // empty: nothing drawn
    alpha_blend(target, {4, 0, 1, 1}, source, 255);
    EXPECT_EQ(target_pixels[4].blue, 2);
}

// The blit's shortcuts for opaque and all-zero pixels must give the blend's own bytes.
TEST(CompositorTest, BlendingAtFullStrengthGivesThePixelRuleForEveryAlpha) {
    const Colour below{0x10, 0x80, 0xF0, 0x7F};
    for (const uint8_t alpha : std::initializer_list<uint8_t>{0, 1, 0x7F, 0x80, 0xFE, 0xFF}) {
        for (const uint8_t value : std::initializer_list<uint8_t>{0, 1, 0x80, 0xFF}) {
            Colour source_pixel{value, static_cast<uint8_t>(255 - value), value, alpha};
            Colour target_pixel = below;
            alpha_blend(Pixels<Colour>(&target_pixel, 1, 1, 4), {0, 0, 1, 1},
                        Pixels<const Colour>(&source_pixel, 1, 1, 4), 255);
            EXPECT_EQ(target_pixel, blend_pixel(below, source_pixel, 255))
                << int{alpha} << " " << int{value};
        }
    }
    // One pixel stretched over an area (a tint) blends it into every pixel below.
    const Colour tint{0x00, 0x00, 0xFF, 0x80};
    for (const uint8_t strength : std::initializer_list<uint8_t>{128, 255}) {
        Colour row[3] = {below, {0xCD, 0xCD, 0xCD, 0xFF}, {}};
        const Colour before[3] = {row[0], row[1], row[2]};
        alpha_blend(Pixels<Colour>(row, 3, 1, 12), {0, 0, 3, 1},
                    Pixels<const Colour>(&tint, 1, 1, 4), strength);
        for (int index = 0; index < 3; ++index)
            EXPECT_EQ(row[index], blend_pixel(before[index], tint, strength));
    }
    Colour clear{};
    Colour target_pixel = below;
    alpha_blend(Pixels<Colour>(&target_pixel, 1, 1, 4), {0, 0, 1, 1},
                Pixels<const Colour>(&clear, 1, 1, 4), 255);
    EXPECT_EQ(target_pixel, below);
}

}  // namespace
