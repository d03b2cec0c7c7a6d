// The recovery copy's file: one format for every version, read back whole or not at all.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "TempDir.h"
#include "model/RecoveryFile.h"
#include "model/RecoveryWriter.h"

namespace {

const std::string kGolden = std::string(MODEL_DATA_DIR) + "/recovery-copy.qrc";

ImagePtr Picture(uint32_t width, uint32_t height, uint8_t tag) {
    ImagePtr image(Core::create_image(width, height, Core::PIXEL_FORMAT_8888));
    for (uint32_t y = 0; y < height; ++y)
        for (uint32_t x = 0; x < width; ++x)
            image->set_pixel(x, y, {static_cast<uint8_t>(x), static_cast<uint8_t>(y), tag, 0x80});
    return image;
}

// A copy with one of everything: the golden file holds its bytes.
RecoveryCopy SmallCopy() {
    RecoveryCopy copy;
    copy.project_path = "/work/ui/menu.qlt";
    copy.title = "menu.qlt";
    copy.text = "<version>1.01</version>\r\n<texture>/work/ui/page.tga\r\n</texture>\r\n";
    copy.stamps.emplace_back("/work/ui/menu.qlt", DiskStamp{true, 2049, 1234567, 70, 1700000000});
    copy.stamps.emplace_back("/work/ui/page.tga", DiskStamp{});
    RecoveredPage page;
    page.output.path = "/work/ui/page.tga";
    page.output.save_format = Core::PIXEL_FORMAT_565;
    page.output.unused_colour = {1, 2, 3, 4};
    page.output.image = Picture(3, 2, 0x40);
    page.regions.push_back({1, Picture(1, 1, 0x20)});
    copy.pages.push_back(std::move(page));
    return copy;
}

std::string Encoded(const RecoveryCopy& copy) {
    std::string bytes;
    EXPECT_TRUE(EncodeRecoveryCopy(copy, bytes));
    return bytes;
}

TEST(RecoveryFile, TheFormatStaysAsItWasWrittenAndReadsBackWhole) {
    const std::string bytes = Encoded(SmallCopy());
    const std::string golden = ReadFile(kGolden);
    if (bytes != golden) std::ofstream(kGolden + ".actual", std::ios::binary) << bytes;
    ASSERT_EQ(bytes, golden) << "the actual bytes are in " << kGolden << ".actual";

    std::string reason;
    const std::optional<RecoveryCopy> read = DecodeRecoveryCopy(golden, reason);
    ASSERT_TRUE(read) << reason;
    EXPECT_EQ(read->project_path, "/work/ui/menu.qlt");
    EXPECT_EQ(read->stamps[0].second, (DiskStamp{true, 2049, 1234567, 70, 1700000000}));
    ASSERT_EQ(read->pages.size(), 1u);
    EXPECT_EQ(read->pages[0].output.save_format, Core::PIXEL_FORMAT_565);
    EXPECT_EQ(read->pages[0].output.image->get_pixel(2, 1), (Core::Colour{2, 1, 0x40, 0x80}));
    EXPECT_EQ(Encoded(*read), golden);
}

TEST(RecoveryFile, APartOrADamagedCopyIsRefusedWhole) {
    const std::string bytes = Encoded(SmallCopy());
    std::string reason;
    for (size_t size = 0; size < bytes.size(); ++size)
        EXPECT_FALSE(DecodeRecoveryCopy(bytes.substr(0, size), reason)) << "first " << size;

    const auto replaced = [&bytes](const std::string& from, const std::string& to) {
        std::string damaged = bytes;
        damaged.replace(damaged.find(from), from.size(), to);
        return damaged;
    };
    for (const std::string& damaged :
         {replaced("QUILLET RECOVERY 1", "QUILLET RECOVERY 2"), replaced("title 8", "title 9"),
          replaced("title 8", "title 99999999999999999999"), replaced("title 8", "title -8"),
          replaced("\n1 1 2 3 4\n", "\n1 1 2 3 256\n"), replaced("\n1 1 2 3 4\n", "\n13 1 2 3 4\n"),
          replaced("region 1", "region -1"), replaced("region 1", "regions 1"),
          replaced("page 17", "page 17 2")}) {
        EXPECT_FALSE(DecodeRecoveryCopy(damaged, reason)) << damaged;
    }
    EXPECT_FALSE(DecodeRecoveryCopy("QUILLET RECOVERY 1\nregion 0 0\n\nend 0\n\n", reason))
        << "a region belongs to a page";
}

TEST(RecoveryFile, APictureWithoutPixelsIsKeptAsNone) {
    RecoveryCopy copy = SmallCopy();
    copy.pages[0].regions.push_back({2, Picture(0, 5, 0x10)});  // a region of an empty rect
    std::string bytes;
    ASSERT_TRUE(EncodeRecoveryCopy(copy, bytes)) << "the rest of the copy is still kept";
    EXPECT_EQ(bytes, Encoded(SmallCopy()));

    std::string reason;
    // A 32-bit true-colour TGA header of 3x0 pixels.
    const std::string header("\0\0\2\0\0\0\0\0\0\0\0\0\3\0\0\0\x20\0", 18);
    const std::string empty_tga = "picture 18\n" + header + "\n";
    std::string damaged = bytes;
    damaged.insert(damaged.find("region 1"), empty_tga);
    EXPECT_FALSE(DecodeRecoveryCopy(damaged, reason)) << "never written, so never read";
}

TEST(RecoveryWriter, WritesAndRemovesOffTheCallersThreadAndTellsWhatFailed) {
    TempDir dir;
    const std::string file = dir.File("copy.qrc");
    RecoveryWriter writer;
    writer.Write(file, SmallCopy());
    writer.Wait();
    EXPECT_EQ(ReadFile(file), Encoded(SmallCopy()));
    EXPECT_EQ(writer.TakeFailure(), "");

    writer.Remove(file);
    writer.Wait();
    EXPECT_FALSE(std::filesystem::exists(file));

    const std::string nowhere = dir.File("missing/copy.qrc");
    writer.Write(nowhere, SmallCopy());
    writer.Wait();
    EXPECT_EQ(writer.TakeFailure().rfind(nowhere + ": ", 0), 0u);
    EXPECT_EQ(writer.TakeFailure(), "") << "told once";
}

}  // namespace
