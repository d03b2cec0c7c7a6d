// Overflow pages: where the regions a tiling parked would go, and the move itself on a real
// project, objects and undo included.
#include <gtest/gtest.h>

#include <filesystem>

#include "TexturePageFixture.h"
#include "texture/OverflowPages.h"

namespace {

using Names = std::vector<std::string>;

TEST(OverflowPlanTest, PagesFollowOneAnotherUntilEveryRegionLiesOnOne) {
    EXPECT_EQ(OverflowPagePath("/p/more.tga", 0), "/p/more.tga");
    EXPECT_EQ(OverflowPagePaths("/p/more.tga", 3),
              (Names{"/p/more.tga", "/p/more-2.tga", "/p/more-3.tga"}));
    EXPECT_EQ(OverflowPagePath("/p/more", 1), "/p/more-2");

    // One 40 by 40 region fits a 64 by 64 page: each new page takes one, parks the rest.
    const std::vector<TREGION> regions = RegionsOf({{"a", {0, 0, 40, 40}},
                                                    {"small", {40, 0, 60, 20}},
                                                    {"b", {72, 0, 112, 40}},
                                                    {"c", {72, 0, 112, 40}}});
    const OverflowPlan plan = PlanOverflow(regions, {64, 64}, TILE_BY_AREA, 0);
    EXPECT_TRUE(plan.oversized.empty());
    EXPECT_TRUE(plan.same_named.empty());
    EXPECT_EQ(plan.pages, (std::vector<Names>{{"b", "c"}, {"c"}}));

    EXPECT_TRUE(
        PlanOverflow(RegionsOf({{"a", {0, 0, 40, 40}}}), {64, 64}, TILE_BEST_FIT, 3).pages.empty());
}

TEST(OverflowPlanTest, RegionsThatCannotMoveApartStayWhereTheyAre) {
    // As large as the page: it fits alone without spacing, and with spacing never would.
    const std::vector<TREGION> regions = RegionsOf({{"page_sized", {72, 0, 136, 64}},
                                                    {"twin", {72, 0, 80, 8}},
                                                    {"twin", {80, 0, 88, 8}},
                                                    {"dot", {88, 0, 92, 4}}});
    const OverflowPlan spaced = PlanOverflow(regions, {64, 64}, TILE_BEST_FIT, 1);
    EXPECT_EQ(spaced.oversized, Names{"page_sized"});
    EXPECT_EQ(spaced.same_named, (Names{"twin", "twin"}));
    EXPECT_EQ(spaced.pages, std::vector<Names>{{"dot"}});

    const OverflowPlan tight = PlanOverflow(regions, {64, 64}, TILE_BEST_FIT, 0);
    EXPECT_TRUE(tight.oversized.empty());
    EXPECT_EQ(tight.pages, (std::vector<Names>{{"page_sized", "dot"}, {"dot"}}));
}

class OverflowPagesTest : public TexturePageFixture {
protected:
    static std::string Slot(const std::string& slot, const std::string& page,
                            const std::string& region) {
        return "<UI region>" + slot + "\n<page>" + page + "</page>\n<region>" + region +
               "</region>\n</UI region>\n";
    }

    static std::string Object(const std::string& name, const std::string& type,
                              const std::string& body) {
        return "<UI object>" + name + "\n<type>" + type + "</type>\n" + body + "</UI object>\n";
    }

    // The page that a slot of `object` (or of its first part) names.
    std::string SlotPage(const std::string& object, bool in_part = false) {
        const UI_OBJECT* found = project->ObjectIfAny(object);
        if (found == nullptr) return {};
        if (in_part) found = found->SubObjects()->front().get();
        return found->Regions()->front().page;
    }

    CQuilletDoc* project = nullptr;
};

TEST_F(OverflowPagesTest, MovedRegionsTakeTheirPixelsAndTheirObjectsSlotsAlong) {
    page_path = WritePage("page.tga", 64, 64, Core::PIXEL_FORMAT_888);
    const std::string other = WritePage("other.tga", 16, 16);
    Start();
    std::string text = ProjectText(
        {{"page.tga", {{"a", {0, 0, 40, 40}}, {"b", {0, 0, 40, 40}}, {"c", {20, 20, 60, 60}}}},
         {"other.tga", {{"b_elsewhere", {0, 0, 4, 4}}}}});
    // An object on "b" of this page, a slider whose art part shows "c", and a slot that names
    // "c" on another page, which the move must leave alone.
    const std::string objects =
        Object("button", "push_button", Slot("enabled", "page.tga", "b")) +
        Object("slider", "UI_H_Slider", Object("Art", "art", Slot("art", "page.tga", "c"))) +
        Object("stranger", "art", Slot("art", "other.tga", "c"));
    text.insert(text.find("<layout>"), objects);
    project = Open("project.qlt", text);
    ASSERT_NE(project, nullptr);
    CTexturePageDoc* source = OpenPage(*project);
    ASSERT_NE(source, nullptr);
    ASSERT_TRUE(source->CutRegions());
    const Core::Colour unused = source->GetUnusedColour();

    const TilingReport tiled = source->Tile(TILE_BY_AREA, 0);
    ASSERT_EQ(tiled.parked, (Names{"b", "c"}));
    const OverflowPlan plan = PlanOverflow(source->Page().regions, {64, 64}, TILE_BY_AREA, 0);
    const Names paths = OverflowPagePaths(dir.File("more.tga"), plan.pages.size());
    ASSERT_EQ(paths.size(), 2u);
    EXPECT_EQ(ProposedOverflowPath(*project, page_path, 2), dir.File("page-2.tga"));
    ASSERT_EQ(OverflowRefusal(*project, paths), "");
    const size_t snapshots = project->undo_list.size();

    const std::vector<OverflowPage> made =
        MoveToOverflowPages(*source, plan, paths, TILE_BY_AREA, 0);

    ASSERT_EQ(made.size(), 2u);
    EXPECT_EQ(made[0].moved, 2u);
    EXPECT_EQ(made[0].report.parked, Names{"c"});
    EXPECT_EQ(made[1].moved, 1u);
    EXPECT_EQ(made[1].report.placed, 1u);
    EXPECT_EQ(MovedLine(made[1]), "Moved 1 region to more-2.tga");
    EXPECT_EQ(project->undo_list.size(), snapshots + 1) << "one undo step";
    EXPECT_EQ(project->FindTexture(page_path).regions.size(), 1u);
    const TREGION& b = project->RegionOfTexture(paths[0], "b");
    const TREGION& c = project->RegionOfTexture(paths[1], "c");
    EXPECT_EQ(b.rect, (PageRect{0, 0, 40, 40}));
    EXPECT_EQ(c.image->get_pixel(0, 0), SourceColour(20, 20));
    EXPECT_EQ(c.image->get_pixel(39, 39), SourceColour(59, 59));

    EXPECT_EQ(SlotPage("button"), paths[0]);
    EXPECT_EQ(SlotPage("slider", true), paths[1]);
    EXPECT_EQ(SlotPage("stranger"), other);

    // The new pages are the source's size, file format and background.
    CTexturePageDoc* last = project->OpenTexture(paths[1]);
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(last->GetPageSize(), (PageSize{64, 64}));
    EXPECT_EQ(last->GetSaveFormat(), Core::PIXEL_FORMAT_888);
    EXPECT_EQ(last->GetUnusedColour(), unused);
    EXPECT_TRUE(ui.boxes.empty()) << "nothing is asked";
}

TEST_F(OverflowPagesTest, NamesTakenOnDiskOrInTheProjectAreRefused) {
    project = StartWithPage({});
    ASSERT_NE(project, nullptr);
    const std::string taken = dir.Write("taken.tga", "mine");
    std::filesystem::create_symlink(dir.File("nowhere.tga"), dir.File("link.tga"));
    EXPECT_EQ(OverflowRefusal(*project, {dir.File("free.tga"), taken}),
              taken + " already exists: choose another name for the new page");
    EXPECT_EQ(OverflowRefusal(*project, {dir.File("link.tga")}),
              dir.File("link.tga") + " already exists: choose another name for the new page");
    EXPECT_EQ(OverflowRefusal(*project, {page_path}),
              page_path + " is already a texture page of the project");
    // page-2.tga is free but page-2-2.tga is not, so two pages start at page-3.tga.
    dir.Write("page-2-2.tga", "mine");
    EXPECT_EQ(ProposedOverflowPath(*project, page_path, 1), dir.File("page-2.tga"));
    EXPECT_EQ(ProposedOverflowPath(*project, page_path, 2), dir.File("page-3.tga"));
}

}  // namespace
