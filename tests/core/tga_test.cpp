#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "TempDir.h"
#include "TgaBytes.h"
#include "core_convert.h"
#include "core_file_transaction.h"
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
        std::string written;
        TgaWriter writer([&written](std::string_view bytes) {
            written += bytes;
            return true;
        });
        EXPECT_FALSE(write_tga(writer, PIXEL_FORMAT_8888, empty->lock_read(nullptr), false, false));
        empty->unlock();
        EXPECT_TRUE(writer.close());
        EXPECT_EQ(written, "");
        const std::string old = dir.Write("old.tga", "the old page");
        EXPECT_FALSE(save_tga(*empty, old.c_str(), PIXEL_FORMAT_8888));
        EXPECT_EQ(ReadFile(old), "the old page");
    }
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

// Pictures larger than the writer's buffer, for the saves that hand a file on in pieces.
class TgaSaveTest : public TgaFileTest {
protected:
    // A picture of `width` by `height` whose bytes all differ from their neighbours.
    static Owned Patterned(uint32_t width, uint32_t height, PixelFormat format) {
        Owned picture(create_image(width, height, format));
        auto* bytes = static_cast<uint8_t*>(picture->get_data());
        const size_t count = size_t{width} * height * bytes_per_pixel(format);
        for (size_t at = 0; at < count; ++at)
            bytes[at] = static_cast<uint8_t>((at * 2654435761u) >> 13);
        return picture;
    }

    // The file the writer must make, built another way: the picture converted whole, then its
    // rows one by one from the bottom (or the top), each pixel's bytes as they stand (or the
    // row's last pixel first).
    static std::string Expected(Image& picture, PixelFormat file_format, const std::string& header,
                                bool right_to_left = false, bool top_to_bottom = false) {
        Owned converted(copy_image(picture, file_format));
        const auto width = static_cast<uint32_t>(picture.get_size().width);
        const auto height = static_cast<uint32_t>(picture.get_size().height);
        const uint32_t pixel_bytes = bytes_per_pixel(file_format);
        const auto* bytes = static_cast<const char*>(converted->get_data());
        std::string file = header;
        for (uint32_t row = 0; row < height; ++row) {
            const char* first =
                bytes + size_t{top_to_bottom ? row : height - 1 - row} * width * pixel_bytes;
            for (uint32_t pixel = 0; pixel < width; ++pixel) {
                const uint32_t column = right_to_left ? width - 1 - pixel : pixel;
                file.append(first + size_t{column} * pixel_bytes, pixel_bytes);
            }
        }
        return file;
    }

    // What write_tga hands its sink, in one string, and the largest piece it handed.
    static std::string Written(const PixelsLock& source, PixelFormat format, bool right_to_left,
                               bool top_to_bottom, size_t* largest_piece = nullptr) {
        std::string file;
        TgaWriter writer([&](std::string_view piece) {
            if (largest_piece != nullptr) *largest_piece = std::max(*largest_piece, piece.size());
            file += piece;
            return true;
        });
        EXPECT_TRUE(write_tga(writer, format, source, right_to_left, top_to_bottom));
        EXPECT_TRUE(writer.close());
        EXPECT_LE(writer.buffer_size(), TgaWriter::kBufferBytes);
        return file;
    }
};

// Rows are converted straight into the writer's buffer, which is handed on whenever a row no
// longer fits: rows of odd lengths (888 rows not a multiple of four) meet the buffer's end
// at a different place every time.
TEST_F(TgaSaveTest, PicturesOfManyRowsSaveByteForByteAsConverted) {
    struct Case {
        uint32_t width;
        uint32_t height;
        PixelFormat source;
        PixelFormat file;
        std::string header;
    };
    const Case cases[] = {
        {701, 200, PIXEL_FORMAT_8888, PIXEL_FORMAT_8888, Header(2, 701, 200, 32, 8)},
        {333, 1100, PIXEL_FORMAT_8888, PIXEL_FORMAT_888, Header(2, 333, 1100, 24, 0)},
        {1001, 300, PIXEL_FORMAT_888, PIXEL_FORMAT_1555, Header(2, 1001, 300, 16, 1)},
        {4097, 70, PIXEL_FORMAT_GREY, PIXEL_FORMAT_GREY, Header(3, 4097, 70, 8, 0)},
    };
    for (const Case& each : cases) {
        Owned picture = Patterned(each.width, each.height, each.source);
        const std::string path = dir.File("page.tga");
        ASSERT_TRUE(save_tga(*picture, path.c_str(), each.file));
        EXPECT_TRUE(ReadFile(path) == Expected(*picture, each.file, each.header))
            << pixel_format_name(each.file) << " " << each.width << "x" << each.height;
        std::string encoded;
        ASSERT_TRUE(encode_tga(*picture, each.file, encoded));
        EXPECT_TRUE(encoded == ReadFile(path));
    }

    // Mirrored and top-down rows, which no save asks for, go through the same buffer.
    Owned picture = Patterned(333, 1100, PIXEL_FORMAT_8888);
    const std::string header = Header(2, 333, 1100, 24, 0x30);
    const std::string mirrored = Written(picture->lock_read(nullptr), PIXEL_FORMAT_888, true, true);
    picture->unlock();
    EXPECT_TRUE(mirrored == Expected(*picture, PIXEL_FORMAT_888, header, true, true));
}

// Each write, the flush and the rename of a save can fail; the picture takes several writes.
TEST_F(TgaSaveTest, ASaveThatFailsPartWayKeepsTheOldFileByteForByte) {
    Owned picture = Patterned(600, 300, PIXEL_FORMAT_8888);
    const std::string old = dir.Write("page.tga", "the old page");
    int steps = 0;
    for (int step = 1; step < 20; ++step) {
        Detail::fail_file_step(step);
        const bool saved = save_tga(*picture, old.c_str(), PIXEL_FORMAT_8888);
        Detail::fail_file_step(0);
        if (saved) break;
        steps = step;
        EXPECT_EQ(ReadFile(old), "the old page") << "step " << step;
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.Path()), {}), 1)
            << "a temporary is left after step " << step;
    }
    EXPECT_GE(steps, 5) << "three writes of at most 256 KiB, the flush and the rename";
    EXPECT_TRUE(ReadFile(old) == Expected(*picture, PIXEL_FORMAT_8888, Header(2, 600, 300, 32, 8)));
}

// A full page is handed on a buffer at a time and no whole copy of it is made; a sink that
// fails stops the rest of the picture.
TEST_F(TgaSaveTest, AFullPageIsHandedOnInPiecesNoLargerThanTheBuffer) {
    Owned page(create_image(4096, 4096, PIXEL_FORMAT_8888));
    size_t largest = 0;
    const std::string file =
        Written(page->lock_read(nullptr), PIXEL_FORMAT_8888, false, false, &largest);
    page->unlock();
    EXPECT_EQ(file.size(), kTgaHeaderBytes + size_t{4096} * 4096 * 4);
    EXPECT_LE(largest, TgaWriter::kBufferBytes);

    // The widest row a file can hold fits the buffer alone.
    Owned widest(create_image(65535, 2, PIXEL_FORMAT_8888));
    largest = 0;
    EXPECT_EQ(Written(widest->lock_read(nullptr), PIXEL_FORMAT_8888, false, false, &largest).size(),
              kTgaHeaderBytes + size_t{65535} * 2 * 4);
    widest->unlock();
    EXPECT_LE(largest, TgaWriter::kBufferBytes);

    int pieces = 0;
    TgaWriter failing([&pieces](std::string_view) { return ++pieces < 2; });
    EXPECT_TRUE(write_tga(failing, PIXEL_FORMAT_8888, page->lock_read(nullptr), false, false));
    page->unlock();
    EXPECT_FALSE(failing.close());
    EXPECT_TRUE(failing.failed());
    EXPECT_EQ(pieces, 2);
}

}  // namespace
