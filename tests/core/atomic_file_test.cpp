#include <gtest/gtest.h>

#include <filesystem>

#include "TempDir.h"
#include "core_atomic_file.h"

namespace {

TEST(AtomicFileTest, ReplacesContentAndKeepsPermissions) {
    TempDir dir;
    const std::string path = dir.Write("page.qlt", "old");
    std::filesystem::permissions(path, std::filesystem::perms(0640));
    std::string error;
    ASSERT_TRUE(Core::write_file_atomically(path, "new\r\n", error)) << error;
    EXPECT_EQ(ReadFile(path), "new\r\n");
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
    // Nothing is left behind beside the file.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.Path()),
                            std::filesystem::directory_iterator()),
              1);
}

TEST(AtomicFileTest, FailedRenameLeavesTargetAndNoTemporary) {
    TempDir dir;
    // A folder in the way cannot be replaced by a file.
    dir.Write("page.qlt/keep", "kept");
    std::string error;
    EXPECT_FALSE(Core::write_file_atomically(dir.File("page.qlt"), "new", error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(ReadFile(dir.File("page.qlt/keep")), "kept");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.Path()),
                            std::filesystem::directory_iterator()),
              1);
}

TEST(AtomicFileTest, FolderThatDoesNotExistFails) {
    TempDir dir;
    std::string error;
    EXPECT_FALSE(Core::write_file_atomically(dir.File("missing/x.qlt"), "x", error));
    EXPECT_FALSE(error.empty());
}

TEST(AtomicFileTest, ReadsOnlyRegularFiles) {
    TempDir dir;
    std::string bytes;
    std::string error;
    EXPECT_TRUE(Core::read_whole_file(dir.Write("a.qlt", std::string("a\0b", 3)), bytes, error));
    EXPECT_EQ(bytes, std::string("a\0b", 3));
    EXPECT_FALSE(Core::read_whole_file(dir.Path().string(), bytes, error));
    EXPECT_EQ(error, "Not a regular file");
    EXPECT_FALSE(Core::read_whole_file(dir.File("none.qlt"), bytes, error));
    EXPECT_EQ(error, "No such file");
}

}  // namespace
