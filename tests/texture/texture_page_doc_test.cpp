// The texture page document: pages opened, cut, changed and rebuilt into real TGA files.
#include <gtest/gtest.h>

#include <filesystem>

#include "TexturePageFixture.h"

namespace {

using Core::Colour;

constexpr Colour kGrey{0xCD, 0xCD, 0xCD, 0xFF};

class TexturePageDocTest : public TexturePageFixture {};

TEST_F(TexturePageDocTest, SaveRebuildsThePageFromItsRegions) {
    // "a" is moved; "b" reaches across the right edge; "c" is drawn over "a" where they
    // overlap; the pixel at the bottom-right corner is covered by nothing.
    CQuilletDoc* project =
        StartWithPage({{"a", {0, 0, 8, 8}}, {"b", {60, 10, 70, 14}}, {"c", {20, 20, 24, 24}}});
    ASSERT_NE(project, nullptr);
    CTexturePageDoc* page = OpenPage(*project);
    ASSERT_NE(page, nullptr);
    ASSERT_TRUE(page->CutRegions());
    // The unused colour is the page's own, from the last pixel that no region covers.
    EXPECT_EQ(page->GetUnusedColour(), SourceColour(63, 63));

    page->SetRegionPosition("a", 18, 18);
    page->SetUnusedColour(kGrey);
    ASSERT_TRUE(project->DoFileSave());
    EXPECT_FALSE(page->IsModified());

    const ImagePtr saved = LoadPage(page_path);
    ASSERT_NE(saved, nullptr);
    EXPECT_EQ(saved->get_pixel(0, 0), kGrey) << "uncovered pixels take the unused colour";
    EXPECT_EQ(saved->get_pixel(18, 18), SourceColour(0, 0)) << "a's pixels moved with it";
    EXPECT_EQ(saved->get_pixel(21, 21), SourceColour(21, 21)) << "c lies over a";
    EXPECT_EQ(saved->get_pixel(63, 12), SourceColour(63, 12)) << "b is written clipped";

    // b's picture stayed whole: moved back onto the page, its cut-off part returns, and the
    // part that lay off the original page stays transparent.
    page->SetRegionPosition("b", 40, 40);
    ASSERT_TRUE(project->DoFileSave());
    const ImagePtr again = LoadPage(page_path);
    EXPECT_EQ(again->get_pixel(43, 40), SourceColour(63, 10));
    EXPECT_EQ(again->get_pixel(44, 40), Colour{});
}

TEST_F(TexturePageDocTest, SavingKeepsTheFilesFormatAndWarnsOncePerDuplicatedName) {
    CQuilletDoc* project =
        StartWithPage({{"twin", {0, 0, 4, 4}}, {"twin", {4, 0, 8, 4}}, {"twin", {8, 0, 12, 4}}}, 16,
                      16, Core::PIXEL_FORMAT_1555);
    CTexturePageDoc* page = OpenPage(*project);
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->GetSaveFormat(), Core::PIXEL_FORMAT_1555);
    EXPECT_FALSE(page->CutRegions() && page->IsModified()) << "cutting the page is no change";
    page->SetUnusedColour(kGrey);  // a change of the person's, so the save writes the page
    ui.boxes.clear();
    ASSERT_TRUE(project->DoFileSave());

    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, "WARNING: region twin appears 3 times in " + page_path +
                                    ", the game will not be able to differentiate between the "
                                    "duplicates");
    Core::TgaReader reader;
    ASSERT_TRUE(reader.buffer.open(page_path.c_str()));
    Core::TgaHeader header;
    Core::read_tga_header(reader, header);
    EXPECT_EQ(Core::tga_format(header), Core::PIXEL_FORMAT_1555);
}

TEST_F(TexturePageDocTest, CreatedPagesWriteTheirFileAtOnceInTheChosenFormat) {
    Start();
    CQuilletDoc* project = GetProjectDoc();
    const struct {
        uint32_t depth;
        bool alpha;
        Core::PixelFormat format;
    } cases[] = {{32, false, Core::PIXEL_FORMAT_888},
                 {16, true, Core::PIXEL_FORMAT_1555},
                 {32, true, Core::PIXEL_FORMAT_8888},
                 {16, false, Core::PIXEL_FORMAT_555}};
    for (const auto& each : cases) {
        TextureDialogData data;
        data.bit_depth = each.depth;
        data.alpha = each.alpha;
        data.width = 32;
        data.height = 16;
        const std::string path = dir.File("new" + std::to_string(each.format) + ".tga");
        CTexturePageDoc* page = project->CreateNewTexture(path, data);
        ASSERT_NE(page, nullptr);
        EXPECT_EQ(page->GetSaveFormat(), each.format);
        EXPECT_EQ(page->GetPageSize().width, 32);
        EXPECT_EQ(page->GetExtent().width, 40);
        Core::TgaReader reader;
        ASSERT_TRUE(reader.buffer.open(path.c_str()));
        Core::TgaHeader header;
        Core::read_tga_header(reader, header);
        EXPECT_EQ(Core::tga_format(header), each.format);
        // Asked again, the project hands back the page it has.
        EXPECT_EQ(project->CreateNewTexture(path, data), page);
    }
}

TEST_F(TexturePageDocTest, AddingAnExistingFileOpensItOnce) {
    Start();
    CQuilletDoc* project = GetProjectDoc();
    const std::string path = WritePage("added.tga", 16, 16);
    EXPECT_TRUE(project->AddExistingTexture(path));
    EXPECT_TRUE(project->IsModified());
    ASSERT_EQ(app.Templates()[1]->GetDocuments().size(), 1u);
    EXPECT_FALSE(project->AddExistingTexture(path));
    EXPECT_EQ(app.Templates()[1]->GetDocuments().size(), 1u);
    EXPECT_EQ(project->records().texture_pages.size(), 1u);
}

TEST_F(TexturePageDocTest, TheUnusedColourIsChosenOpaque) {
    CQuilletDoc* project = StartWithPage({});
    CTexturePageDoc* page = OpenPage(*project);
    ui.colours = {framework::Rgb{1, 2, 3}, std::nullopt};
    page->SelectUnusedColour();
    EXPECT_EQ(page->GetUnusedColour(), (Colour{3, 2, 1, 0xFF}));
    EXPECT_EQ(page->GetDisplayImage()->get_pixel(5, 5), (Colour{3, 2, 1, 0xFF}));
    page->SelectUnusedColour();
    EXPECT_EQ(page->GetUnusedColour(), (Colour{3, 2, 1, 0xFF})) << "cancelled";
}

// The regions of a page closed after a save keep their pictures, so reopening cuts nothing:
// the colour it was saved with must come back all the same.
TEST_F(TexturePageDocTest, APageReopenedAfterASaveKeepsItsUnusedColour) {
    CQuilletDoc* project = StartWithPage({{"a", {0, 0, 8, 8}}});
    CTexturePageDoc* page = OpenPage(*project);
    page->CutRegions();
    page->SetUnusedColour({1, 2, 3, 0xFF});
    ASSERT_TRUE(project->DoFileSave());
    page->OnCloseDocument();

    page = OpenPage(*project);
    EXPECT_FALSE(page->CutRegions());
    EXPECT_EQ(page->GetUnusedColour(), (Colour{1, 2, 3, 0xFF}));
    EXPECT_EQ(page->GetDisplayImage()->get_pixel(40, 40), (Colour{1, 2, 3, 0xFF}));
    page->SetRegionPosition("a", 20, 20);
    ASSERT_TRUE(project->DoFileSave());
    EXPECT_EQ(LoadPage(page_path)->get_pixel(63, 63), (Colour{1, 2, 3, 0xFF}));
}

TEST_F(TexturePageDocTest, APageWithoutAPictureIsNotSaved) {
    Start();
    auto* empty = dynamic_cast<CTexturePageDoc*>(app.Templates()[1]->OpenDocumentFile(""));
    ASSERT_NE(empty, nullptr);
    EXPECT_FALSE(empty->SavePage());
}

TEST_F(TexturePageDocTest, APageWhoseFileIsNotAPictureClosesAndStaysInTheProject) {
    CQuilletDoc* project = StartWithPage({{"a", {0, 0, 4, 4}}});
    std::filesystem::resize_file(page_path, 10);
    ui.boxes.clear();
    EXPECT_EQ(OpenPage(*project), nullptr);
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, "This file does not contain a valid tga header");
    EXPECT_EQ(ui.boxes[0].caption, page_path);
    EXPECT_EQ(ui.boxes[0].icon, framework::MessageIcon::Stop);
    EXPECT_TRUE(project->TextureExists(page_path));
    EXPECT_TRUE(app.Templates()[1]->GetDocuments().empty());
}

TEST_F(TexturePageDocTest, ChangesOfAClosedPageAreWrittenWithTheNextSave) {
    CQuilletDoc* project = StartWithPage({{"a", {0, 0, 8, 8}}});
    CTexturePageDoc* page = OpenPage(*project);
    page->CutRegions();
    page->SetRegionPosition("a", 30, 30);
    page->OnCloseDocument();
    EXPECT_TRUE(project->IsModified());
    EXPECT_EQ(LoadPage(page_path)->get_pixel(30, 30), SourceColour(30, 30));

    // Opened again before the save, the page shows what was never written.
    page = OpenPage(*project);
    ASSERT_NE(page, nullptr);
    EXPECT_TRUE(page->IsModified());
    page->OnCloseDocument();

    ASSERT_TRUE(project->DoFileSave());
    EXPECT_EQ(LoadPage(page_path)->get_pixel(30, 30), SourceColour(0, 0));
}

TEST_F(TexturePageDocTest, APageThatCannotBeWrittenStopsTheSaveAndStaysModified) {
    CQuilletDoc* project = StartWithPage({{"a", {0, 0, 8, 8}}});
    CTexturePageDoc* page = OpenPage(*project);
    page->CutRegions();
    page->SetRegionPosition("a", 4, 4);
    const std::string project_file = ReadFile(project->GetPathName());
    // The page's name is taken by a folder: no file can be written there.
    std::filesystem::remove(page_path);
    std::filesystem::create_directory(page_path);
    ui.boxes.clear();

    // The folder stands where the page was read from: the save asks first.
    ui.answers = {framework::Answer::Yes};
    EXPECT_FALSE(project->DoFileSave());
    ASSERT_EQ(ui.boxes.size(), 2u);
    EXPECT_EQ(ui.boxes[0].text,
              page_path + " has changed on disk since it was read or last saved. Overwrite it?");
    EXPECT_EQ(ui.boxes[1].text, "Cannot save " + page_path + ": Is a directory");
    EXPECT_TRUE(page->IsModified());
    EXPECT_TRUE(project->IsModified());
    EXPECT_EQ(ReadFile(project->GetPathName()), project_file);
}

TEST_F(TexturePageDocTest, RegionsAreCutFromWhatLiesOnThePage) {
    CQuilletDoc* project = StartWithPage({{"edge", {60, -2, 68, 2}}, {"empty", {5, 5, 3, 9}}});
    CTexturePageDoc* page = OpenPage(*project);
    page->CutRegions();
    Core::Image* edge = nullptr;
    ASSERT_TRUE(project->RegionImage(page_path, "edge", edge));
    EXPECT_EQ(edge->get_size(), (Core::Size{8, 4}));
    EXPECT_EQ(edge->get_pixel(0, 2), SourceColour(60, 0));
    EXPECT_EQ(edge->get_pixel(3, 3), SourceColour(63, 1));
    EXPECT_EQ(edge->get_pixel(4, 2), Colour{}) << "off the page's right edge";
    EXPECT_EQ(edge->get_pixel(0, 1), Colour{}) << "above the page";
    Core::Image* empty = nullptr;
    ASSERT_TRUE(project->RegionImage(page_path, "empty", empty));
    EXPECT_EQ(empty->get_size(), (Core::Size{0, 4}));
}

TEST_F(TexturePageDocTest, CuttingMovesEachCutRegionToTheListsEnd) {
    CQuilletDoc* project =
        StartWithPage({{"a", {0, 0, 4, 4}}, {"b", {4, 0, 8, 4}}, {"c", {8, 0, 12, 4}}});
    CTexturePageDoc* page = OpenPage(*project);
    ImagePtr picture(Core::create_image(4, 4, Core::PIXEL_FORMAT_8888));
    project->FindTexture(page_path).regions[1].SetImage(picture.get());
    page->CutRegions();
    const auto& regions = project->FindTexture(page_path).regions;
    ASSERT_EQ(regions.size(), 3u);
    EXPECT_EQ(regions[0].name, "b");
    EXPECT_EQ(regions[1].name, "a");
    EXPECT_EQ(regions[2].name, "c");
    EXPECT_EQ(regions[0].image->get_pixel(0, 0), Colour{}) << "b kept the picture it had";
    EXPECT_EQ(regions[1].image->get_pixel(0, 0), SourceColour(0, 0));
}

TEST_F(TexturePageDocTest, ImportParksThePictureRightOfThePage) {
    CQuilletDoc* project = StartWithPage({});
    const std::string icon = WritePage("icon.tga", 12, 5, Core::PIXEL_FORMAT_888);
    CTexturePageDoc* page = OpenPage(*project);
    page->ImportRegion(icon, "icon");
    const TREGION& region = project->RegionOfTexture(page_path, "icon");
    EXPECT_EQ(region.rect, (PageRect{72, 0, 84, 5}));
    EXPECT_EQ(region.image->get_format(), Core::PIXEL_FORMAT_888);
    EXPECT_EQ(page->GetExtent().width, 84);

    const std::string junk = dir.Write("junk.tga", "not a picture");
    EXPECT_THROW(page->ImportRegion(junk, "junk"), NOT_A_TGA_HEADER);
    EXPECT_TRUE(project->RegionNameFree("junk"));
}

TEST_F(TexturePageDocTest, ClippingTrimsRegionsAcrossTheEdgeAndDeletesThoseOutside) {
    CQuilletDoc* project = StartWithPage(
        {{"inside", {-4, 0, 4, 4}}, {"across", {60, 60, 70, 70}}, {"outside", {64, 0, 70, 4}}});
    CTexturePageDoc* page = OpenPage(*project);
    page->CutRegions();
    TPAGE& record = project->FindTexture(page_path);
    EXPECT_TRUE(page->IsRegionInside(record.regions[0].rect)) << "left and top are not tested";
    // Copies: clipping replaces or deletes the records.
    const std::vector<TREGION> regions = record.regions;
    for (const TREGION& region : regions)
        page->ClipRegionToPage(region);
    EXPECT_EQ(project->RegionOfTexture(page_path, "inside").rect, (PageRect{-4, 0, 4, 4}));
    const TREGION& across = project->RegionOfTexture(page_path, "across");
    EXPECT_EQ(across.rect, (PageRect{60, 60, 64, 64}));
    EXPECT_EQ(across.image->get_size(), (Core::Size{10, 10})) << "the picture stays whole";
    EXPECT_TRUE(project->RegionNameFree("outside"));
}

TEST_F(TexturePageDocTest, ResizingKeepsRegionsWhereTheyAre) {
    CQuilletDoc* project = StartWithPage({{"a", {0, 0, 8, 8}}, {"b", {40, 40, 48, 48}}});
    CTexturePageDoc* page = OpenPage(*project);
    page->CutRegions();
    page->Resize(44, 32);
    EXPECT_EQ(page->GetPageSize().width, 44);
    EXPECT_EQ(page->GetExtent().height, 40);
    EXPECT_EQ(project->RegionOfTexture(page_path, "b").rect, (PageRect{40, 40, 48, 48}));
    ASSERT_TRUE(project->DoFileSave());
    const ImagePtr saved = LoadPage(page_path);
    EXPECT_EQ(saved->get_size(), (Core::Size{44, 32}));
    EXPECT_EQ(saved->get_pixel(7, 7), SourceColour(7, 7));
}

TEST_F(TexturePageDocTest, TilingMovesRegionsByNameWithOneUndoStep) {
    // Records are written back by name, and the lookup finds the first of two twins.
    CQuilletDoc* project = StartWithPage(
        {{"big", {40, 40, 56, 56}}, {"twin", {0, 0, 8, 8}}, {"twin", {30, 0, 34, 4}}});
    CTexturePageDoc* page = OpenPage(*project);
    page->CutRegions();
    const size_t snapshots = project->undo_list.size();
    EXPECT_GT(page->TileRegions(TILE_BY_AREA, 0), 1.0f);
    EXPECT_EQ(project->undo_list.size(), snapshots + 1);
    const auto& regions = project->FindTexture(page_path).regions;
    EXPECT_EQ(regions[0].rect, (PageRect{0, 0, 16, 16}));
    // The small twin was placed last, at (24, 0); the first twin took both positions in turn.
    EXPECT_EQ(regions[1].rect, (PageRect{24, 0, 32, 8}));
    EXPECT_EQ(regions[2].rect, (PageRect{30, 0, 34, 4}));
    EXPECT_TRUE(page->IsModified());
}

TEST_F(TexturePageDocTest, ClosingTheApplicationAsksOnceForTheProjectAndWritesThePages) {
    CQuilletDoc* project = StartWithPage({{"a", {0, 0, 8, 8}}});
    project->ClearAllModified();
    CTexturePageDoc* page = OpenPage(*project);
    page->CutRegions();
    page->SetUnusedColour(kGrey);
    ASSERT_FALSE(project->IsModified());
    ui.boxes.clear();
    ui.answers = {framework::Answer::Yes};
    EXPECT_TRUE(app.SaveAllModified());
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, "Save changes to project.qlt?");
    EXPECT_EQ(LoadPage(page_path)->get_pixel(63, 63), kGrey);
}

}  // namespace
