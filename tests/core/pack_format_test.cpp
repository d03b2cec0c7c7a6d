// Packs laid out by hand, field by field, pin the format the reader accepts.
#include <gtest/gtest.h>

#include "PackTestSupport.h"
#include "TempDir.h"
#include "core_pack_provider.h"

namespace {

using Names = std::vector<std::string>;

Names Strings(const std::vector<const char*>& found) {
    return Names(found.begin(), found.end());
}

// Three entries of one raw block each, in name order: "ui/back.tga" (4 bytes),
// "ui/sub/deep.tga" (2 bytes) and "zz/last.tga" (1 byte).
std::string ThreeEntryPack(const std::string& magic = "PACK") {
    const std::string records = Record(132, 0, 4, "ui/back.tga") +                // 28 bytes at 0
                                Record(136, 1, 2, "ui/sub/deep.tga") +            // 32 bytes at 28
                                Record(138, 2, 1, "zz/last.tga");                 // 28 bytes at 60
    const std::string table = Header(3, 88, 3) + Word(0) + Word(28) + Word(60) +  // offsets
                              Word(4) + Word(2) + Word(1) + records;  // block sizes, records
    EXPECT_EQ(table.size(), 132u);
    return magic + table.substr(4) + "BACK" + "DE" + "L";
}

class PackFormatTest : public testing::Test {
protected:
    TempDir dir;
    Core::PackBufferProvider provider;

    bool Load(const std::string& bytes) {
        return provider.load(dir.Write("test.pack", bytes).c_str());
    }
    std::string Content(const std::string& name) {
        const auto buffer = provider.open(name);
        return buffer ? ReadRest(*buffer, 100) : "(absent)";
    }
};

TEST_F(PackFormatTest, NamesAreFoundWithoutCaseButFindTakesTheFolderAsWritten) {
    ASSERT_TRUE(Load(ThreeEntryPack())) << provider.error();
    EXPECT_STREQ(provider.name(), dir.File("test.pack").c_str());
    EXPECT_TRUE(provider.exists("UI/Back.TGA"));
    EXPECT_EQ(Content("UI/Back.TGA"), "BACK");
    EXPECT_EQ(Content("ui/SUB/deep.tga"), "DE");
    EXPECT_EQ(Content("ZZ/LAST.TGA"), "L");
    EXPECT_FALSE(provider.exists("ui\\back.tga"));  // no folding of '\'
    EXPECT_FALSE(provider.exists("ui/back.tg"));

    EXPECT_EQ(Strings(provider.find("ui/*.tga", 0)), Names{"ui/back.tga"});
    EXPECT_EQ(Strings(provider.find("ui/*.tga", Core::IOManager::kFindRecursive)),
              (Names{"ui/back.tga", "ui/sub/deep.tga"}));
    EXPECT_EQ(Strings(provider.find("ui/sub/d*", 0)), Names{"ui/sub/deep.tga"});
    EXPECT_TRUE(provider.find("UI/*.tga", 0).empty());  // the folder is compared with case
    EXPECT_TRUE(provider.find("*.tga", 0).empty());     // a pattern without a folder
}

TEST_F(PackFormatTest, OnlyNamesInsideThePackRangeAreLoggedAsNotFound) {
    ASSERT_TRUE(Load(ThreeEntryPack()));
    IoLines lines;
    EXPECT_FALSE(provider.open("aa.tga"));  // before the first name
    EXPECT_FALSE(provider.open("zzz"));     // after the last
    EXPECT_TRUE(lines.Take().empty());
    EXPECT_FALSE(provider.open("ui/front.tga"));
    EXPECT_EQ(lines.Take(),
              Names{"pack open," + dir.File("test.pack") + ",ui/front.tga,,not found"});
}

TEST_F(PackFormatTest, MagicAndVersionAreNotTested) {
    EXPECT_TRUE(Load(ThreeEntryPack("KCAP")));
    EXPECT_EQ(Content("zz/last.tga"), "L");
}

TEST_F(PackFormatTest, FilesTooShortOrWithoutEntriesAreRefused) {
    EXPECT_FALSE(Load(Header(1, 0, 0).substr(0, 19)));
    EXPECT_EQ(provider.error(),
              dir.File("test.pack") + " is not a valid pack: it is shorter than a pack header");
    Core::PackBufferProvider empty;
    EXPECT_FALSE(empty.load(dir.Write("empty.pack", Header(0, 0, 0)).c_str()));
    EXPECT_EQ(empty.error(), dir.File("empty.pack") + " is not a valid pack: it has no entries");
    EXPECT_FALSE(empty.exists("x"));
    EXPECT_FALSE(empty.open("x"));
    Core::PackBufferProvider missing;
    EXPECT_FALSE(missing.load(dir.File("missing.pack").c_str()));
    EXPECT_EQ(missing.error(),
              "Cannot open " + dir.File("missing.pack") + ": No such file or directory");
}

// A hand-made LZO1X stream of 999 bytes for 1000: 988 literals, then 12 bytes copied from
// the start, then the end marker.
std::string LzoStream(const std::string& literals) {
    // A long literal run: 0, three zeros (3 * 255) and 205, for 3 + 15 + 765 + 205 = 988.
    std::string stream = std::string(4, '\0') + '\xCD' + literals;
    // A near match of 10 + 2 bytes, 988 back: distance - 1 shifted left by two.
    stream += std::string("\x2A") + Word((988 - 1) << 2).substr(0, 2);
    return stream + std::string("\x11\x00\x00", 3);
}

TEST_F(PackFormatTest, ALastBlockStoredAtItsLengthIsRawAndShorterIsDecompressed) {
    std::string literals;
    for (int i = 0; i < 988; ++i)
        literals += static_cast<char>('a' + i % 26);
    const std::string stream = LzoStream(literals);
    ASSERT_EQ(stream.size(), 999u);
    // "raw" stores the stream and a byte more, 1000 bytes; "lzo" stores the stream alone.
    const std::string padded = stream + '!';
    const std::string table = Header(2, 40, 2) + Word(0) + Word(20) + Word(999) + Word(1000) +
                              Record(76, 0, 1000, "lzo") + Record(76 + 999, 1, 1000, "raw");
    ASSERT_EQ(table.size(), 76u);
    ASSERT_TRUE(Load(table + stream + padded)) << provider.error();
    EXPECT_EQ(Content("raw"), padded);
    EXPECT_EQ(Content("lzo"), literals + literals.substr(0, 12));
}

TEST_F(PackFormatTest, AnEntryOfWholeBlocksEndsAtItsSize) {
    const std::string table = Header(2, 40, 2) + Word(0) + Word(22) + Word(65536) + Word(1) +
                              Record(76, 0, 65536, "whole") + Record(76 + 65536, 1, 1, "z");
    ASSERT_EQ(table.size(), 76u);
    ASSERT_TRUE(Load(table + std::string(65536, 'w') + "z")) << provider.error();
    const auto whole = provider.open("whole");
    ASSERT_TRUE(whole);
    EXPECT_EQ(ReadRest(*whole, 4096), std::string(65536, 'w'));
    EXPECT_TRUE(whole->eof());
    EXPECT_EQ(whole->get(), -1);
    EXPECT_TRUE(whole->seek(65535));
    EXPECT_EQ(ReadRest(*whole, 70000), "w");
    EXPECT_FALSE(whole->failed());
    EXPECT_EQ(Content("z"), "z");
}

}  // namespace
