// A project with texture pages on disk: real TGA files whose every pixel tells where it came
// from, and a project file that cuts them into regions.
#pragma once

#include <string>
#include <vector>

#include "core_images.h"
#include "core_tga.h"
#include "model/ProjectFixture.h"
#include "texture/TexturePageDoc.h"

// A region by name and rectangle, as a test lays a page out.
struct RegionAt {
    std::string name;
    PageRect rect;
};

// Regions of these names and rectangles, without pictures.
inline std::vector<TREGION> RegionsOf(const std::vector<RegionAt>& places) {
    std::vector<TREGION> regions;
    for (const RegionAt& region : places)
        regions.emplace_back(region.name, region.rect, nullptr);
    return regions;
}

// The colour of page pixel (x, y) in a page that `TexturePageFixture::WritePage` made.
inline Core::Colour SourceColour(int32_t x, int32_t y, uint8_t tag = 0x40) {
    return {static_cast<uint8_t>(x), static_cast<uint8_t>(y), tag, 0xFF};
}

class TexturePageFixture : public ProjectFixture {
protected:
    // A page of the given size in `format` whose pixel (x, y) is SourceColour(x, y, tag).
    std::string WritePage(const std::string& name, int32_t width, int32_t height,
                          Core::PixelFormat format = Core::PIXEL_FORMAT_8888, uint8_t tag = 0x40) {
        const ImagePtr image(Core::create_image(
            static_cast<uint32_t>(width), static_cast<uint32_t>(height), Core::PIXEL_FORMAT_8888));
        for (int32_t y = 0; y < height; ++y) {
            for (int32_t x = 0; x < width; ++x)
                image->set_pixel(static_cast<uint32_t>(x), static_cast<uint32_t>(y),
                                 SourceColour(x, y, tag));
        }
        const std::string path = dir.File(name);
        EXPECT_TRUE(Core::save_tga(*image, path.c_str(), format));
        return path;
    }

    // A project file with one texture record per page, each with its regions.
    static std::string ProjectText(
        const std::vector<std::pair<std::string, std::vector<RegionAt>>>& pages) {
        std::string text = "<version>1.01</version>\r\n";
        for (const auto& [path, regions] : pages) {
            text += "<texture>" + path + "\r\n";
            for (const RegionAt& region : regions) {
                text += "  <region>" + region.name + "\r\n";
                text += "    <left>" + std::to_string(region.rect.left) + "</left>\r\n";
                text += "    <top>" + std::to_string(region.rect.top) + "</top>\r\n";
                text += "    <right>" + std::to_string(region.rect.right) + "</right>\r\n";
                text += "    <bottom>" + std::to_string(region.rect.bottom) + "</bottom>\r\n";
                text += "  </region>\r\n";
            }
            text += "</texture>\r\n";
        }
        return text + kEmptyProjectFile.substr(kEmptyProjectFile.find("<layout>"));
    }

    // Starts the application on a project of one page with `regions`; the page's file is
    // `page.tga` in the test's folder.
    CQuilletDoc* StartWithPage(const std::vector<RegionAt>& regions, int32_t width = 64,
                               int32_t height = 64,
                               Core::PixelFormat format = Core::PIXEL_FORMAT_8888) {
        page_path = WritePage("page.tga", width, height, format);
        Start();
        return Open("project.qlt", ProjectText({{"page.tga", regions}}));
    }

    CTexturePageDoc* OpenPage(CQuilletDoc& project) { return project.OpenTexture(page_path); }

    static ImagePtr LoadPage(const std::string& path) {
        Core::TgaReader reader;
        if (!reader.buffer.open(path.c_str())) return nullptr;
        return ImagePtr(Core::load_tga(reader, Core::PIXEL_FORMAT_8888));
    }

    std::string page_path;
};
