// `quillet-cli tile` with its report, --json and --overflow, on real projects: the regions
// that do not fit move to new pages with their pixels and their objects, and what would
// overwrite or lose anything is refused before a file is written.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <regex>
#include <sstream>

#include "PageFile.h"
#include "TempDir.h"

namespace {

namespace fs = std::filesystem;

struct Rect {
    int32_t left = 0, top = 0, right = 0, bottom = 0;
    friend bool operator==(const Rect&, const Rect&) = default;
};

struct Region {
    std::string name;
    Rect rect;
};

constexpr int32_t kPageSize = 64;

// Three 40 by 40 regions, of which a 64 by 64 page holds one whatever the order, and two
// small ones that fit beside it.
const std::vector<Region> kRegions = {
    {"a", {0, 0, 40, 40}},   {"b", {24, 24, 64, 64}},  {"c", {12, 12, 52, 52}},
    {"dot", {40, 0, 48, 8}}, {"tick", {48, 0, 52, 4}},
};

// A button on "b" and a slider whose art part shows "c".
const std::string kObjects =
    "<UI object>button\r\n<type>push_button</type>\r\n<UI region>enabled\r\n"
    "<page>page.tga</page>\r\n<region>b</region>\r\n</UI region>\r\n</UI object>\r\n"
    "<UI object>slider\r\n<type>UI_H_Slider</type>\r\n<UI object>Art\r\n<type>art</type>\r\n"
    "<UI region>art\r\n<page>page.tga</page>\r\n<region>c</region>\r\n</UI region>\r\n"
    "</UI object>\r\n</UI object>\r\n";

// A 24-bit page whose every pixel tells where it was, and a project that cuts it into
// `regions`, with the objects.
std::string WriteProject(const TempDir& dir, const std::vector<Region>& regions) {
    const Picture page(Core::create_image(kPageSize, kPageSize, Core::PIXEL_FORMAT_8888),
                       Core::destroy_image);
    for (uint32_t y = 0; y < kPageSize; ++y)
        for (uint32_t x = 0; x < kPageSize; ++x)
            page->set_pixel(x, y, {static_cast<uint8_t>(x), static_cast<uint8_t>(y), 0x40, 0xFF});
    EXPECT_TRUE(Core::save_tga(*page, dir.File("page.tga").c_str(), Core::PIXEL_FORMAT_888));
    std::string text = "<version>1.01</version>\r\n<texture>page.tga\r\n";
    for (const auto& [name, r] : regions)
        text += "  <region>" + name + "\r\n    <left>" + std::to_string(r.left) +
                "</left>\r\n    <top>" + std::to_string(r.top) + "</top>\r\n    <right>" +
                std::to_string(r.right) + "</right>\r\n    <bottom>" + std::to_string(r.bottom) +
                "</bottom>\r\n  </region>\r\n";
    text += "</texture>\r\n" + kObjects +
            "<layout>\r\n  <layout_width>800</layout_width>\r\n"
            "  <layout_height>600</layout_height>\r\n  <piece_types_fname></piece_types_fname>\r\n"
            "  <piece_texts_fname></piece_texts_fname>\r\n</layout>\r\n";
    return dir.Write("project.qlt", text);
}

// What a project file says of its pages, regions and slots.
struct Project {
    std::vector<std::string> pages;                // as written
    std::map<std::string, std::string> page_of;    // region -> its page
    std::map<std::string, Rect> rect_of;           // region -> its rectangle
    std::map<std::string, std::string> slot_page;  // region -> the page a slot names it on
};

// The text between `<tag>` and `</tag>` on `line`, if the line has it.
bool Tagged(const std::string& line, const std::string& tag, std::string& value) {
    const std::string open = "<" + tag + ">";
    const size_t at = line.find(open);
    if (at == std::string::npos) return false;
    value = line.substr(at + open.size());
    value = value.substr(0, value.find("</"));
    return true;
}

Project ReadProject(const std::string& path) {
    Project project;
    std::istringstream lines(ReadFile(path));
    std::string page, region, slot_page, value;
    for (std::string line; std::getline(lines, line);) {
        line.erase(line.find_last_not_of('\r') + 1);
        if (Tagged(line, "texture", value)) {
            project.pages.push_back(page = value);
        } else if (line.find("</texture>") != std::string::npos) {
            page.clear();
        } else if (Tagged(line, "page", value)) {
            slot_page = value;
        } else if (Tagged(line, "region", value)) {
            if (page.empty())
                project.slot_page[value] = slot_page;
            else
                project.page_of[region = value] = page;
        } else if (!page.empty()) {
            Rect& r = project.rect_of[region];
            for (auto [tag, edge] : {std::pair{"left", &r.left},
                                     {"top", &r.top},
                                     {"right", &r.right},
                                     {"bottom", &r.bottom}}) {
                if (Tagged(line, tag, value)) *edge = std::stoi(value);
            }
        }
    }
    return project;
}

// Every region's pixels, by name, as cut from the page file that the project puts it on.
std::map<std::string, std::vector<uint32_t>> RegionPixels(const TempDir& dir) {
    const Project project = ReadProject(dir.File("project.qlt"));
    std::map<std::string, std::vector<uint32_t>> pixels;
    for (const auto& [name, page_name] : project.page_of) {
        const Picture page = LoadPage(dir.File(page_name));
        if (page == nullptr) continue;
        const Rect& r = project.rect_of.at(name);
        std::vector<uint32_t>& cut = pixels[name];
        for (int32_t y = r.top; y < r.bottom; ++y)
            for (int32_t x = r.left; x < r.right; ++x) {
                const Core::Colour c =
                    page->get_pixel(static_cast<uint32_t>(x), static_cast<uint32_t>(y));
                cut.push_back(uint32_t{c.blue} | uint32_t{c.green} << 8 | uint32_t{c.red} << 16 |
                              uint32_t{c.alpha} << 24);
            }
    }
    return pixels;
}

// Every file of the folder with its bytes.
std::map<std::string, std::string> Files(const TempDir& dir) {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::directory_iterator(dir.Path()))
        files[entry.path().filename().string()] = ReadFile(entry.path().string());
    return files;
}

struct CliRun {
    int exit = -1;
    std::string out;
    std::string error;
};

CliRun RunCli(const std::string& arguments) {
    const TempDir streams;  // apart from the project's folder, whose files the tests compare
    const std::string command = std::string(QUILLET_CLI) + " " + arguments + " >" +
                                streams.File("out") + " 2>" + streams.File("error");
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(streams.File("out")),
            ReadFile(streams.File("error"))};
}

std::string WithoutTimes(const std::string& json) {
    return std::regex_replace(json, std::regex("\"milliseconds\":[0-9]+\\.[0-9]"),
                              "\"milliseconds\":T");
}

// The width, height and bits per pixel in a TGA file's header.
std::tuple<int, int, int> TgaShape(const std::string& path) {
    const std::string bytes = ReadFile(path);
    if (bytes.size() < 18) return {};
    const auto byte = [&bytes](size_t at) { return static_cast<unsigned char>(bytes[at]); };
    return {byte(12) | byte(13) << 8, byte(14) | byte(15) << 8, byte(16)};
}

TEST(TileOverflowTest, NewPagesTakeTheRegionsThatDoNotFitWithTheirPixelsAndObjects) {
    TempDir dir;
    const std::string project = WriteProject(dir, kRegions);
    const auto before = RegionPixels(dir);
    ASSERT_EQ(before.size(), kRegions.size());

    const CliRun run = RunCli("tile --json " + project + " page.tga 4 1 --overflow more.tga");
    ASSERT_EQ(run.exit, 0) << run.error;
    EXPECT_EQ(run.error, "");
    EXPECT_EQ(
        WithoutTimes(run.out),
        "{\"order\":4,\"spacing\":1,\"page\":{\"width\":64,\"height\":64},\"regions\":5,"
        "\"placed\":3,\"parked\":[\"b\",\"c\"],\"fill\":41.0,\"ratio\":0.90,\"milliseconds\":T,"
        "\"overflow\":[{\"path\":\"more.tga\",\"moved\":2,\"order\":4,\"spacing\":1,"
        "\"page\":{\"width\":64,\"height\":64},\"regions\":2,\"placed\":1,\"parked\":[\"c\"],"
        "\"fill\":39.1,\"ratio\":1.38,\"milliseconds\":T},{\"path\":\"more-2.tga\",\"moved\":1,"
        "\"order\":4,\"spacing\":1,\"page\":{\"width\":64,\"height\":64},\"regions\":1,"
        "\"placed\":1,\"parked\":[],\"fill\":39.1,\"ratio\":1.00,\"milliseconds\":T}]}\n");

    const Project saved = ReadProject(project);
    EXPECT_EQ(saved.pages, (std::vector<std::string>{"page.tga", "more.tga", "more-2.tga"}));
    for (const std::string& page : saved.pages)
        EXPECT_EQ(TgaShape(dir.File(page)), std::make_tuple(64, 64, 24)) << page;
    EXPECT_EQ(RegionPixels(dir), before);
    for (const auto& [region, page] : saved.slot_page)
        EXPECT_EQ(page, saved.page_of.at(region)) << region;
    EXPECT_EQ(saved.slot_page.size(), 2u);

    // Read again and written elsewhere, the project says the same (its pages sorted by path,
    // as every load sorts them).
    const CliRun again = RunCli("qlt roundtrip " + project + " " + dir.File("again.qlt"));
    ASSERT_EQ(again.exit, 0) << again.error;
    const Project reread = ReadProject(dir.File("again.qlt"));
    EXPECT_EQ(reread.pages, (std::vector<std::string>{"more-2.tga", "more.tga", "page.tga"}));
    EXPECT_EQ(reread.page_of, saved.page_of);
    EXPECT_EQ(reread.rect_of, saved.rect_of);
    EXPECT_EQ(reread.slot_page, saved.slot_page);
}

TEST(TileOverflowTest, TheTightestOrderReportsEachPageInText) {
    TempDir dir;
    const std::string project = WriteProject(dir, kRegions);
    const auto before = RegionPixels(dir);
    const CliRun run = RunCli("tile " + project + " page.tga 5 --overflow more.tga");
    ASSERT_EQ(run.exit, 0) << run.error;
    const std::string report =
        "Fit ratio = [0-9]+\\.[0-9]{2}\n"
        "Placed [0-9] of [0-9] regions, fill [0-9]+\\.[0-9]%\n";
    EXPECT_TRUE(
        std::regex_match(run.out, std::regex(report + "Moved 2 regions to more\\.tga\n" + report +
                                             "Moved 1 region to more-2\\.tga\n" + report)))
        << run.out;
    EXPECT_EQ(RegionPixels(dir), before);
}

TEST(TileOverflowTest, WhatWouldOverwriteOrNeverEndIsRefusedBeforeAnythingIsWritten) {
    TempDir dir;
    std::vector<Region> regions = kRegions;
    regions.push_back({"wide", {0, 0, 65, 10}});
    const std::string project = WriteProject(dir, regions);
    const auto unchanged = [&dir, before = Files(dir)] { return Files(dir) == before; };

    CliRun run = RunCli("tile " + project + " page.tga 4 --overflow more.tga");
    EXPECT_EQ(run.exit, 1);
    EXPECT_EQ(run.error, "1 region is larger than the page: wide\n");
    EXPECT_TRUE(unchanged());

    // Without the region too large, the second page's name is taken on disk, then the first
    // page's is the project's own page.
    regions.pop_back();
    WriteProject(dir, regions);
    dir.Write("more-2.tga", "mine");
    const auto unchanged_now = [&dir, before = Files(dir)] { return Files(dir) == before; };
    run = RunCli("tile " + project + " page.tga 4 --overflow more.tga");
    EXPECT_EQ(run.exit, 1);
    EXPECT_EQ(run.error,
              dir.File("more-2.tga") + " already exists: choose another name for the new page\n");
    run = RunCli("tile " + project + " page.tga 4 --overflow page.tga");
    EXPECT_EQ(run.exit, 1);
    EXPECT_EQ(run.error, dir.File("page.tga") + " is already a texture page of the project\n");
    EXPECT_TRUE(unchanged_now());

    for (const char* name : {"sub/more.tga", "'sub\\more.tga'", ".."}) {
        run = RunCli("tile " + project + " page.tga 4 --overflow " + name);
        EXPECT_EQ(run.exit, 2) << name;
        EXPECT_EQ(run.error.rfind("usage: quillet-cli tile", 0), 0u);
    }
    EXPECT_TRUE(unchanged_now());

    // A save that fails takes the files of the pages it made with it.
    fs::remove(dir.File("more-2.tga"));
    fs::permissions(project, fs::perms(0444));
    run = RunCli("tile " + project + " page.tga 4 --overflow more.tga");
    EXPECT_EQ(run.exit, 4);
    EXPECT_FALSE(fs::exists(dir.File("more.tga")));
    EXPECT_FALSE(fs::exists(dir.File("more-2.tga")));
}

TEST(TileOverflowTest, AllowedOutsideARegionTooLargeStaysAndTheRestMove) {
    TempDir dir;
    std::vector<Region> regions = kRegions;
    regions.push_back({"wide", {0, 0, 65, 10}});
    const std::string project = WriteProject(dir, regions);
    const CliRun run =
        RunCli("tile --allow-outside " + project + " page.tga 4 --overflow more.tga");
    ASSERT_EQ(run.exit, 0) << run.error;
    const Project saved = ReadProject(project);
    EXPECT_EQ(saved.pages.size(), 3u);
    EXPECT_EQ(saved.page_of.at("wide"), "page.tga");
    EXPECT_GE(saved.rect_of.at("wide").left, kPageSize) << "parked beside the page";
}

}  // namespace
