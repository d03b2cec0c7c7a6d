// Our pack writer: the bytes it lays out, the order of names, and a write that is atomic.
#include <gtest/gtest.h>

#include <filesystem>

#include "PackTestSupport.h"
#include "TempDir.h"
#include "core_file_transaction.h"
#include "core_pack_table.h"
#include "core_pack_writer.h"

namespace {

namespace fs = std::filesystem;

class PackWriterTest : public testing::Test {
protected:
    TempDir dir;
    std::string error;

    Core::PackWriteResult Write(const std::string& pack = "out.pack") {
        return Core::write_pack(dir.File(pack), dir.File("in"), error);
    }
    std::vector<std::string> Folder() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(dir.Path()))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
};

TEST_F(PackWriterTest, TheLayoutIsTheFormatFieldByField) {
    dir.Write("in/b", "xyz");
    dir.Write("in/A/c", "");
    ASSERT_EQ(Write(), Core::PackWriteResult::written) << error;
    // "A/c" (empty, no blocks) sorts before "b" (one raw block of 3 bytes).
    const std::string table = Header(2, 38, 1) + Word(0) + Word(20) + Word(3) +
                              Record(70, 0, 0, "A/c") + Record(70, 0, 3, "b");
    ASSERT_EQ(table.size(), 70u);
    EXPECT_EQ(ReadFile(dir.File("out.pack")), table + "xyz");
}

TEST(PackNamesTest, NamesCompareAsLowerCaseUnsignedBytes) {
    EXPECT_EQ(Core::compare_pack_names("UI/Back.TGA", "ui/back.tga"), 0);
    EXPECT_LT(Core::compare_pack_names("a", "B"), 0);
    // Folding to lower case puts '_' before the letters; to upper case it would follow them.
    EXPECT_LT(Core::compare_pack_names("_x", "Z"), 0);
    EXPECT_LT(Core::compare_pack_names("z", "\xC3\xA9"), 0);  // bytes above 0x7F are unsigned
    EXPECT_LT(Core::compare_pack_names("ui", "ui/a"), 0);
    EXPECT_GT(Core::compare_pack_names("ui/a", "ui-x/a"), 0);
}

TEST_F(PackWriterTest, EntriesStandInLookupOrder) {
    for (const char* name :
         {"Zebra", "apple", "_under", "Mid/deep/x", "mid/y", "\xC3\xA9t\xC3\xA9"})
        dir.Write(std::string("in/") + name, name);
    ASSERT_EQ(Write(), Core::PackWriteResult::written) << error;
    const std::string pack = ReadFile(dir.File("out.pack"));
    std::vector<size_t> at;
    for (const char* name :
         {"_under", "apple", "Mid/deep/x", "mid/y", "Zebra", "\xC3\xA9t\xC3\xA9"})
        at.push_back(pack.find(std::string(name) + '\0'));
    EXPECT_TRUE(std::is_sorted(at.begin(), at.end()));
    EXPECT_EQ(std::count(at.begin(), at.end(), std::string::npos), 0);
}

TEST_F(PackWriterTest, FoldersThatCannotBePackedAreRefused) {
    EXPECT_EQ(Write(), Core::PackWriteResult::input_failed);
    EXPECT_EQ(error, dir.File("in") + " is not a folder");
    fs::create_directories(dir.File("in/empty"));
    EXPECT_EQ(Write(), Core::PackWriteResult::input_failed);
    EXPECT_EQ(error, dir.File("in") + " holds no files, and a pack needs at least one");
    dir.Write("in/a.txt", "a");
    dir.Write("in/A.TXT", "A");
    EXPECT_EQ(Write(), Core::PackWriteResult::input_failed);
    EXPECT_EQ(error, dir.File("in/A.TXT") + " and " + dir.File("in/a.txt") +
                         " differ only in case, and a pack finds names without regard to case");
    EXPECT_EQ(Folder(), std::vector<std::string>{"in"});
}

TEST_F(PackWriterTest, APackInsideItsFolderDoesNotPackItself) {
    dir.Write("in/a", "a");
    ASSERT_EQ(Write("in/self.pack"), Core::PackWriteResult::written) << error;
    const std::string first = ReadFile(dir.File("in/self.pack"));
    ASSERT_EQ(Write("in/self.pack"), Core::PackWriteResult::written) << error;
    EXPECT_EQ(ReadFile(dir.File("in/self.pack")), first);
}

TEST_F(PackWriterTest, AFailedWriteLeavesTheOldPackAndNoTemporary) {
    dir.Write("in/a", std::string(200000, 'a'));
    dir.Write("out.pack", "old");
    // Steps: the table's room, the blocks, the table, the flush, the rename.
    for (int step = 1; step <= 5; ++step) {
        Core::Detail::fail_file_step(step);
        EXPECT_EQ(Write(), Core::PackWriteResult::output_failed) << step;
        Core::Detail::fail_file_step(0);
        EXPECT_EQ(error, "Cannot write " + dir.File("out.pack") + ": No space left on device");
        EXPECT_EQ(ReadFile(dir.File("out.pack")), "old");
        EXPECT_EQ(Folder(), (std::vector<std::string>{"in", "out.pack"}));
    }
    fs::permissions(dir.File("out.pack"), fs::perms::owner_read);
    EXPECT_EQ(Write(), Core::PackWriteResult::output_failed);
    EXPECT_EQ(error, "Cannot write " + dir.File("out.pack") + ": the file is read-only");
    EXPECT_EQ(Write("in"), Core::PackWriteResult::output_failed);
    EXPECT_EQ(Write("no/such/folder.pack"), Core::PackWriteResult::output_failed);
    EXPECT_EQ(ReadFile(dir.File("out.pack")), "old");
}

}  // namespace
