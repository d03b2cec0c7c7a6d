#include <gtest/gtest.h>

#include "model/qlt_paths.h"

namespace {

TEST(PathsTest, RelativeToBaseFollowsTheFormatsRule) {
    const std::string base = "C:\\a\\b\\";
    EXPECT_EQ(RelativeToBase("C:\\a\\b\\sub\\x.tga", base), "sub\\x.tga");
    EXPECT_EQ(RelativeToBase("C:\\a\\b\\x.tga", base), "x.tga");
    // Climbing counts one level more than it needs: the format's own rule.
    EXPECT_EQ(RelativeToBase("C:\\a\\c\\x.tga", base), "..\\..\\c\\x.tga");
    // No separator check: a sibling folder with the same beginning counts as below.
    EXPECT_EQ(RelativeToBase("C:\\a\\bc\\x.tga", base), "\\x.tga");
    EXPECT_EQ(RelativeToBase("D:\\x.tga", base), "D:\\x.tga");
    EXPECT_EQ(RelativeToBase("ab", base), "ab");
    EXPECT_EQ(RelativeToBase("C:\\a\\b\\x.tga", ""), "C:\\a\\b\\x.tga");
    // The base itself, without its trailing separator, leaves nothing behind.
    EXPECT_EQ(RelativeToBase("C:\\a\\b", base), "");
}

TEST(PathsTest, PosixPathsTakeTheFileFormOnTheWayOut) {
    project_base_dir = "/a/b/";
    std::string path = "/a/b/sub/x.tga";
    MakeRelativePath(path);
    EXPECT_EQ(path, "sub\\x.tga");
    path = "/a/c/x.tga";
    MakeRelativePath(path);
    EXPECT_EQ(path, "..\\..\\c\\x.tga");
    path = "/a/bc/x.tga";
    MakeRelativePath(path);
    EXPECT_EQ(path, "\\x.tga");
    // Everything shares the root on POSIX: a far path climbs to it.
    path = "/mnt/x.tga";
    MakeRelativePath(path);
    EXPECT_EQ(path, "..\\..\\..\\mnt\\x.tga");
}

TEST(PathsTest, AbsolutePathsAreTheBaseBeforeTheNativeValue) {
    project_base_dir = "/a/b/";
    std::string path = "sub\\x.tga";
    MakeAbsolutePath(path);
    EXPECT_EQ(path, "/a/b/sub/x.tga");
    path = "";
    MakeAbsolutePath(path);
    EXPECT_EQ(path, "/a/b/");
}

TEST(PathsTest, BaseIsTheFolderOfTheFile) {
    SetProjectBaseDir("/home/artist/menus/ui.qlt");
    EXPECT_EQ(project_base_dir, "/home/artist/menus/");
    SetProjectBaseDir("");
    EXPECT_EQ(project_base_dir, "");
    // Memory snapshots have no base: paths pass through whole.
    std::string path = "/home/artist/menus/pieces.txt";
    MakeRelativePath(path);
    MakeAbsolutePath(path);
    EXPECT_EQ(path, "/home/artist/menus/pieces.txt");
}

}  // namespace
