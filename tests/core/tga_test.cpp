#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "TempDir.h"
#include "TgaBytes.h"
#include "core_convert.h"
#include "core_memory_buffer.h"
#include "core_tga.h"

namespace {

using namespace Core;

using tga_bytes::Header;
using tga_bytes::Owned;
using tga_bytes::Pixel32;
using tga_bytes::Reader;

Owned Load(const std::string& bytes) {
    TgaReader reader = Reader(bytes);
    return Owned(load_tga(reader));
}

TEST(TgaFormatTest, TheOrKeyDecides) {
    const auto format = [](uint8_t type, uint8_t depth, uint8_t descriptor, uint8_t map_bits = 0) {
        TgaReader reader = Reader(Header(type, 1, 1, depth, descriptor, 0, 0, map_bits));
        TgaHeader header;
        read_tga_header(reader, header);
        return tga_format(header);
    };
    EXPECT_EQ(format(2, 16, 0), TGA_FORMAT_555);
    EXPECT_EQ(format(2, 16, 1), TGA_FORMAT_1555);
    EXPECT_EQ(format(2, 15, 1), TGA_FORMAT_ERROR);  // 31
    EXPECT_EQ(format(2, 15, 2), TGA_FORMAT_555);    // 30 | 2 is still 30
    EXPECT_EQ(format(2, 24, 8), TGA_FORMAT_ERROR);
    EXPECT_EQ(format(2, 32, 0), TGA_FORMAT_X888);
    EXPECT_EQ(format(10, 32, 8), TGA_FORMAT_8888);
    EXPECT_EQ(format(2, 32, 1), TGA_FORMAT_ERROR);
    EXPECT_EQ(format(11, 99, 7), TGA_FORMAT_GREY);
    EXPECT_EQ(format(1, 8, 0, 24), TGA_FORMAT_888);
    EXPECT_EQ(format(0, 32, 8), TGA_FORMAT_ERROR);
    EXPECT_STREQ(tga_format_name(PIXEL_FORMAT_565), "TGA_FORMAT_ERROR");
    EXPECT_STREQ(tga_format_name(PIXEL_FORMAT_888), "TGA_FORMAT_888 ");
    EXPECT_STREQ(tga_format_name(static_cast<PixelFormat>(42)), "TGA_FORMAT_ERROR");
}

TEST(TgaReadTest, RowsGoBottomUpUnlessTheFileSaysTopDown) {
    const std::string rows =
        Pixel32(1, 0, 0, 9) + Pixel32(2, 0, 0, 9) + Pixel32(3, 0, 0, 9) + Pixel32(4, 0, 0, 9);
    Owned bottom_up = Load(Header(2, 2, 2, 32, 8) + rows);
    ASSERT_TRUE(bottom_up);
    EXPECT_EQ(bottom_up->get_format(), PIXEL_FORMAT_8888);
    EXPECT_EQ(bottom_up->get_pixel(0, 1).blue, 1);  // the file's first row is the bottom
    EXPECT_EQ(bottom_up->get_pixel(0, 0).blue, 3);
    Owned top_down = Load(Header(2, 2, 2, 32, 8 | 0x20) + rows);
    EXPECT_EQ(top_down->get_pixel(0, 0).blue, 1);
    Owned mirrored = Load(Header(2, 2, 2, 32, 8 | 0x20 | 0x10) + rows);
    EXPECT_EQ(mirrored->get_pixel(1, 0).blue, 1);
    EXPECT_EQ(mirrored->get_pixel(0, 0).blue, 2);
}

TEST(TgaReadTest, RunLengthPacketsCrossRowEndsAndStopAtThePictureEnd) {
    // One repeat packet of 3 across the end of the first row, then a raw packet of 2 that
    // claims 3: the third pixel would lie past the picture.
    const std::string data = std::string(1, static_cast<char>(0x82)) + Pixel32(7, 0, 0, 255) +
                             std::string(1, '\x02') + Pixel32(8, 0, 0, 255) +
                             Pixel32(9, 0, 0, 255) + Pixel32(10, 0, 0, 255);
    Owned image = Load(Header(10, 2, 2, 32, 8 | 0x20) + data);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->get_pixel(1, 0).blue, 7);
    EXPECT_EQ(image->get_pixel(0, 1).blue, 7);
    EXPECT_EQ(image->get_pixel(1, 1).blue, 8);
}

TEST(TgaReadTest, ColourMapsCountFromTheirFirstIndexAndStrayIndicesReadAsZero) {
    std::string map = std::string("\x10\x20\x30", 3) + std::string("\x40\x50\x60", 3);
    const std::string indices = std::string("\x05\x06\x07\x00", 4);
    Owned image = Load(Header(1, 2, 2, 8, 0x20, 5, 2, 24) + map + indices);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->get_format(), PIXEL_FORMAT_888);
    EXPECT_EQ(image->get_pixel(0, 0), (Colour{0x10, 0x20, 0x30, 255}));
    EXPECT_EQ(image->get_pixel(1, 0), (Colour{0x40, 0x50, 0x60, 255}));
    EXPECT_EQ(image->get_pixel(0, 1), (Colour{0, 0, 0, 255}));  // index 7: outside the map
    EXPECT_EQ(Load(Header(1, 2, 2, 12, 0x20, 0, 2, 24) + map + indices), nullptr);
}

TEST(TgaReadTest, RefusedFilesLeaveTheReaderWhereItWas) {
    // Among them headers that claim far more than their files hold, which must be refused
    // before anything of that size is allocated.
    for (const std::string& refused :
         {Header(2, 1, 1, 24, 8) + "abc", Header(0, 1, 1, 32, 8) + "abcd",
          Header(2, 65535, 65535, 32, 8) + "tiny", std::string("\x00\x00\x02", 3),
          Header(1, 65535, 40000, 8, 0, 0, 2, 24) + std::string(4096, '\x01'),
          Header(10, 65535, 65535, 32, 8) + std::string(4096, '\x7f'),
          Header(1, 65534, 65535, 0, 0, 5888, 1, 24) + std::string(6, '\0')}) {
        TgaReader reader = Reader("xx" + refused);
        reader.buffer.seek(2);
        EXPECT_EQ(load_tga(reader), nullptr);
        EXPECT_EQ(reader.buffer.tell(), 2u);
    }
}

// An uncompressed file shorter than its header says is damaged; a run-length file can only
// be judged packet by packet, and loads as far as it goes.
TEST(TgaReadTest, TruncatedFilesAreRefusedUnlessRunLength) {
    std::string data;
    for (int pixel = 0; pixel < 6; ++pixel)
        data += Pixel32(static_cast<uint8_t>(pixel + 1), 0, 0, 255);
    EXPECT_EQ(Load(Header(2, 4, 4, 32, 8 | 0x20) + data), nullptr);
    const std::string map = std::string("\x10\x20\x30", 3);
    EXPECT_EQ(Load(Header(1, 2, 2, 8, 0x20, 0, 1, 24) + map + std::string(3, '\0')), nullptr);
    EXPECT_EQ(Load(Header(1, 2, 2, 8, 0x20, 0, 2, 24) + map + std::string(4, '\0')), nullptr);

    Owned image = Load(Header(10, 4, 4, 32, 8 | 0x20) + "\x0f" + data);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->get_pixel(1, 1).blue, 6);
    EXPECT_EQ(image->get_pixel(2, 1), Colour{});
    EXPECT_EQ(image->get_pixel(3, 3), Colour{});
}

TEST(TgaReadTest, GreyRunLengthIntoFiveFiveFiveIsTheOneRefusedConversion) {
    const std::string data = std::string("\x81\x80", 2);
    TgaReader reader = Reader(Header(11, 2, 1, 8, 0) + data);
    Owned into_555(load_tga(reader, PIXEL_FORMAT_555));
    ASSERT_TRUE(into_555);  // true all the same, picture unwritten
    EXPECT_EQ(into_555->get_pixel(0, 0), (Colour{0, 0, 0, 255}));
    TgaReader direct = Reader(Header(3, 2, 1, 8, 0) + data);
    Owned uncompressed(load_tga(direct, PIXEL_FORMAT_555));
    EXPECT_EQ(uncompressed->get_pixel(0, 0).blue, widen_5[0x81 >> 3]);
}

// Inputs that once broke a reader stay here.
TEST(TgaReadTest, FuzzedInputsLoadSafely) {
    // A colour-mapped picture 0 pixels wide and 256 rows high, flipped bottom-up.
    const std::string zero_width(
        "\x00\x01\x01\x00\x01\x00\x00\x18\x01\x0c\x00\x00\x00\x00"
        "\x02\x00\x10\x00\x00\x02\x01\x00\x00\x01\x00\x18\x00",
        27);
    Owned empty = Load(zero_width);
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->get_size().width, 0);
}

class TgaFileTest : public testing::Test {
protected:
    TempDir dir;

    Owned SaveAndLoad(Image& image, PixelFormat format) {
        const std::string path = dir.File("page.tga");
        EXPECT_TRUE(save_tga(image, path.c_str(), format));
        const std::string bytes = ReadFile(path);
        TgaReader reader;
        EXPECT_TRUE(reader.buffer.attach(
            std::make_shared<MemoryBufferImpl>(std::vector<uint8_t>(bytes.begin(), bytes.end()))));
        return Owned(load_tga(reader));
    }
};

// Every format the writer takes, at every size from one pixel up: what is read back is what
// was written, in the file's format (565 and 4444 are held as 555).
TEST_F(TgaFileTest, PicturesOfEverySizeRoundTripInEveryFormat) {
    const std::pair<uint32_t, uint32_t> sizes[] = {{1, 1}, {1, 3}, {3, 1},
                                                   {2, 2}, {7, 5}, {130, 2}};
    for (int value = 0; value < kImageFormatCount; ++value) {
        const auto format = static_cast<PixelFormat>(value);
        const bool held_as_555 = format == PIXEL_FORMAT_565 || format == PIXEL_FORMAT_4444;
        const PixelFormat file_format = held_as_555 ? PIXEL_FORMAT_555 : format;
        for (const auto& [width, height] : sizes) {
            Owned picture(create_image(width, height, format));
            for (uint32_t y = 0; y < height; ++y)
                for (uint32_t x = 0; x < width; ++x)
                    picture->set_pixel(x, y,
                                       {static_cast<uint8_t>(37 * x), static_cast<uint8_t>(91 * y),
                                        static_cast<uint8_t>(13 * (x + y)), 128});
            Owned expected(copy_image(*picture, file_format));
            Owned loaded = SaveAndLoad(*picture, format);
            ASSERT_TRUE(loaded) << pixel_format_name(format) << " " << width << "x" << height;
            ASSERT_EQ(loaded->get_format(), file_format);
            for (uint32_t y = 0; y < height; ++y)
                for (uint32_t x = 0; x < width; ++x)
                    ASSERT_EQ(loaded->get_pixel(x, y), expected->get_pixel(x, y))
                        << pixel_format_name(format) << " at " << x << "," << y;
        }
    }
}

TEST_F(TgaFileTest, FormatsWithoutATgaFormAreWrittenAs555) {
    Owned page(create_image(2, 1, PIXEL_FORMAT_8888));
    page->set_pixel(0, 0, {255, 130, 7, 255});
    Owned loaded = SaveAndLoad(*page, PIXEL_FORMAT_565);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->get_format(), PIXEL_FORMAT_555);
    EXPECT_EQ(*static_cast<uint16_t*>(loaded->get_data()),
              (255 >> 3) | ((130 >> 3) << 5) | (7 >> 3) << 10);
}

TEST_F(TgaFileTest, GreyFilesAndTheExactBytesOfA32BitPage) {
    Owned grey(create_image(1, 1, PIXEL_FORMAT_GREY));
    ASSERT_TRUE(save_tga(*grey, dir.File("grey.tga").c_str(), PIXEL_FORMAT_GREY));
    const std::string grey_bytes = ReadFile(dir.File("grey.tga"));
    EXPECT_EQ(grey_bytes.substr(0, 18), Header(3, 1, 1, 8, 0));

    Owned page(create_image(1, 2, PIXEL_FORMAT_8888));
    page->set_pixel(0, 0, {1, 2, 3, 4});
    page->set_pixel(0, 1, {5, 6, 7, 8});
    ASSERT_TRUE(save_tga(*page, dir.File("page.tga").c_str(), PIXEL_FORMAT_8888));
    EXPECT_EQ(ReadFile(dir.File("page.tga")),
              Header(2, 1, 2, 32, 8) + Pixel32(5, 6, 7, 8) + Pixel32(1, 2, 3, 4));

    // A grey picture into a 555 file has a writer of its own.
    ASSERT_TRUE(save_tga(*grey, dir.File("grey555.tga").c_str(), PIXEL_FORMAT_555));
    EXPECT_EQ(ReadFile(dir.File("grey555.tga")).size(), 20u);
}

// A picture without pixels would replace a page with an empty file: the old file stays.
TEST_F(TgaFileTest, PicturesWithoutPixelsAndUnwritablePathsLeaveTheOldFile) {
    for (const auto& [width, height] : {std::pair<uint32_t, uint32_t>{0, 0}, {0, 3}, {3, 0}}) {
        Owned empty(create_image(width, height, PIXEL_FORMAT_8888));
        TgaWriter writer(dir.File("never.tga"));
        EXPECT_FALSE(write_tga(writer, PIXEL_FORMAT_8888, empty->lock_read(nullptr), false, false));
        empty->unlock();
        const std::string old = dir.Write("old.tga", "the old page");
        EXPECT_FALSE(save_tga(*empty, old.c_str(), PIXEL_FORMAT_8888));
        EXPECT_EQ(ReadFile(old), "the old page");
    }
    EXPECT_FALSE(std::filesystem::exists(dir.File("never.tga")));
    Owned page(create_image(1, 1, PIXEL_FORMAT_8888));
    EXPECT_FALSE(save_tga(*page, dir.File("missing/page.tga").c_str(), PIXEL_FORMAT_8888));
}

TEST_F(TgaFileTest, SizedLoadsScaleWhenTheSizesDiffer) {
    Owned page(create_image(2, 2, PIXEL_FORMAT_8888));
    fill_pixels(page->lock_write(nullptr), 0, 0, 2, 2, {10, 20, 30, 40});
    ASSERT_TRUE(save_tga(*page, dir.File("page.tga").c_str(), PIXEL_FORMAT_8888));
    Owned small(create_image(1, 1, PIXEL_FORMAT_8888));
    const std::string bytes = ReadFile(dir.File("page.tga"));
    TgaReader reader = Reader(bytes);
    ASSERT_TRUE(load_tga_sized(small->lock_write(nullptr), SCALE_BOX, reader));
    EXPECT_EQ(small->get_pixel(0, 0), (Colour{10, 20, 30, 40}));
}

}  // namespace
