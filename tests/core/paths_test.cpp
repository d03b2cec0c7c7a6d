#include <dlfcn.h>
#include <gtest/gtest.h>

#include <boost/filesystem/operations.hpp>
#include <chrono>
#include <filesystem>
#include <optional>
#include <regex>
#include <set>

#include "TempDir.h"
#include "core_io.h"
#include "core_paths.h"
#include "core_projects.h"

namespace {

namespace fs = std::filesystem;

// Sets an environment variable, or removes it, for the life of the object.
class ScopedEnv {
public:
    ScopedEnv(const char* name, std::optional<std::string> value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        set(value);
    }
    ~ScopedEnv() { set(old_); }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    void set(const std::optional<std::string>& value) {
        if (value)
            ::setenv(name_, value->c_str(), 1);
        else
            ::unsetenv(name_);
    }
    const char* name_;
    std::optional<std::string> old_;
};

// The test's folder stands for the tools' folder and the user's data; one project is set.
class PathsTest : public testing::Test {
protected:
    TempDir dir;
    ScopedEnv data_home{"XDG_DATA_HOME", dir.File("share")};
    Core::Projects projects;
    std::string game = dir.File("game");

    void SetUp() override {
        Core::set_tools_root(dir.File("tools"));
        Core::set_project_root(game);
    }
    void TearDown() override {
        Core::set_tools_root("");
        Core::set_application_data_name("");
    }

    // A file whose last write lies two days back.
    std::string OldFile(const std::string& name, const std::string& bytes) {
        const std::string path = dir.Write(name, bytes);
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(48));
        return path;
    }
    static bool WrittenInTheLastHour(const std::string& path) {
        return fs::last_write_time(path) > fs::file_time_type::clock::now() - std::chrono::hours(1);
    }
};

TEST_F(PathsTest, KindsBuildOnTheCurrentProjectOrStayRelative) {
    using Core::PathKind;
    EXPECT_EQ(Core::path(PathKind::project_root).string(), game);
    const std::pair<PathKind, const char*> under_project[] = {{PathKind::tools, "tools"},
                                                              {PathKind::asset, "asset"},
                                                              {PathKind::exports, "export"},
                                                              {PathKind::data, "data"},
                                                              {PathKind::temp, "temp"}};
    for (const auto& [kind, name] : under_project) {
        EXPECT_EQ(Core::path(kind).string(), game + "/" + name);
        EXPECT_EQ(Core::path(kind, false).string(), name);
    }
    EXPECT_TRUE(Core::path(PathKind::project_root, false).empty());
    EXPECT_TRUE(Core::path(static_cast<PathKind>(9)).empty());
    EXPECT_EQ(Core::data_path("ui/menu.tga").string(), game + "/data/ui/menu.tga");

    EXPECT_EQ(Core::path(PathKind::tools_root).string(), dir.File("tools"));
    EXPECT_EQ(Core::path(PathKind::utils).string(), dir.File("tools") + "/utils");
    Core::set_tools_root("");
    EXPECT_EQ(Core::path(PathKind::tools_root).string(),
              fs::read_symlink("/proc/self/exe").parent_path().string() + "/");
}

TEST_F(PathsTest, ApplicationDataIsMadeUnderTheUsersDataFolder) {
    Core::set_application_data_name("Quillet");
    EXPECT_EQ(Core::path(Core::PathKind::application_data).string(), dir.File("share/Quillet"));
    EXPECT_TRUE(fs::is_directory(dir.File("share/Quillet")));
    // A relative XDG_DATA_HOME does not count: the home folder's default holds.
    ScopedEnv relative{"XDG_DATA_HOME", "relative/share"};
    ScopedEnv home{"HOME", dir.File("home")};
    EXPECT_EQ(Core::path(Core::PathKind::application_data).string(),
              dir.File("home/.local/share/Quillet"));
    EXPECT_TRUE(fs::is_directory(dir.File("home/.local/share/Quillet")));
}

TEST_F(PathsTest, ResolveAsksTheIoManagerAboutTheProjectFirst) {
    EXPECT_FALSE(Core::exists_in("ui/menu.tga", Core::PathKind::data));  // no IO manager
    dir.Write("game/data/ui/menu.tga", "x");
    Core::IOManager io;
    EXPECT_TRUE(Core::exists_in("ui/menu.tga", Core::PathKind::data));
    EXPECT_EQ(Core::resolve("ui/menu.tga", Core::PathKind::data).string(),
              game + "/data/ui/menu.tga");
    EXPECT_FALSE(Core::exists_in("ui/missing.tga", Core::PathKind::data));
    EXPECT_EQ(Core::resolve("ui/missing.tga", Core::PathKind::data).string(),
              "data/ui/missing.tga");
}

TEST(PathTextTest, RelativeToClimbsByWholeComponentsWithoutRegardToCase) {
    const struct {
        const char* file;
        const char* directory;
        const char* relative;  // null: no common root
    } cases[] = {
        {"/a/b/x.tga", "/a/b", ".\\x.tga"},
        {"/a/b/c/x.tga", "/a", ".\\b\\c\\x.tga"},
        {"/a/c/x.tga", "/a/b", "..\\c\\x.tga"},
        {"/a/x.tga", "/a/b/c", "..\\..\\x.tga"},
        {"/A/B/x.tga", "/a/b/", ".\\x.tga"},
        {"/a/bc/x.tga", "/a/b", "..\\bc\\x.tga"},
        {"/x.tga", "/", ".\\x.tga"},
        {"/a/b", "/a/b", "..\\b"},
        {"pages\\ui\\x.tga", "pages", ".\\ui\\x.tga"},
        {"pages/x.tga", "other", nullptr},
        {"/a/x.tga", "a", nullptr},
        {"x.tga", "", nullptr},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(std::string(test.file) + " from " + test.directory);
        std::string relative = "stale";
        EXPECT_EQ(Core::relative_to(test.file, test.directory, relative), test.relative != nullptr);
        EXPECT_EQ(relative, test.relative != nullptr ? test.relative : "");
    }
    EXPECT_EQ(Core::rebase("/a/b/x.tga", "/a", "/out").string(), "/out/./b/x.tga");
    EXPECT_EQ(Core::rebase("/a/b", "/a/b", "/out").string(), "/out");
    EXPECT_EQ(Core::rebase("/a/x.tga", "a", "/out").string(), "/out");

    EXPECT_EQ(Core::backslashes("a/b\\c"), "a\\b\\c");
    EXPECT_EQ(Core::slashes("a/b\\c"), "a/b/c");
    EXPECT_EQ(Core::backslashes("name.tga"), "name.tga");
    EXPECT_EQ(Core::slashes("name.tga"), "name.tga");
}

TEST_F(PathsTest, IsInsideTestsTheTextOfExistingPaths) {
    const std::string file = dir.Write("Art/menu.tga", "x");
    dir.Write("Artwork/menu.tga", "x");
    EXPECT_TRUE(Core::is_inside(file, dir.Path().string()));
    EXPECT_TRUE(Core::is_inside(file, dir.File("ART")));
    EXPECT_FALSE(Core::is_inside(file, dir.File("Art/menu.tga")));
    EXPECT_FALSE(Core::is_inside(dir.File("Art/missing.tga"), dir.File("Art")));
    // The parent's text holds the folder's text: a longer name counts too.
    EXPECT_TRUE(Core::is_inside(dir.File("Artwork/menu.tga"), dir.File("Art")));
}

TEST_F(PathsTest, CopyReplacesTheTargetWholeAndStampsTheCopy) {
    const std::string from = OldFile("from.txt", "new bytes");
    const std::string to = OldFile("to.txt", "old");
    ASSERT_TRUE(Core::copy_file(from, to));
    EXPECT_EQ(ReadFile(to), "new bytes");
    EXPECT_TRUE(WrittenInTheLastHour(to));
    EXPECT_FALSE(WrittenInTheLastHour(from));

    ASSERT_TRUE(Core::copy_file(from, dir.File("made/for/it.txt")));
    EXPECT_EQ(ReadFile(dir.File("made/for/it.txt")), "new bytes");
    EXPECT_FALSE(Core::copy_file(dir.File("missing.txt"), to));
    EXPECT_FALSE(Core::copy_file(dir.File("made"), to));  // a folder is no file to copy
    EXPECT_EQ(ReadFile(to), "new bytes");
}

TEST_F(PathsTest, TouchAndEnsureDirectoryWorkOnWhatIsThere) {
    const std::string file = OldFile("page.tga", "x");
    EXPECT_TRUE(Core::touch(file));
    EXPECT_TRUE(WrittenInTheLastHour(file));
    EXPECT_FALSE(Core::touch(dir.File("missing.tga")));
    EXPECT_FALSE(fs::exists(dir.File("missing.tga")));
    EXPECT_FALSE(Core::touch(dir.Path().string()));

    EXPECT_TRUE(Core::ensure_directory(dir.File("a/b/c")));
    EXPECT_TRUE(fs::is_directory(dir.File("a/b/c")));
    EXPECT_TRUE(Core::ensure_directory(dir.File("a/b/c")));
    EXPECT_FALSE(Core::ensure_directory(dir.File("page.tga/sub")));
}

TEST_F(PathsTest, TemporaryNamesAreFreshNamesUnderTmpdirAndNothingIsCreated) {
    ScopedEnv tmpdir{"TMPDIR", dir.File("tmp")};
    fs::create_directories(dir.File("tmp"));
    std::set<std::string> names;
    for (int count = 0; count < 50; ++count) {
        const fs::path name = Core::temp_file_name();
        EXPECT_EQ(name.parent_path(), dir.File("tmp"));
        EXPECT_TRUE(std::regex_match(name.filename().string(), std::regex("core_tmp_\\w{6}")))
            << name;
        names.insert(name.string());
    }
    EXPECT_EQ(names.size(), 50u);
    EXPECT_TRUE(fs::is_empty(dir.File("tmp")));

    // Without a temporary folder the name comes from the clock, in the program's folder.
    ScopedEnv missing{"TMPDIR", dir.File("no such folder")};
    const std::string name = Core::temp_file_name();
    EXPECT_EQ(name.substr(0, Core::program_folder().size()), Core::program_folder());
    EXPECT_TRUE(std::regex_match(name.substr(Core::program_folder().size()),
                                 std::regex(R"(core_tmp_\d\d-\d\d-\d\d-\d\d\d)")))
        << name;
}

void FunctionOfThisProgram() {}

TEST(ProgramPathsTest, ModulesFoldersAndVersions) {
    const std::string program = fs::read_symlink("/proc/self/exe").string();
    EXPECT_EQ(Core::module_path().string(), program);
    EXPECT_EQ(Core::module_path(reinterpret_cast<const void*>(&FunctionOfThisProgram)).string(),
              program);
    const void* in_libc = ::dlsym(RTLD_DEFAULT, "getpid");
    ASSERT_NE(in_libc, nullptr);
    EXPECT_EQ(Core::module_path(in_libc).filename().string().substr(0, 4), "libc");

    EXPECT_EQ(Core::current_directory().string(), fs::current_path().string());
    EXPECT_EQ(Core::file_version(program), "");
}

}  // namespace
