// The texture page window's logic, driven as the window drives it, over a canvas that
// records what the window was asked to do.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "TexturePageFixture.h"
#include "forms/ImportRegionForm.h"
#include "forms/PageChooserForm.h"
#include "forms/TextureForm.h"
#include "model/SaveGuard.h"
#include "model/page_rect.h"
#include "shell/CommandIds.h"
#include "texture/TexturePageView.h"

namespace {

class RecordingCanvas : public TexturePageCanvas {
public:
    Point scroll;
    int rebuilds_posted = 0;
    bool captured = false;
    CursorShape cursor = CursorShape::Arrow;
    int timer = -1;
    int interval = -1;
    PageSize frame;

    Point ScrollPosition() const override { return scroll; }
    void SetScrollSizes(int32_t, int32_t) override {}
    void ScrollToPosition(Point position) override { scroll = position; }
    void Invalidate(const PageRect&) override {}
    void InvalidateAll() override {}
    void PostRebuild() override { ++rebuilds_posted; }
    void SetCapture() override { captured = true; }
    void ReleaseCapture() override { captured = false; }
    void SetCursor(CursorShape shape) override { cursor = shape; }
    void StartTimer(int id, int milliseconds) override {
        timer = id;
        interval = milliseconds;
    }
    void KillTimer(int) override { timer = -1; }
    void PlaceFrame(int32_t width, int32_t height) override { frame = {width, height}; }
};

class StatusLine : public framework::StatusPane {
public:
    std::vector<std::string> texts;
    void SetText(const std::string& text) override { texts.push_back(text); }
};

class TexturePageViewTest : public TexturePageFixture {
protected:
    // Opens the page with a view over it, composed once, as its window would be.
    CTexturePageView& OpenView(const std::vector<RegionAt>& regions) {
        project = StartWithPage(regions);
        app.SetStatusPane(&status);
        document = OpenPage(*project);
        view = std::make_unique<CTexturePageView>(canvas);
        document->AddView(*view);
        view->OnInitialUpdate();
        view->OnUpdate(nullptr, 0, nullptr);
        view->RebuildIfNeeded();
        return *view;
    }

    // A view over the project's page, composed once.
    void ShowPage() {
        document = OpenPage(*project);
        view = std::make_unique<CTexturePageView>(canvas);
        document->AddView(*view);
        view->OnUpdate(nullptr, 0, nullptr);
        view->RebuildIfNeeded();
    }

    const TREGION& Region(const std::string& name) {
        return project->RegionOfTexture(page_path, name);
    }

    // Fills the Import Region dialog with these files and OK.
    void ImportAnswer(const std::vector<std::string>& files) {
        ui.forms.push_back([files](framework::Form& form) {
            dynamic_cast<ImportRegionForm&>(form).ChooseFiles(files);
            return true;
        });
    }

    RecordingCanvas canvas;
    StatusLine status;
    CQuilletDoc* project = nullptr;
    CTexturePageDoc* document = nullptr;
    std::unique_ptr<CTexturePageView> view;
};

TEST_F(TexturePageViewTest, AClickDragsARegionAndTheSelectionStays) {
    CTexturePageView& page = OpenView({{"a", {10, 10, 20, 20}}});
    EXPECT_EQ(canvas.frame.width, 128) << "the window starts at twice the page";
    page.OnLButtonDown({15, 15});
    EXPECT_TRUE(page.IsMoving());
    EXPECT_TRUE(canvas.captured);
    EXPECT_EQ(status.texts.back(), "\"a\": (10, 10) -> (20, 20) = (10 x 10)");

    // The region itself stays put until the button goes up; the left edge stops at 0.
    page.OnMouseMove({2, 30});
    EXPECT_EQ(page.SelectionRect(), (PageRect{0, 25, 10, 35}));
    EXPECT_EQ(Region("a").rect, (PageRect{10, 10, 20, 20}));
    page.OnLButtonUp({-3, 30});
    EXPECT_FALSE(page.IsMoving());
    EXPECT_TRUE(page.IsSelected());
    EXPECT_FALSE(canvas.captured);
    EXPECT_EQ(Region("a").rect, (PageRect{0, 25, 10, 35}));
    EXPECT_TRUE(document->IsModified());

    // A drag past the right edge does not stop.
    page.OnLButtonDown({5, 30});
    page.OnLButtonUp({70, 30});
    EXPECT_EQ(Region("a").rect, (PageRect{65, 25, 75, 35}));

    page.OnLButtonDown({40, 5});
    EXPECT_FALSE(page.IsSelected());
    EXPECT_EQ(status.texts.back(), "Ready");
}

TEST_F(TexturePageViewTest, ClicksTakeTheTopmostRegionAndHoverTheFirst) {
    CTexturePageView& page = OpenView({{"under", {0, 0, 20, 20}}, {"over", {10, 10, 30, 30}}});
    page.OnMouseMove({10, 15});
    EXPECT_EQ(page.Cursor(), CursorShape::SizeWE) << "the over region's left edge";
    page.OnMouseMove({19, 15});
    EXPECT_EQ(page.Cursor(), CursorShape::SizeWE) << "the under region's right edge comes first";
    page.OnMouseMove({15, 15});
    EXPECT_EQ(page.Cursor(), CursorShape::Arrow);
    EXPECT_EQ(canvas.cursor, CursorShape::Arrow);
    page.OnLButtonDown({15, 15});
    EXPECT_EQ(status.texts.back(), "\"over\": (10, 10) -> (30, 30) = (20 x 20)");

    // A click on an edge selects without starting a drag.
    page.OnLButtonUp({15, 15});
    page.OnMouseMove({0, 0});
    EXPECT_EQ(page.Cursor(), CursorShape::SizeNWSE);
    page.OnLButtonDown({0, 0});
    EXPECT_TRUE(page.IsSelected());
    EXPECT_FALSE(page.IsMoving());
}

TEST_F(TexturePageViewTest, KeysNudgeAndDeleteTheSelection) {
    CTexturePageView& page = OpenView({{"a", {0, 4, 8, 12}}, {"b", {20, 20, 24, 24}}});
    page.OnKeyDown(39);
    EXPECT_EQ(Region("a").rect, (PageRect{0, 4, 8, 12})) << "no selection, no move";
    page.OnLButtonDown({1, 5});
    page.OnLButtonUp({1, 5});
    page.OnKeyDown(39);
    page.OnKeyDown(40);
    page.OnKeyDown(37);
    page.OnKeyDown(37);
    EXPECT_EQ(Region("a").rect, (PageRect{0, 5, 8, 13})) << "the left edge stops at 0";
    EXPECT_EQ(status.texts.back(), "\"a\": (0, 5) -> (8, 13) = (8 x 8)");

    page.OnKeyDown(46);
    EXPECT_TRUE(project->RegionNameFree("a"));
    EXPECT_FALSE(page.IsSelected());
    EXPECT_EQ(status.texts.back(), "");
    page.OnKeyDown(46);
    EXPECT_FALSE(project->RegionNameFree("b"));
}

TEST_F(TexturePageViewTest, TheOutlineCrawlsWhileARegionIsSelected) {
    const auto& pens = AntPens();
    EXPECT_EQ(pens[0], (AntPen{{3, 2, 3, 2}, true}));
    EXPECT_EQ(pens[1], (AntPen{{4, 2, 3, 1}, true}));
    EXPECT_EQ(pens[2], (AntPen{{1, 4, 2, 3}, false}));
    EXPECT_EQ(pens[17].white, true);

    CTexturePageView& page = OpenView({{"a", {0, 0, 8, 8}}});
    EXPECT_EQ(canvas.timer, 0);
    EXPECT_EQ(canvas.interval, 0);
    page.OnTimer(0);
    EXPECT_EQ(canvas.interval, 200) << "nothing selected: wait";
    page.OnLButtonDown({2, 2});
    page.OnTimer(0);
    page.OnTimer(1);
    page.OnTimer(2);
    EXPECT_EQ(page.AntStep(), 2);
    EXPECT_EQ(canvas.timer, 3);
    EXPECT_EQ(canvas.interval, 250);
    page.OnTimer(17);
    EXPECT_EQ(canvas.timer, 0);
    const std::vector<Outline> outlines = page.Outlines();
    ASSERT_EQ(outlines.size(), 2u) << "the selection is drawn instead of its region";
    EXPECT_EQ(outlines[0].pen, OutlinePen::Black);
    EXPECT_EQ(outlines[1].pen, OutlinePen::Ants);
}

TEST_F(TexturePageViewTest, ImportAddsEveryPictureAndTellsOfFilesThatAreNot) {
    CTexturePageView& page = OpenView({});
    const std::string one = WritePage("one.tga", 8, 8);
    const std::string two = WritePage("two.tga", 16, 4);
    const std::string junk = dir.Write("junk.tga", "junk");
    ImportAnswer({one, junk, two});
    ui.boxes.clear();
    page.OnCommand(commands::kImportRegions);

    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, "This file does not contain a valid tga header");
    EXPECT_EQ(ui.boxes[0].caption, junk);
    // Best fit put them on the page; equal areas keep their order.
    EXPECT_EQ(Region("one").rect, (PageRect{0, 0, 8, 8}));
    EXPECT_EQ(Region("two").rect, (PageRect{8, 0, 24, 4}));
    EXPECT_TRUE(project->RegionNameFree("junk"));
    page.RebuildIfNeeded();
    EXPECT_EQ(page.BackBuffer()->get_pixel(9, 1), SourceColour(1, 1));
}

TEST_F(TexturePageViewTest, ImportRefusesNamesTakenAnywhereInTheProject) {
    CTexturePageView& page = OpenView({{"one", {0, 0, 4, 4}}});
    const std::string one = WritePage("one.tga", 8, 8);
    ImportAnswer({one});
    // Shown again, the person renames the picture.
    ui.forms.push_back([this](framework::Form& form) {
        auto& import = dynamic_cast<ImportRegionForm&>(form);
        import.SetText(ImportRegionForm::kIdentifiers, "\"fresh\" ", ui);
        return true;
    });
    ui.boxes.clear();
    page.OnImport();
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, "Identifier is already in use");
    EXPECT_EQ(ui.boxes[0].caption, "one");
    EXPECT_FALSE(project->RegionNameFree("fresh"));
}

TEST_F(TexturePageViewTest, TilingTellsItsFitRatioAndEndsTheSelection) {
    CTexturePageView& page = OpenView({{"a", {30, 30, 46, 46}}, {"b", {0, 0, 16, 16}}});
    page.OnLButtonDown({31, 31});
    page.OnLButtonUp({31, 31});
    page.OnCommand(commands::kSpacing2);
    EXPECT_EQ(page.Spacing(), 2u);
    page.OnCommand(commands::kTileBestFit);
    ASSERT_GE(status.texts.size(), 2u);
    EXPECT_EQ(status.texts[status.texts.size() - 2], "Calculating...");
    EXPECT_EQ(status.texts.back(), "Fit ratio = 1.00   Placed 2 of 2 regions, fill 12.5%");
    EXPECT_FALSE(page.IsSelected());
    EXPECT_EQ(Region("a").rect, (PageRect{0, 0, 16, 16}));
    EXPECT_EQ(Region("b").rect, (PageRect{18, 0, 34, 16}));
    // Many updates, one composition.
    page.RebuildIfNeeded();
    EXPECT_EQ(page.BackBuffer()->get_pixel(18, 0), SourceColour(0, 0));
    EXPECT_EQ(page.BackBuffer()->get_pixel(0, 0), SourceColour(30, 30));
}

TEST_F(TexturePageViewTest, TheTightestOrderIsATilingCommandOfItsOwn) {
    CTexturePageView& page = OpenView({{"a", {30, 30, 46, 46}}});
    EXPECT_TRUE(page.OnCommand(commands::kTileTightest));
    EXPECT_EQ(status.texts.back().rfind("Fit ratio = ", 0), 0u);
    EXPECT_TRUE(LiesOnPage(Region("a").rect, {64, 64}));
}

// Three regions of which a 64 by 64 page holds one; "c" is shown by an object.
class OverflowOfferTest : public TexturePageViewTest {
protected:
    void SetUp() override {
        page_path = WritePage("page.tga", 64, 64);
        Start();
        app.SetStatusPane(&status);
        std::string text = ProjectText(
            {{"page.tga",
              {{"a", {0, 0, 40, 40}}, {"b", {0, 0, 40, 40}}, {"c", {20, 20, 60, 60}}}}});
        text.insert(text.find("<layout>"),
                    "<UI object>shows_c\n<type>art</type>\n<UI region>art\n<page>page.tga</page>\n"
                    "<region>c</region>\n</UI region>\n</UI object>\n");
        project = Open("project.qlt", text);
        ASSERT_NE(project, nullptr);
        ShowPage();
        ui.boxes.clear();
    }

    std::vector<std::string> ParkedOnThePage() {
        return RegionsOutside(project->FindTexture(page_path), {64, 64});
    }
};

TEST_F(OverflowOfferTest, YesMovesWhatDoesNotFitToNewPages) {
    ui.answers = {framework::Answer::Yes};
    ui.file_names = {dir.File("more.tga")};
    const size_t snapshots = project->undo_list.size();
    view->OnCommand(commands::kTileByArea);

    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, "2 regions do not fit. Move them to a new page?");
    EXPECT_EQ(ui.boxes[0].caption, "page.tga");
    EXPECT_EQ(ui.boxes[0].icon, framework::MessageIcon::Question);
    EXPECT_EQ(ui.boxes[0].buttons, framework::MessageButtons::YesNo);
    ASSERT_EQ(ui.file_requests.size(), 1u);
    EXPECT_EQ(ui.file_requests[0].filter, "TGA Files (*.tga)");
    EXPECT_EQ(ui.file_requests[0].default_extension, ".tga");
    EXPECT_EQ(ui.file_requests[0].initial_path, dir.File("page-2.tga"));

    EXPECT_TRUE(ParkedOnThePage().empty());
    EXPECT_EQ(project->RegionOfTexture(dir.File("more.tga"), "b").rect, (PageRect{0, 0, 40, 40}));
    EXPECT_EQ(project->RegionOfTexture(dir.File("more-2.tga"), "c").rect, (PageRect{0, 0, 40, 40}));
    EXPECT_EQ(project->FindObject("shows_c").Regions()->front().page, dir.File("more-2.tga"));
    EXPECT_NE(project->OpenTexture(dir.File("more-2.tga")), nullptr);
    EXPECT_EQ(status.texts.back(), "Moved 2 regions to more.tga   Moved 1 region to more-2.tga");
    EXPECT_EQ(project->undo_list.size(), snapshots + 2) << "the tiling, then the move";
}

TEST_F(OverflowOfferTest, NoOrATakenNameChangesNothingMore) {
    ui.answers = {framework::Answer::No};
    view->OnCommand(commands::kTileByArea);
    EXPECT_EQ(ui.boxes.size(), 1u);
    EXPECT_TRUE(ui.file_requests.empty());
    EXPECT_EQ(ParkedOnThePage(), (std::vector<std::string>{"b", "c"}));

    // Yes, but the second new page would overwrite a file of the person's.
    const std::string taken = dir.Write("more-2.tga", "mine");
    ui.answers = {framework::Answer::Yes};
    ui.file_names = {dir.File("more.tga")};
    view->OnCommand(commands::kTileByArea);
    ASSERT_EQ(ui.boxes.size(), 3u);
    EXPECT_EQ(ui.boxes[2].text, taken + " already exists: choose another name for the new page");
    EXPECT_EQ(ui.boxes[2].caption, "Error");
    EXPECT_EQ(ui.file_requests.back().initial_path, dir.File("page-2.tga"));
    EXPECT_EQ(ParkedOnThePage(), (std::vector<std::string>{"b", "c"}));
    EXPECT_EQ(project->records().texture_pages.size(), 1u);
    EXPECT_FALSE(std::filesystem::exists(dir.File("more.tga")));
    EXPECT_EQ(ReadFile(taken), "mine");
}

TEST_F(TexturePageViewTest, ClosingTrimsRegionsAcrossTheEdgeAndDropsThoseOutside) {
    CTexturePageView& page = OpenView({{"across", {60, 0, 70, 4}}, {"outside", {80, 0, 84, 4}}});
    ui.boxes.clear();
    page.OnCloseWindow();
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, "All regions outside of image will be lost");
    EXPECT_EQ(ui.boxes[0].caption, "Warning");
    EXPECT_EQ(Region("across").rect, (PageRect{60, 0, 64, 4}));
    EXPECT_TRUE(project->RegionNameFree("outside"));
}

TEST_F(TexturePageViewTest, ParkedRegionsMoveToAnotherPageUnlessKeptForTheirObjects) {
    const std::string other = WritePage("other.tga", 32, 32);
    project = nullptr;
    page_path = WritePage("page.tga", 64, 64);
    Start();
    const std::string used_by_art =
        "<UI object>keeper\n<type>art</type>\n<UI region>art\n<page>page.tga</page>\n"
        "<region>kept</region>\n</UI region>\n</UI object>\n";
    std::string text = ProjectText(
        {{"page.tga",
          {{"kept", {70, 0, 74, 4}}, {"moved", {80, 0, 88, 8}}, {"stays", {60, 0, 68, 4}}}},
         {"other.tga", {}}});
    text.insert(text.find("<layout>"), used_by_art);
    project = Open("project.qlt", text);
    ASSERT_NE(project, nullptr);
    ASSERT_TRUE(project->RegionInUse("kept"));
    ShowPage();

    ui.forms.push_back([this, other](framework::Form& form) {
        auto& chooser = dynamic_cast<PageChooserForm&>(form);
        EXPECT_EQ(chooser.At(PageChooserForm::kPages).items.size(), 2u);
        chooser.SelectItem(PageChooserForm::kPages, {other}, ui);
        return true;
    });
    ui.answers = {framework::Answer::Cancel};  // keep the region its object uses
    view->OnCommand(commands::kCopyOutsideToExisting);

    EXPECT_EQ(project->FindTexture(page_path).regions.size(), 2u);
    EXPECT_EQ(Region("stays").rect, (PageRect{60, 0, 68, 4})) << "partly on the page";
    const TPAGE& destination = project->FindTexture(other);
    ASSERT_EQ(destination.regions.size(), 1u);
    EXPECT_EQ(destination.regions[0].name, "moved");
    EXPECT_EQ(destination.regions[0].rect, (PageRect{0, 0, 8, 8}));
    EXPECT_EQ(destination.regions[0].image->get_pixel(0, 0), Core::Colour{});
}

// The destination is open but its window has not composed it yet, so its own regions are
// not cut: they must be cut where they lie before the tiling moves them.
TEST_F(TexturePageViewTest, RegionsMovedOntoAPageNotCutYetLeaveItsOwnRegionsWhole) {
    const std::string other = WritePage("other.tga", 32, 32, Core::PIXEL_FORMAT_8888, 0x41);
    page_path = WritePage("page.tga", 64, 64);
    Start();
    app.SetStatusPane(&status);
    project = Open("project.qlt", ProjectText({{"page.tga", {{"moved", {80, 0, 96, 16}}}},
                                               {"other.tga", {{"resident", {16, 16, 24, 24}}}}}));
    ASSERT_NE(project, nullptr);
    ShowPage();
    CTexturePageDoc* destination = project->OpenTexture(other);
    RecordingCanvas other_canvas;
    CTexturePageView other_view(other_canvas);
    destination->AddView(other_view);

    ui.forms.push_back([this, other](framework::Form& form) {
        dynamic_cast<PageChooserForm&>(form).SelectItem(PageChooserForm::kPages, {other}, ui);
        return true;
    });
    view->OnCommand(commands::kCopyOutsideToExisting);

    const TREGION& resident = project->RegionOfTexture(other, "resident");
    ASSERT_NE(resident.rect, (PageRect{16, 16, 24, 24})) << "the tiling must move it";
    ASSERT_NE(resident.image, nullptr);
    EXPECT_EQ(resident.image->get_pixel(0, 0), SourceColour(16, 16, 0x41));
    EXPECT_EQ(resident.image->get_pixel(7, 7), SourceColour(23, 23, 0x41));
    EXPECT_EQ(project->RegionOfTexture(other, "moved").image->get_pixel(0, 0), Core::Colour{});
    ASSERT_FALSE(status.texts.empty());
    EXPECT_EQ(status.texts.back().rfind("Fit ratio = ", 0), 0u) << "tiled through its window";
    destination->RemoveView(other_view);
}

TEST_F(TexturePageViewTest, ResizeShowsThePresentSizeAndTakesTheNewOne) {
    CTexturePageView& page = OpenView({});
    ui.forms.push_back([this](framework::Form& form) {
        auto& texture = dynamic_cast<TextureForm&>(form);
        EXPECT_EQ(texture.Caption(), "Edit Texture");
        EXPECT_TRUE(texture.At(TextureForm::kSize64).checked);
        texture.SetChecked(TextureForm::kSize32, true, ui);
        return true;
    });
    page.OnCommand(commands::kResizePage);
    EXPECT_EQ(document->GetPageSize().width, 32);
    EXPECT_EQ(canvas.frame.width, 128) << "only opening places the window";
    EXPECT_EQ(TextureForm().data.size_choice, 1005u) << "the last OK is the next default";
}

}  // namespace
