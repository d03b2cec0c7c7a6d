#include <gtest/gtest.h>

#include <boost/archive/archive_exception.hpp>
#include <boost/archive/basic_archive.hpp>
#include <filesystem>
#include <optional>

#include "TempDir.h"
#include "core.h"
#include "core_io.h"
#include "core_paths.h"
#include "core_projects.h"

namespace {

using Code = boost::archive::archive_exception::exception_code;

// A string as the text archive writes it: its length, a space, the text.
std::string Field(const std::string& text) {
    return std::to_string(text.size()) + " " + text;
}

std::string Header() {
    const boost::archive::library_version_type version = boost::archive::BOOST_ARCHIVE_VERSION();
    return "22 serialization::archive " + std::to_string(static_cast<unsigned>(version)) + " ";
}

// Each test keeps its roster in a folder of its own that stands for the tools' folder.
class ProjectsTest : public testing::Test {
protected:
    TempDir dir;
    std::string roster = dir.File("tools/ProjectRoster.txt");

    void SetUp() override {
        std::filesystem::create_directories(dir.Path() / "tools");
        Core::set_tools_root(dir.File("tools"));
    }
    void TearDown() override { Core::set_tools_root(""); }

    // A project's root folder, with a meta file when `meta` is given.
    std::string Root(const std::string& name, std::optional<std::string> meta = {}) {
        std::filesystem::create_directories(dir.Path() / name);
        if (meta) dir.Write(name + "/vorlanProject.meta", *meta);
        return dir.File(name);
    }
};

TEST_F(ProjectsTest, RosterKeepsNamesRootsAndCurrentAndRereadsTheCacheFolder) {
    const std::string game = Root("game", "cacheDir = D:/cache ; local\n");
    const std::string other = Root("other");
    {
        Core::Projects written;
        written.add({"Game", game, "not stored"});
        written.add({"My Other", other, "not stored"});
        written.select(0);
        ASSERT_TRUE(written.save());
    }
    // Class information of the registry and of the list, the count, the item version, the
    // class information of the first entry, the entries, the current index.
    EXPECT_EQ(ReadFile(roster), Header() + "0 0 0 0 2 0 0 0 " + Field("Game") + " " + Field(game) +
                                    " " + Field("My Other") + " " + Field(other) + " 0\n");

    Core::Projects read;
    read.load();
    ASSERT_EQ(read.projects().size(), 2u);
    EXPECT_EQ(read.projects()[0].name, "Game");
    EXPECT_EQ(read.projects()[0].root, game);
    EXPECT_EQ(read.projects()[0].cacheDir, "D:/cache");
    EXPECT_EQ(read.projects()[1].name, "My Other");
    EXPECT_EQ(read.projects()[1].cacheDir, "");
    EXPECT_EQ(read.current(), 0);
    EXPECT_EQ(read.current_root(), game);
}

TEST_F(ProjectsTest, MissingRosterIsTheOneFailureTheUserIsToldOf) {
    Core::Projects projects;
    projects.add({"Kept", Root("kept"), ""});
    try {
        projects.load();
        FAIL() << "a missing roster must throw";
    } catch (const Core::Projects::Exception& error) {
        EXPECT_STREQ(
            error.what(),
            "No projects defined - Please run ProjectRoster\n(Program Files->Vorlan->Tools)");
    }
    // The backup is optional: without one the list stays as it was.
    projects.load_backup();
    ASSERT_EQ(projects.projects().size(), 1u);
    EXPECT_EQ(projects.projects()[0].name, "Kept");

    ASSERT_TRUE(projects.save_backup());
    EXPECT_FALSE(std::filesystem::exists(roster));
    projects.clear();
    projects.load_backup();
    ASSERT_EQ(projects.projects().size(), 1u);
    EXPECT_EQ(projects.current_root(), "");  // saved while nothing was current
}

TEST_F(ProjectsTest, DamagedRostersThrowTheArchiveErrorAndLeaveTheListAsItWas) {
    const std::string entry = "0 0 0 0 1 0 0 0 " + Field("Game") + " " + Field("/game") + " 0\n";
    const struct {
        const char* what;
        std::string text;
        Code code;
    } cases[] = {
        {"empty", "", Code::input_stream_error},
        {"another format", "<?xml version=\"1.0\"?>\n<roster/>\n", Code::input_stream_error},
        {"another signature", "22 serialization::archivX 17 " + entry, Code::invalid_signature},
        {"a later library", "22 serialization::archive 999 " + entry, Code::unsupported_version},
        {"cut short", (Header() + entry).substr(0, 40), Code::input_stream_error},
        {"a huge count", Header() + "0 0 0 0 4000000000 0 0 0 4 Game", Code::input_stream_error},
        {"a huge name", Header() + "0 0 0 0 1 0 0 0 99999999999 Game", Code::input_stream_error},
        {"a huge signature", "18446744073709551615 serialization::archive",
         Code::input_stream_error},
    };
    Core::Projects projects;
    projects.add({"Kept", Root("kept"), ""});
    projects.select(0);
    for (const auto& damaged : cases) {
        SCOPED_TRACE(damaged.what);
        dir.Write("tools/ProjectRoster.txt", damaged.text);
        try {
            projects.load();
            ADD_FAILURE() << "no archive error";
        } catch (const boost::archive::archive_exception& error) {
            EXPECT_EQ(error.code, damaged.code) << error.what();
        }
        ASSERT_EQ(projects.projects().size(), 1u);
        EXPECT_EQ(projects.current_root(), dir.File("kept"));
    }
}

TEST_F(ProjectsTest, AnIndexOutsideTheListSelectsNothing) {
    Core::Projects projects;
    projects.add({"Game", Root("game"), ""});
    for (int index : {1, -1, -7}) {
        projects.select(0);
        projects.select(index);
        EXPECT_EQ(projects.current(), -1);
        EXPECT_EQ(projects.current_root(), "");
    }
    dir.Write("tools/ProjectRoster.txt",
              Header() + "0 0 0 0 1 0 0 0 " + Field("Game") + " " + Field("/game") + " 7\n");
    projects.load();
    EXPECT_EQ(projects.current(), -1);
}

TEST_F(ProjectsTest, MetaFileGivesTheCacheFolderOnlyFromAWholeKeyLine) {
    Core::Projects projects;
    projects.add({"Lines",
                  Root("lines",
                       "; the cache of this project\r\n"
                       "\n"
                       "   \t\n"
                       "a line without an equals sign\n"
                       "  cacheDir = E:/indented ; not the key: its spaces stay\n"
                       "root = a = b\n"
                       "cacheDir = D:/cache ; local\n"),
                  ""});
    projects.add(
        {"No key", Root("nokey", "; cacheDir = E:/commented\ncache = E:/other\n"), "kept"});
    projects.add({"No meta", Root("nometa"), "kept"});
    const char* expected[] = {"D:/cache", "kept", "kept"};
    for (int index = 0; index < 3; ++index) {
        projects.select(index);
        EXPECT_EQ(projects.projects()[static_cast<size_t>(index)].cacheDir, expected[index])
            << projects.projects()[static_cast<size_t>(index)].name;
    }
}

TEST_F(ProjectsTest, ProjectRootWithoutRosterAndMetaFileFoundUpward) {
    Core::Projects projects;
    projects.add({"Old", Root("old"), ""});
    const std::string game = Root("game", "cacheDir=/var/cache/game\n");
    Core::set_project_root(game);
    ASSERT_EQ(projects.projects().size(), 1u);
    EXPECT_EQ(projects.projects()[0].name, "");
    EXPECT_EQ(projects.projects()[0].cacheDir, "/var/cache/game");
    EXPECT_EQ(projects.current_root(), game);

    std::filesystem::create_directories(dir.Path() / "game/data/ui");
    const std::filesystem::path meta = dir.Path() / "game/vorlanProject.meta";
    EXPECT_EQ(Core::find_project_meta(dir.File("game/data/ui")).string(), meta.string());
    EXPECT_EQ(Core::find_project_meta(game).string(), meta.string());
    try {
        Core::find_project_meta("no/such/folder");
        FAIL() << "no meta file above a relative path";
    } catch (const Core::Exception& error) {
        EXPECT_STREQ(error.what(), "Could not find vorlanProject.meta file");
    }
}

TEST(CoreInitTest, InitCreatesTheRegistriesOnceAndShutdownDeletesThem) {
    Core::init();
    Core::Projects* projects = Core::Projects::get();
    Core::IOManager* io = Core::IOManager::get();
    ASSERT_NE(projects, nullptr);
    ASSERT_NE(io, nullptr);
    Core::init();
    EXPECT_EQ(Core::Projects::get(), projects);
    EXPECT_EQ(Core::IOManager::get(), io);
    Core::shutdown();
    EXPECT_EQ(Core::Projects::get(), nullptr);
    EXPECT_EQ(Core::IOManager::get(), nullptr);
    Core::shutdown();
}

}  // namespace
