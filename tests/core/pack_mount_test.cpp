// Mounting packs in the IO manager: a pack file, a folder of packs, and the search order.
#include <gtest/gtest.h>

#include <filesystem>

#include "PackTestSupport.h"
#include "TempDir.h"
#include "core_pack_writer.h"
#include "core_settings.h"

namespace {

class PackMountTest : public testing::Test {
protected:
    TempDir dir;
    std::filesystem::path previous = std::filesystem::current_path();
    std::unique_ptr<Core::IOManager> manager;

    void SetUp() override {
        std::filesystem::current_path(dir.Path());
        manager = std::make_unique<Core::IOManager>();
    }
    void TearDown() override {
        manager.reset();
        Core::io_options() = Core::IOOptions();
        std::filesystem::current_path(previous);
    }

    // A pack at `path` holding `files` (name, content).
    void MakePack(const std::string& path,
                  const std::vector<std::pair<std::string, std::string>>& files) {
        TempDir source;
        for (const auto& [name, bytes] : files)
            source.Write(name, bytes);
        std::filesystem::create_directories(std::filesystem::path(dir.File(path)).parent_path());
        std::string error;
        ASSERT_EQ(Core::write_pack(dir.File(path), source.Path().string(), error),
                  Core::PackWriteResult::written)
            << error;
    }

    std::string Content(const std::string& path) { return Content(*manager, path); }
    static std::string Content(Core::IOManager& from, const std::string& path) {
        const auto buffer = from.open(path);
        return buffer ? ReadRest(*buffer, 100) : "(absent)";
    }
};

TEST_F(PackMountTest, APackFileIsSearchedBeforeLooseFilesUnlessFilesComeFirst) {
    MakePack("data/ui.pack", {{"ui/title.txt", "packed"}, {"ui/only.txt", "only"}});
    dir.Write("ui/title.txt", "loose");
    IoLines lines;
    EXPECT_TRUE(manager->mount("data/ui.pack"));
    EXPECT_EQ(lines.Take("mount"),
              (std::vector<std::string>{"mounted pack data/ui.pack", "mounting: data/ui.pack"}));
    EXPECT_EQ(Content("UI/Title.txt"), "packed");
    EXPECT_TRUE(manager->exists("ui/ONLY.txt"));
    EXPECT_EQ(Content("ui/only.txt"), "only");
    EXPECT_EQ(manager->find("ui/*.txt", 0).size(), 2u);  // merged, once each

    Core::io_options().file_first = true;
    Core::IOManager files_first;
    EXPECT_TRUE(files_first.mount("data/ui.pack"));
    EXPECT_EQ(Content(files_first, "ui/title.txt"), "loose");
    EXPECT_EQ(Content(files_first, "ui/only.txt"), "only");
}

TEST_F(PackMountTest, AFileThatIsNoPackIsLeftOutAndTheMountStillSucceeds) {
    dir.Write("data/broken.pack", "not a pack at all, though longer than a header");
    IoLines lines;
    EXPECT_TRUE(manager->mount("data/broken.pack"));
    EXPECT_TRUE(lines.Take("mount").empty());
    EXPECT_TRUE(manager->mount(""));
}

TEST_F(PackMountTest, AFolderMountsItsPacksInNameOrderWithTheLastSearchedFirst) {
    MakePack("root/packs/a.pack", {{"same.txt", "from a"}, {"a.txt", "a"}});
    MakePack("root/packs/b.pack", {{"same.txt", "from b"}});
    dir.Write("root/packs/readme.txt", "not a pack");
    Core::io_options().packs_root = "root";
    IoLines lines;
    EXPECT_TRUE(manager->mount("packs"));
    EXPECT_EQ(lines.Take("mount"),
              (std::vector<std::string>{
                  "mounted pack root/packs/a.pack", "mounted pack root/packs/b.pack",
                  "mounting: root/packs/a.pack", "mounting: root/packs/b.pack"}));
    EXPECT_EQ(Content("same.txt"), "from b");
    EXPECT_EQ(Content("a.txt"), "a");

    Core::io_options().file_first = true;
    Core::IOManager in_order;
    EXPECT_TRUE(in_order.mount("packs"));
    EXPECT_EQ(Content(in_order, "same.txt"), "from a");
}

TEST_F(PackMountTest, AFolderWithOneBadPackMountsNone) {
    MakePack("packs/a.pack", {{"a.txt", "a"}});
    dir.Write("packs/b.pack", "PACK");
    MakePack("packs/c.pack", {{"c.txt", "c"}});
    EXPECT_FALSE(manager->mount("packs"));
    EXPECT_EQ(Content("a.txt"), "(absent)");
    EXPECT_EQ(Content("c.txt"), "(absent)");
    EXPECT_TRUE(manager->mount("no-such-folder"));  // no packs, nothing to refuse
}

}  // namespace
