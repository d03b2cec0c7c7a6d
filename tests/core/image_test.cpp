#include <gtest/gtest.h>

#include <memory>

#include "core_images.h"

namespace {

using namespace Core;

struct Destroy {
    void operator()(Image* image) const { destroy_image(image); }
};
using Owned = std::unique_ptr<Image, Destroy>;

constexpr PixelFormat kFormats[] = {PIXEL_FORMAT_555,  PIXEL_FORMAT_565, PIXEL_FORMAT_1555,
                                    PIXEL_FORMAT_4444, PIXEL_FORMAT_888, PIXEL_FORMAT_8888,
                                    PIXEL_FORMAT_X888, PIXEL_FORMAT_GREY};

TEST(ImageTest, WhiteReadsBackWhiteInEveryFormat) {
    for (const PixelFormat format : kFormats) {
        Owned image(create_image(2, 2, format));
        ASSERT_TRUE(image) << pixel_format_name(format);
        image->set_pixel(1, 1, {255, 255, 255, 255});
        EXPECT_EQ(image->get_pixel(1, 1), (Colour{255, 255, 255, 255}))
            << pixel_format_name(format);
        EXPECT_EQ(image->get_pixel(0, 0).blue, 0) << "new buffers are zero-filled";
    }
}

TEST(ImageTest, PackingAndWideningFollowTheTables) {
    Owned grey(create_image(1, 1, PIXEL_FORMAT_GREY));
    grey->set_pixel(0, 0, {100, 150, 200, 10});
    const uint8_t value = static_cast<uint8_t>((28 * 100 + 150 * 150 + 76 * 200 + 127) / 254);
    EXPECT_EQ(grey->get_pixel(0, 0), (Colour{value, value, value, value}));

    Owned five(create_image(1, 1, PIXEL_FORMAT_555));
    five->set_pixel(0, 0, {11 << 3, 0, 0, 0});
    EXPECT_EQ(five->get_pixel(0, 0).blue, 91);  // not 92
    EXPECT_EQ(narrow_5[91], 11);
    EXPECT_EQ(narrow_5[37], 5);
    EXPECT_EQ(narrow_1[127], 1);
    EXPECT_EQ(narrow_1[126], 0);

    Owned bit(create_image(1, 1, PIXEL_FORMAT_1555));
    bit->set_pixel(0, 0, {0, 0, 0, 127});
    EXPECT_EQ(bit->get_pixel(0, 0).alpha, 0);  // set_pixel truncates: 127 >> 7 is 0
    bit->set_pixel(0, 0, {0, 0, 0, 128});
    EXPECT_EQ(bit->get_pixel(0, 0).alpha, 255);

    Owned x888(create_image(1, 1, PIXEL_FORMAT_X888));
    x888->set_pixel(0, 0, {1, 2, 3, 4});
    EXPECT_EQ(static_cast<uint8_t*>(x888->get_data())[3], 255);
    EXPECT_EQ(x888->get_pixel(0, 0), (Colour{1, 2, 3, 255}));

    Owned wide(create_image(1, 1, PIXEL_FORMAT_565));
    wide->set_pixel(0, 0, {0, 0xFF, 0, 0});
    EXPECT_EQ(*static_cast<uint16_t*>(wide->get_data()), 0x07E0);
}

TEST(ImageTest, FactoryRefusesWhatItCannotHold) {
    EXPECT_EQ(create_image(4, 4, PIXEL_FORMAT_DXT1), nullptr);
    EXPECT_EQ(create_image(4, 4, PIXEL_FORMAT_COUNT), nullptr);
    EXPECT_EQ(create_image(65536, 65536, PIXEL_FORMAT_8888), nullptr);
    Owned empty(create_image(0, 0, PIXEL_FORMAT_8888));
    ASSERT_TRUE(empty);
    Owned copy(copy_image(*empty));
    EXPECT_TRUE(copy);
    destroy_image(nullptr);
}

TEST(ImageTest, ResizeNeverShrinksTheBuffer) {
    Owned image(create_image(4, 4, PIXEL_FORMAT_8888));
    void* buffer = image->get_data();
    image->resize(2, 2);
    EXPECT_EQ(image->get_data(), buffer);
    EXPECT_EQ(image->get_size(), (Size{2, 2}));
    image->resize(4, 4);
    EXPECT_EQ(image->get_data(), buffer);
    image->resize(8, 8);
    EXPECT_NE(image->get_data(), buffer);
    EXPECT_EQ(image->get_pixel(7, 7), Colour{});
}

TEST(ImageTest, LocksShareOneViewAndStayInsideThePicture) {
    Owned image(create_image(4, 4, PIXEL_FORMAT_8888));
    const PixelRect first{1, 1, 2, 2};
    const PixelsLock lock = image->lock_read(&first);
    EXPECT_EQ(lock.view->stride_in_bytes, 16);
    EXPECT_EQ(lock.view->pixels, static_cast<uint8_t*>(image->get_data()) + 5 * 4);
    const PixelRect second{0, 3, 9, 9};
    const PixelsLock again = image->lock_write(&second);
    EXPECT_EQ(lock.view, again.view);
    EXPECT_EQ(lock.view->width, 4u);
    EXPECT_EQ(lock.view->height, 1u);
    EXPECT_TRUE(image->unlock());

    image->set_pixel(4, 0, {1, 1, 1, 1});  // outside: dropped
    EXPECT_EQ(image->get_pixel(0, 9), Colour{});
}

TEST(ImageTest, FillPacksOnceAndClipsToTheLock) {
    Owned image(create_image(3, 3, PIXEL_FORMAT_4444));
    EXPECT_TRUE(fill_pixels(image->lock_write(nullptr), 1, 1, 5, 5, {0xFF, 0x00, 0xFF, 0x80}));
    EXPECT_EQ(image->get_pixel(2, 2), (Colour{255, 0, 255, 136}));
    EXPECT_EQ(image->get_pixel(0, 0), Colour{});
    PixelsLock invalid;
    EXPECT_FALSE(fill_pixels(invalid, 0, 0, 1, 1, {}));

    Owned backing(create_image(2, 2, PIXEL_FORMAT_8888));
    Pixels<Colour> view(static_cast<Colour*>(backing->get_data()), 2, 2, 8);
    view.fill(0, 0, 2, 2, Colour{9, 9, 9, 9});
    EXPECT_EQ(view.row(1)[1], (Colour{9, 9, 9, 9}));
}

TEST(ImageTest, LayoutsDescribeEachFormat) {
    Owned image(create_image(2, 2, PIXEL_FORMAT_565));
    const PixelLayout layout = pixel_layout(image->lock_read(nullptr));
    EXPECT_EQ(layout.mask[1], 0xFC00u);
    EXPECT_EQ(layout.shift[1], 11u);
    EXPECT_EQ(layout.widen[2], widen_6.data());
    EXPECT_EQ(layout.widen[0], nullptr);
    EXPECT_EQ(layout.bytes_per_pixel, 2u);
    EXPECT_EQ(layout.pixels, image->get_data());

    Owned colour(create_image(2, 2, PIXEL_FORMAT_8888));
    const PixelLayout bytes = pixel_layout(colour->lock_read(nullptr));
    EXPECT_EQ(bytes.offset[0], 2u);
    EXPECT_EQ(bytes.mask[0], 0xFF00u);
    EXPECT_EQ(bytes.stride_in_bytes, 8);
    EXPECT_EQ(pixel_layout(PixelsLock{nullptr, PIXEL_FORMAT_DXT3}).bytes_per_pixel, 0u);
    EXPECT_STREQ(pixel_format_name(PIXEL_FORMAT_555), "PIXEL_FORMAT_555 ");
}

}  // namespace
