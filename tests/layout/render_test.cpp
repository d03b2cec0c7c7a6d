// The picture of a layout page, on small pages of real projects whose page files are real
// TGA files. Every expected pixel was worked out by hand from the blending and stretching
// rules: m(a, b) = (a * b + 127) / 255, and destination offset X of a stretch takes source
// column ((2X + 1) * SW) / (2 * DW).
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "layout/LayoutRenderer.h"
#include "layout/Placeholders.h"
#include "texture/TexturePageFixture.h"

namespace {

constexpr Core::Colour kGrey{0xCD, 0xCD, 0xCD, 0xFF};

using Painter = std::function<Core::Colour(int32_t x, int32_t y)>;
using PageRegions = std::pair<std::string, std::vector<RegionAt>>;

class RenderTest : public TexturePageFixture {
protected:
    // A picture file of `format` painted pixel by pixel.
    std::string WritePicture(const std::string& name, int32_t width, int32_t height,
                             Core::PixelFormat format, const Painter& paint) {
        const ImagePtr image(Core::create_image(
            static_cast<uint32_t>(width), static_cast<uint32_t>(height), Core::PIXEL_FORMAT_8888));
        for (int32_t y = 0; y < height; ++y) {
            for (int32_t x = 0; x < width; ++x)
                image->set_pixel(static_cast<uint32_t>(x), static_cast<uint32_t>(y), paint(x, y));
        }
        const std::string path = dir.File(name);
        EXPECT_TRUE(Core::save_tga(*image, path.c_str(), format));
        return path;
    }

    // Opens a project of the given texture pages (files in the test's folder); `movies` are
    // records placed before the layout section.
    void OpenProject(const std::vector<PageRegions>& pages, const std::string& movies = "") {
        std::string text = ProjectText(pages);
        text.insert(text.find("<layout>"), movies);
        Start();
        project = Open("project.qlt", text);
        ASSERT_NE(project, nullptr);
        ui.boxes.clear();
    }

    // The common case: page.tga, 8x8 pixels painted with SourceColour, cut into `regions`.
    void OpenWithPage(const std::vector<RegionAt>& regions) {
        page_path = WritePage("page.tga", 8, 8);
        OpenProject({{"page.tga", regions}});
    }

    UI_REGION Slot(const std::string& region, const std::string& page = "") const {
        return {"art", page.empty() ? page_path : dir.File(page), region};
    }

    template <typename Kind>
    void AddObject(const std::string& name, const std::vector<UI_REGION>& slots) {
        auto object = std::make_unique<Kind>(name);
        object->regions = slots;
        project->AddObject(std::move(object));
    }

    static UI_PIECE Piece(const std::string& object, int32_t x, int32_t y, float scale_x = 1.0f,
                          float scale_y = 1.0f, bool locked = false) {
        UI_PIECE piece;
        piece.name = object + std::to_string(x) + "_" + std::to_string(y);
        piece.object_id = object;
        piece.x = x;
        piece.y = y;
        piece.scale_x = scale_x;
        piece.scale_y = scale_y;
        piece.locked = locked;
        return piece;
    }

    ImagePtr Render(const std::vector<UI_PIECE>& pieces, int32_t width, int32_t height) {
        LPAGE page;
        page.name = "Menu";
        page.width = width;
        page.height = height;
        page.pieces = pieces;
        return renderer.Render(page, {width, height});
    }

    static Core::Colour At(const ImagePtr& picture, int32_t x, int32_t y) {
        return picture->get_pixel(static_cast<uint32_t>(x), static_cast<uint32_t>(y));
    }

    long Boxes(const std::string& text) const {
        return std::count_if(ui.boxes.begin(), ui.boxes.end(), [&text](const auto& box) {
            return box.text == text && box.caption == "Error";
        });
    }

    CQuilletDoc* project = nullptr;
    LayoutRenderer renderer;
};

void ExpectAllGrey(const ImagePtr& picture) {
    ASSERT_NE(picture, nullptr);
    const Core::Size size = picture->get_size();
    for (uint32_t y = 0; y < static_cast<uint32_t>(size.height); ++y) {
        for (uint32_t x = 0; x < static_cast<uint32_t>(size.width); ++x)
            ASSERT_EQ(picture->get_pixel(x, y), kGrey) << x << "," << y;
    }
}

TEST_F(RenderTest, AnEmptyPageIsGreyAndTooLargeAPageIsRefusedOnce) {
    OpenWithPage({});
    const ImagePtr picture = Render({}, 3, 2);
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->get_format(), Core::PIXEL_FORMAT_8888);
    EXPECT_EQ(picture->get_size(), (Core::Size{3, 2}));
    ExpectAllGrey(picture);

    EXPECT_NE(Render({}, 16384, 1), nullptr);
    EXPECT_EQ(Render({}, 16385, 1), nullptr);
    EXPECT_EQ(Render({}, 1, 16385), nullptr);
    EXPECT_EQ(Render({}, -1, 1), nullptr);
    EXPECT_EQ(Boxes("Unable to create tpage"), 1);
    EXPECT_EQ(ui.boxes.size(), 1u);
}

TEST_F(RenderTest, PiecesBlendAsTheyStandAndLockedPiecesTakeTheRedTint) {
    // Half-transparent, fully transparent and opaque pixels.
    const Core::Colour pixels[] = {
        {0x10, 0x20, 0x30, 0x80}, {0, 0, 0, 0}, {0x11, 0x22, 0x33, 0xFF}};
    page_path = WritePicture("page.tga", 3, 1, Core::PIXEL_FORMAT_8888,
                             [&pixels](int32_t x, int32_t) { return pixels[x]; });
    OpenProject(
        {{"page.tga", {{"half", {0, 0, 1, 1}}, {"clear", {1, 0, 2, 1}}, {"solid", {2, 0, 3, 1}}}}});
    AddObject<UI_ART>("half", {Slot("half")});
    AddObject<UI_ART>("clear", {Slot("clear")});
    AddObject<UI_ART>("solid", {Slot("solid")});

    const ImagePtr picture = Render(
        {Piece("half", 0, 0), Piece("clear", 1, 0, 1, 1, true), Piece("solid", 2, 0, 1, 1, true)},
        4, 1);
    ASSERT_NE(picture, nullptr);
    // At full strength: sa = 128, each channel Cs + m(CD, 127) = Cs + 0x66.
    EXPECT_EQ(At(picture, 0, 0), (Core::Colour{0x76, 0x86, 0x96, 0xFF}));
    // The tint 00,00,FF,80 at 128 over grey: sa = 64, B and G m(CD, 191) = 0x9A, R 128 + 0x9A.
    EXPECT_EQ(At(picture, 1, 0), (Core::Colour{0x9A, 0x9A, 0xFF, 0xFF}));
    // Over 11,22,33: B m(0x11, 191) = 0x0D, G m(0x22, 191) = 0x19, R 128 + m(0x33, 191) = 0xA6.
    EXPECT_EQ(At(picture, 2, 0), (Core::Colour{0x0D, 0x19, 0xA6, 0xFF}));
    EXPECT_EQ(At(picture, 3, 0), kGrey);
    EXPECT_TRUE(ui.boxes.empty());
}

TEST_F(RenderTest, AStretchSamplesTheSourceAtPixelCentres) {
    OpenWithPage({{"art", {5, 1, 8, 3}}});
    AddObject<UI_ART>("art", {Slot("art")});
    // 3x2 at scale 2.5 is 7.5x5, truncated to 7x5.
    const ImagePtr picture = Render({Piece("art", 1, 1, 2.5f, 2.5f)}, 9, 7);
    ASSERT_NE(picture, nullptr);
    const int32_t columns[] = {0, 0, 1, 1, 1, 2, 2};  // (2X + 1) * 3 / 14
    const int32_t rows[] = {0, 0, 1, 1, 1};           // (2Y + 1) * 2 / 10
    for (int32_t y = 0; y < 5; ++y) {
        for (int32_t x = 0; x < 7; ++x)
            EXPECT_EQ(At(picture, 1 + x, 1 + y), SourceColour(5 + columns[x], 1 + rows[y]))
                << x << "," << y;
    }
    EXPECT_EQ(At(picture, 0, 0), kGrey);
    EXPECT_EQ(At(picture, 8, 1), kGrey);
    EXPECT_EQ(At(picture, 1, 6), kGrey);
}

TEST_F(RenderTest, OnlyWhatOverlapsIsDrawnOfPiecesAndRegionsBeyondTheirEdges) {
    page_path = WritePage("page.tga", 8, 8);
    WritePage("flat.tga", 8, 8, Core::PIXEL_FORMAT_888);
    // "beyond" reaches one pixel past the right and bottom of its 8x8 page.
    OpenProject({{"page.tga", {{"block", {0, 0, 3, 3}}, {"beyond", {6, 6, 9, 9}}}},
                 {"flat.tga", {{"flat_beyond", {6, 6, 9, 9}}}}});
    AddObject<UI_ART>("block", {Slot("block")});
    AddObject<UI_ART>("beyond", {Slot("beyond")});
    AddObject<UI_ART>("flat_beyond", {Slot("flat_beyond", "flat.tga")});

    const ImagePtr clipped = Render({Piece("block", -1, -1), Piece("block", 4, 4)}, 5, 5);
    ASSERT_NE(clipped, nullptr);
    EXPECT_EQ(At(clipped, 0, 0), SourceColour(1, 1));
    EXPECT_EQ(At(clipped, 1, 1), SourceColour(2, 2));
    EXPECT_EQ(At(clipped, 2, 0), kGrey);
    EXPECT_EQ(At(clipped, 4, 4), SourceColour(0, 0));
    EXPECT_EQ(At(clipped, 3, 4), kGrey);

    // Past the picture the cut holds zero bytes: transparent in 8888, opaque black in 888.
    const ImagePtr beyond = Render({Piece("beyond", 0, 0), Piece("flat_beyond", 3, 0)}, 6, 3);
    ASSERT_NE(beyond, nullptr);
    EXPECT_EQ(At(beyond, 1, 1), SourceColour(7, 7));
    EXPECT_EQ(At(beyond, 2, 1), kGrey);
    EXPECT_EQ(At(beyond, 1, 2), kGrey);
    EXPECT_EQ(At(beyond, 4, 1), SourceColour(7, 7));
    EXPECT_EQ(At(beyond, 5, 1), (Core::Colour{0, 0, 0, 0xFF}));
    EXPECT_EQ(At(beyond, 4, 2), (Core::Colour{0, 0, 0, 0xFF}));
}

TEST_F(RenderTest, GreyPagesGiveAlphaEqualToTheirGrey) {
    const ImagePtr grey(Core::create_image(2, 2, Core::PIXEL_FORMAT_GREY));
    std::fill_n(static_cast<uint8_t*>(grey->get_data()), 4, uint8_t{0x40});
    page_path = dir.File("grey.tga");
    ASSERT_TRUE(Core::save_tga(*grey, page_path.c_str(), Core::PIXEL_FORMAT_GREY));
    OpenProject({{"grey.tga", {{"shade", {0, 0, 2, 2}}}}});
    AddObject<UI_ART>("shade", {Slot("shade")});

    const ImagePtr picture = Render({Piece("shade", 0, 0)}, 2, 2);
    ASSERT_NE(picture, nullptr);
    // 40,40,40,40: sa = 64, each channel 0x40 + m(CD, 191) = 0x40 + 0x9A.
    EXPECT_EQ(At(picture, 1, 1), (Core::Colour{0xDA, 0xDA, 0xDA, 0xFF}));
}

TEST_F(RenderTest, ARegionNotYetWrittenToItsPageDrawsItsOwnPicture) {
    OpenWithPage({});
    const ImagePtr own(Core::create_image(2, 1, Core::PIXEL_FORMAT_888));
    own->set_pixel(0, 0, {1, 2, 3, 0});
    own->set_pixel(1, 0, {4, 5, 6, 0});
    // Far beyond the page file: only its own picture can show it.
    project->AddRegion(page_path, "fresh", {20, 20, 22, 21}, own.get());
    AddObject<UI_ART>("fresh", {Slot("fresh")});

    const ImagePtr picture = Render({Piece("fresh", 0, 0)}, 3, 1);
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(At(picture, 0, 0), (Core::Colour{1, 2, 3, 0xFF}));
    EXPECT_EQ(At(picture, 1, 0), (Core::Colour{4, 5, 6, 0xFF}));
    EXPECT_EQ(At(picture, 2, 0), kGrey);
}

// A vertical slider 4 wide: decrease 4x2, thumb 4x3, increase 4x2 and a track 2x1, laid out
// as decrease at 0, track and thumb at 2, increase at 5, the track centred at x 1: 4x7.
class SliderRenderTest : public RenderTest {
protected:
    void SetUp() override {
        OpenWithPage({{"decrease", {0, 0, 4, 2}},
                      {"thumb", {0, 2, 4, 5}},
                      {"increase", {0, 5, 4, 7}},
                      {"track", {4, 0, 6, 1}}});
        auto slider = std::make_unique<UI_V_SLIDER>("slider");
        slider->parts.push_back(Part<UI_ART>("Art", "track"));
        slider->parts.push_back(Part<UI_PUSH_BUTTON>("Thumb", "thumb"));
        slider->parts.push_back(Part<UI_PUSH_BUTTON>("Decrease", "decrease"));
        slider->parts.push_back(Part<UI_PUSH_BUTTON>("Increase", "increase"));
        slider->Arrange();
        project->AddObject(std::move(slider));
    }

    template <typename Kind>
    std::unique_ptr<UI_OBJECT> Part(const std::string& name, const std::string& region) {
        auto part = std::make_unique<Kind>(name);
        part->regions = {Slot(region)};
        return part;
    }

    // Rows `first` to `last` of the page show rows from `source_top` of the source, one for one.
    static void ExpectBand(const ImagePtr& picture, int32_t first, int32_t last,
                           int32_t source_top) {
        for (int32_t y = first; y <= last; ++y) {
            for (int32_t x = 0; x < 4; ++x)
                EXPECT_EQ(At(picture, x, y), SourceColour(x, source_top + y - first))
                    << x << "," << y;
        }
    }

    static void ExpectTrack(const ImagePtr& picture, int32_t first, int32_t last) {
        for (int32_t y = first; y <= last; ++y) {
            EXPECT_EQ(At(picture, 0, y), kGrey) << y;
            EXPECT_EQ(At(picture, 1, y), SourceColour(4, 0)) << y;
            EXPECT_EQ(At(picture, 2, y), SourceColour(5, 0)) << y;
            EXPECT_EQ(At(picture, 3, y), kGrey) << y;
        }
    }
};

TEST_F(SliderRenderTest, StretchedAlongItsAxisOnlyTheTrackStretchesAndTheThumbStaysInTheMiddle) {
    // Twice as long, 4x14: the track runs from 2 to 12 and the thumb sits at (14 - 3) / 2.
    const ImagePtr picture = Render({Piece("slider", 0, 0, 1.0f, 2.0f)}, 4, 14);
    ASSERT_NE(picture, nullptr);
    ExpectBand(picture, 0, 1, 0);  // decrease
    ExpectTrack(picture, 2, 4);
    ExpectBand(picture, 5, 7, 2);  // thumb, drawn over the track
    ExpectTrack(picture, 8, 11);
    ExpectBand(picture, 12, 13, 5);  // increase
}

TEST_F(SliderRenderTest, SqueezedBelowItsButtonsTheTrackDrawsNothing) {
    // 3.5 truncated to 3 rows: the track would run from 2 up to 1. The thumb takes rows 0 to
    // 2, the decrease 0 and 1 over it, the increase 1 and 2 over both.
    const ImagePtr picture = Render({Piece("slider", 0, 0, 1.0f, 0.5f)}, 4, 3);
    ASSERT_NE(picture, nullptr);
    ExpectBand(picture, 0, 0, 0);
    ExpectBand(picture, 1, 2, 5);
}

TEST_F(RenderTest, ButtonsDrawOnlyTheirFirstStateOverTheUnionOfAllStates) {
    OpenWithPage({{"up", {0, 0, 2, 2}}, {"over", {2, 0, 5, 3}}});
    AddObject<UI_PUSH_BUTTON>("push", {Slot("up"), Slot("over")});
    AddObject<UI_TOGGLE_BUTTON>("toggle", {Slot("over"), Slot("up")});

    const ImagePtr picture = Render({Piece("push", 0, 0), Piece("toggle", 3, 0)}, 6, 3);
    ASSERT_NE(picture, nullptr);
    const int32_t stretched[] = {0, 1, 1};  // 2 onto 3: (2X + 1) * 2 / 6
    for (int32_t y = 0; y < 3; ++y) {
        for (int32_t x = 0; x < 3; ++x) {
            EXPECT_EQ(At(picture, x, y), SourceColour(stretched[x], stretched[y])) << x << "," << y;
            EXPECT_EQ(At(picture, 3 + x, y), SourceColour(2 + x, y)) << x << "," << y;
        }
    }
}

TEST_F(RenderTest, PiecesOverOneRegionShareOnePictureUntilTheRegionIsCutElsewhere) {
    OpenWithPage({{"art", {0, 0, 2, 2}}});
    AddObject<UI_ART>("first", {Slot("art")});
    AddObject<UI_ART>("second", {Slot("art")});
    const std::vector<UI_PIECE> pieces = {Piece("first", 0, 0), Piece("second", 2, 0)};

    ImagePtr picture = Render(pieces, 4, 2);
    ASSERT_EQ(renderer.Cache().Entries().size(), 1u);
    const Core::Image* shared = renderer.Cache().Entries().front().image.get();
    EXPECT_EQ(renderer.Cache().Entries().front().region_name, "art");
    EXPECT_EQ(At(picture, 3, 1), SourceColour(1, 1));

    // New pixels under the same rectangle: the picture already cut stays.
    WritePage("page.tga", 8, 8, Core::PIXEL_FORMAT_8888, 0x80);
    picture = Render(pieces, 4, 2);
    ASSERT_EQ(renderer.Cache().Entries().size(), 1u);
    EXPECT_EQ(renderer.Cache().Entries().front().image.get(), shared);
    EXPECT_EQ(At(picture, 0, 0), SourceColour(0, 0));

    // Cut elsewhere: the stale picture goes and the new place is read.
    project->MoveRegion(page_path, "art", 4, 4);
    picture = Render(pieces, 4, 2);
    ASSERT_EQ(renderer.Cache().Entries().size(), 1u);
    EXPECT_EQ(renderer.Cache().Entries().front().source_rect, (PageRect{4, 4, 6, 6}));
    EXPECT_EQ(At(picture, 0, 0), SourceColour(4, 4, 0x80));
    EXPECT_EQ(At(picture, 3, 1), SourceColour(5, 5, 0x80));
}

TEST_F(RenderTest, MissingThingsDrawNothingAndEachIsToldOnce) {
    page_path = WritePage("page.tga", 8, 8);
    // The project has gone.tga, but its file was never written.
    OpenProject({{"page.tga", {{"here", {0, 0, 2, 2}}}}, {"gone.tga", {{"lost", {0, 0, 2, 2}}}}});
    AddObject<UI_ART>("no_region", {Slot("absent")});
    AddObject<UI_ART>("no_file", {Slot("lost", "gone.tga")});
    AddObject<UI_ART>("unknown", {Slot("nothing", "nowhere.tga")});
    const std::vector<UI_PIECE> pieces = {Piece("no_such_object", 0, 0), Piece("no_region", 0, 0),
                                          Piece("no_file", 0, 0), Piece("no_file", 1, 1),
                                          Piece("unknown", 0, 0)};

    ExpectAllGrey(Render(pieces, 4, 4));
    ExpectAllGrey(Render(pieces, 4, 4));
    EXPECT_EQ(Boxes("Object not found"), 1);
    EXPECT_EQ(Boxes("TPage region not found"), 1);
    EXPECT_EQ(Boxes("File not found:\r\n" + dir.File("gone.tga")), 1);
    EXPECT_EQ(Boxes("Fmv not found"), 1);
    EXPECT_EQ(Boxes("Unknown region"), 1);
    EXPECT_EQ(Boxes("Failed to create tpage image buffer"), 1);
    EXPECT_EQ(ui.boxes.size(), 6u);
    EXPECT_TRUE(renderer.Cache().Entries().empty());
}

TEST_F(RenderTest, EmptyObjectsAndMoviesDrawTheirPlaceholders) {
    page_path = WritePage("page.tga", 8, 8);
    // A movie that takes 20x10 where a region would stand.
    OpenProject({{"page.tga", {}}},
                "<fmv>clip.mpg\r\n  <path>movies</path>\r\n  <identifier>clip_mpg</identifier>\r\n"
                "  <left>10</left>\r\n  <top>10</top>\r\n  <right>30</right>\r\n"
                "  <bottom>20</bottom>\r\n</fmv>\r\n");
    AddObject<UI_ART>("movie", {Slot("clip_mpg", "clip.mpg")});
    const ImagePtr film = MakeFmvPlaceholder();
    const ImagePtr empty = MakeEmptyPlaceholder();
    ASSERT_NE(film, nullptr);
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(film->get_format(), Core::PIXEL_FORMAT_888);
    EXPECT_EQ(film->get_size(), (Core::Size{64, 64}));
    const auto placeholder = [](const ImagePtr& picture, int32_t x, int32_t y) {
        Core::Colour colour = At(picture, x, y);
        colour.alpha = 0xFF;
        return colour;
    };

    // The whole film frame squeezed into 20x10; the empty art at half size; the empty slider,
    // twice its size, still shows one placeholder at its corner.
    const ImagePtr picture = Render({Piece("movie", 0, 0), Piece("empty_art", 0, 10, 0.5f, 0.5f),
                                     Piece("empty_vt_slider", 40, 0, 2.0f, 2.0f)},
                                    170, 130);
    ASSERT_NE(picture, nullptr);
    for (int32_t y = 0; y < 10; ++y) {
        for (int32_t x = 0; x < 20; ++x)
            ASSERT_EQ(At(picture, x, y),
                      placeholder(film, (2 * x + 1) * 64 / 40, (2 * y + 1) * 64 / 20))
                << x << "," << y;
    }
    for (int32_t y = 0; y < 32; ++y) {
        for (int32_t x = 0; x < 32; ++x)
            ASSERT_EQ(At(picture, x, 10 + y), placeholder(empty, 2 * x + 1, 2 * y + 1))
                << x << "," << y;
    }
    for (int32_t y = 0; y < 64; ++y) {
        for (int32_t x = 0; x < 64; ++x)
            ASSERT_EQ(At(picture, 40 + x, y), placeholder(empty, x, y)) << x << "," << y;
    }
    EXPECT_EQ(At(picture, 40 + 64, 0), kGrey);
    EXPECT_EQ(At(picture, 40, 64), kGrey);
    EXPECT_NE(placeholder(film, 32, 32), placeholder(empty, 32, 32));

    // One picture for both empty objects, and the movie's under its identifier.
    const auto& entries = renderer.Cache().Entries();
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].region_name, "clip_mpg");
    EXPECT_EQ(entries[0].source_rect, (PageRect{10, 10, 30, 20}));
    EXPECT_EQ(entries[1].region_name, "");
    EXPECT_EQ(entries[1].source_rect, (PageRect{0, 0, 64, 64}));
    EXPECT_TRUE(ui.boxes.empty());
}

}  // namespace
