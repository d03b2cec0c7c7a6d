// `quillet-cli tile` against other writers of the same project: a holder of the lock makes it
// give up without writing, and two runs at once never leave page and project disagreeing.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <map>
#include <sstream>

#include "PageFile.h"
#include "TempDir.h"
#include "core_file_lock.h"

namespace {

using namespace std::chrono_literals;

struct Region {
    std::string name;
    int32_t left, top, right, bottom;
};

constexpr int32_t kPageSize = 64;

// Regions that fit the page under every order and spacing the test uses.
const std::vector<Region> kRegions = {
    {"banner", 0, 0, 20, 12}, {"column", 20, 0, 30, 18}, {"tile", 30, 0, 46, 16},
    {"dot", 46, 0, 54, 8},    {"strip", 0, 20, 24, 26},  {"pillar", 24, 20, 30, 40},
};

// A project of one page whose every pixel tells where it was.
std::string WriteProject(const TempDir& dir) {
    const Picture page(Core::create_image(kPageSize, kPageSize, Core::PIXEL_FORMAT_8888),
                       Core::destroy_image);
    for (uint32_t y = 0; y < kPageSize; ++y)
        for (uint32_t x = 0; x < kPageSize; ++x)
            page->set_pixel(x, y, {static_cast<uint8_t>(x), static_cast<uint8_t>(y), 0x40, 0xFF});
    EXPECT_TRUE(Core::save_tga(*page, dir.File("page.tga").c_str(), Core::PIXEL_FORMAT_8888));
    std::string text = "<version>1.01</version>\r\n<texture>page.tga\r\n";
    for (const Region& region : kRegions)
        text += "  <region>" + region.name + "\r\n    <left>" + std::to_string(region.left) +
                "</left>\r\n    <top>" + std::to_string(region.top) + "</top>\r\n    <right>" +
                std::to_string(region.right) + "</right>\r\n    <bottom>" +
                std::to_string(region.bottom) + "</bottom>\r\n  </region>\r\n";
    text +=
        "</texture>\r\n<layout>\r\n  <layout_width>800</layout_width>\r\n"
        "  <layout_height>600</layout_height>\r\n  <piece_types_fname></piece_types_fname>\r\n"
        "  <piece_texts_fname></piece_texts_fname>\r\n</layout>\r\n";
    return dir.Write("project.qlt", text);
}

// The value of `<tag>N</tag>` on `line`, if it is that tag.
bool ReadTag(const std::string& line, const std::string& tag, int32_t& value) {
    const std::string open = "<" + tag + ">";
    const size_t at = line.find(open);
    if (at == std::string::npos) return false;
    value = std::stoi(line.substr(at + open.size()));
    return true;
}

std::vector<Region> RegionsOf(const std::string& project) {
    std::vector<Region> regions;
    std::istringstream lines(ReadFile(project));
    for (std::string line; std::getline(lines, line);) {
        if (line.find("<region>") != std::string::npos) {
            regions.push_back({line.substr(line.find('>') + 1), 0, 0, 0, 0});
            regions.back().name.erase(regions.back().name.find_last_not_of("\r") + 1);
        } else if (!regions.empty()) {
            Region& region = regions.back();
            ReadTag(line, "left", region.left) || ReadTag(line, "top", region.top) ||
                ReadTag(line, "right", region.right) || ReadTag(line, "bottom", region.bottom);
        }
    }
    return regions;
}

// Every region's pixels, by name, as the page and the project now place them.
std::map<std::string, std::vector<uint32_t>> RegionPixels(const TempDir& dir) {
    const Picture page = LoadPage(dir.File("page.tga"));
    std::map<std::string, std::vector<uint32_t>> pixels;
    if (page == nullptr) return pixels;
    for (const Region& region : RegionsOf(dir.File("project.qlt"))) {
        std::vector<uint32_t>& cut = pixels[region.name];
        for (int32_t y = region.top; y < region.bottom; ++y)
            for (int32_t x = region.left; x < region.right; ++x) {
                const Core::Colour colour =
                    page->get_pixel(static_cast<uint32_t>(x), static_cast<uint32_t>(y));
                cut.push_back(uint32_t{colour.blue} | uint32_t{colour.green} << 8 |
                              uint32_t{colour.red} << 16 | uint32_t{colour.alpha} << 24);
            }
    }
    return pixels;
}

// Starts quillet-cli with `arguments`, its output and errors going to `errors`.
pid_t StartCli(const std::vector<std::string>& arguments, const std::string& errors) {
    const pid_t child = ::fork();
    if (child != 0) return child;
    const int out = ::open(errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    ::dup2(out, 1);
    ::dup2(out, 2);
    std::vector<char*> argv{const_cast<char*>(QUILLET_CLI)};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    ::execv(QUILLET_CLI, argv.data());
    ::_exit(127);
}

int ExitCode(pid_t child) {
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(TileWriters, AProjectHeldByAnotherProcessIsLeftAsItWas) {
    TempDir dir;
    const std::string project = WriteProject(dir);
    const std::string page_before = ReadFile(dir.File("page.tga"));
    const std::string project_before = ReadFile(project);

    Core::FileLock other = Core::FileLock::acquire(project, 0ms);
    ASSERT_TRUE(other.held());
    const std::string errors = dir.File("errors.txt");
    EXPECT_EQ(ExitCode(StartCli({"tile", project, "page.tga", "4"}, errors)), 1);
    EXPECT_EQ(ReadFile(errors), project + " is being changed by another process\n");
    EXPECT_EQ(ReadFile(dir.File("page.tga")), page_before);
    EXPECT_EQ(ReadFile(project), project_before);

    other.release();
    EXPECT_EQ(ExitCode(StartCli({"tile", project, "page.tga", "4"}, errors)), 0);
    EXPECT_NE(ReadFile(project), project_before);
    EXPECT_FALSE(std::filesystem::exists(project + ".lock"));
}

TEST(TileWriters, TwoRunsAtOnceNeverMoveAPixelOfARegion) {
    TempDir dir;
    const std::string project = WriteProject(dir);
    const auto before = RegionPixels(dir);
    ASSERT_EQ(before.size(), kRegions.size());
    for (int round = 0; round < 50; ++round) {
        const pid_t first = StartCli({"tile", project, "page.tga", std::to_string(round % 4), "0"},
                                     dir.File("first.txt"));
        const pid_t second =
            StartCli({"tile", project, "page.tga", std::to_string((round + 2) % 5), "1"},
                     dir.File("second.txt"));
        ASSERT_EQ(ExitCode(first), 0) << ReadFile(dir.File("first.txt"));
        ASSERT_EQ(ExitCode(second), 0) << ReadFile(dir.File("second.txt"));
        ASSERT_EQ(RegionPixels(dir), before) << "round " << round;
    }
}

}  // namespace
