#include "ProjectFixture.h"
#include "model/ProjectFile.h"
#include "model/identifier.h"
#include "model/qlt_errors.h"
#include "model/qlt_paths.h"

namespace {

ProjectRecords Read(const std::string& bytes, const std::string& path = "/p/ui.qlt") {
    SetProjectBaseDir(path);
    framework::Archive archive = framework::Archive::ForLoading(bytes, path);
    ProjectRecords records;
    ReadProject(archive, records);
    return records;
}

std::string Write(const ProjectRecords& records, const std::string& path = "/p/ui.qlt") {
    SetProjectBaseDir(path);
    framework::Archive archive = framework::Archive::ForStoring(path);
    WriteProject(archive, records);
    return archive.TakeBytes();
}

// The file without its <layout> section.
std::string Records(const std::string& file) {
    return file.substr(0, file.find("<layout>"));
}

TEST(RecordsTest, TexturePagesRoundTripWithTheirRegions) {
    const std::string file =
        "<version>1.01</version>\r\n"
        "<texture>pages\\menu.tga\r\n"
        "  <path>menus</path>\r\n"
        "  <region>button_up\r\n    <left>0</left>\r\n    <top>0</top>\r\n"
        "    <right>64</right>\r\n    <bottom>32</bottom>\r\n  </region>\r\n"
        "  <region>button_down\r\n    <left>64</left>\r\n    <top>0</top>\r\n"
        "    <right>128</right>\r\n    <bottom>32</bottom>\r\n  </region>\r\n"
        "</texture>\r\n"
        "<texture>pages\\plain.tga\r\n</texture>\r\n";
    const ProjectRecords records = Read(file);
    ASSERT_EQ(records.texture_pages.size(), 2u);
    EXPECT_EQ(records.texture_pages[0].path, "/p/pages/menu.tga");
    EXPECT_EQ(records.texture_pages[0].folder, "menus");
    EXPECT_EQ(records.texture_pages[0].regions[1].rect, (PageRect{64, 0, 128, 32}));
    EXPECT_EQ(records.texture_pages[0].regions[0].image, nullptr);
    EXPECT_EQ(records.texture_pages[1].folder, "");
    EXPECT_EQ(Records(Write(records)), file);
}

TEST(RecordsTest, FontsAndMoviesRoundTrip) {
    const std::string file =
        "<version>1.01</version>\r\n"
        "<font>fonts\\title.bgf\r\n  <identifier>title</identifier>\r\n"
        "  <lf_height>-12</lf_height>\r\n</font>\r\n"
        "<fmv>movies\\intro.mpg\r\n  <path>films</path>\r\n  <identifier>intro_mpg</identifier>\r\n"
        "  <left>0</left>\r\n  <top>0</top>\r\n  <right>64</right>\r\n  <bottom>64</bottom>\r\n"
        "</fmv>\r\n";
    const ProjectRecords records = Read(file);
    EXPECT_EQ(records.font_pages.at(0).lf_height, -12);
    EXPECT_EQ(records.font_pages.at(0).path, "/p/fonts/title.bgf");
    EXPECT_EQ(records.fmv_pages.at(0).folder, "films");
    EXPECT_EQ(Records(Write(records)), file);
}

TEST(RecordsTest, BrokenFontsAndMoviesFollowTheCatchTable) {
    // A font without its identifier is dropped; the reader goes on from the next line.
    const ProjectRecords dropped = Read("<font>a.bgf\n</font>\n");
    EXPECT_TRUE(dropped.font_pages.empty());
    // A bad height is not caught around a font, nor a bad rectangle around a movie.
    EXPECT_THROW(Read("<font>a.bgf\n<identifier>a</identifier>\n<lf_height>x</lf_height>\n"),
                 BAD_TAG);
    EXPECT_THROW(Read("<fmv>m.mpg\n<identifier>m_mpg</identifier>\n<top>0</top>\n"), NOT_A_TREGION);
    EXPECT_TRUE(Read("<fmv>m.mpg\n<left>0</left>\n").fmv_pages.empty());
}

TEST(RecordsTest, MoviesTakeTheirIdentifierFromTheFileName) {
    EXPECT_EQ(FmvIdentifier("/m/intro.mpg"), "intro_mpg");
    EXPECT_EQ(FmvIdentifier("C:\\m\\a.b.avi"), "a_b_avi");
    const FMV_PAGE movie("/m/intro.mpg");
    EXPECT_EQ(movie.rect, (PageRect{0, 0, 64, 64}));
    EXPECT_EQ(movie.folder, "");
}

TEST(RecordsTest, IdentifiersBarOnlyDigitsInFront) {
    EXPECT_TRUE(IsValidIdentifier("button_up2"));
    EXPECT_TRUE(IsValidIdentifier("_hidden"));
    EXPECT_TRUE(IsValidIdentifier(" space"));  // only digits are barred first
    EXPECT_FALSE(IsValidIdentifier("2up"));
    EXPECT_FALSE(IsValidIdentifier(""));
    EXPECT_FALSE(IsValidIdentifier("a b"));
    EXPECT_FALSE(IsValidIdentifier("caf\xC3\xA9"));
}

TEST(RecordsTest, RegionsOwnTheirPictures) {
    TPAGE page;
    Core::Image* picture = Core::create_image(2, 2, Core::PIXEL_FORMAT_GREY);
    picture->set_pixel(1, 1, {7, 7, 7, 7});
    EXPECT_TRUE(page.AddRegion({0, 0, 2, 2}, "a", picture));
    Core::destroy_image(picture);
    EXPECT_TRUE(page.AddRegion({2, 0, 4, 2}, "b", nullptr));
    EXPECT_FALSE(page.AddRegion({9, 9, 10, 10}, "a", page.regions[0].image.get()));
    // The replaced region moved to the end, and kept a picture of its own.
    ASSERT_EQ(page.regions.size(), 2u);
    EXPECT_EQ(page.regions[1].name, "a");
    EXPECT_EQ(page.regions[1].image->get_pixel(1, 1).blue, 7);
    EXPECT_EQ(page.regions[1].display_image->get_format(), Core::PIXEL_FORMAT_8888);
    const TREGION copy = page.regions[1];
    EXPECT_NE(copy.image.get(), page.regions[1].image.get());
    page.MoveRegion("a", 1, 1);
    EXPECT_EQ(page.regions[1].rect, (PageRect{1, 1, 2, 2}));
}

using PageOperationsTest = ProjectFixture;

TEST_F(PageOperationsTest, ListsAreSortedByPathAndTheFirstOfEqualsStays) {
    Start();
    CQuilletDoc* project =
        Open("ui.qlt",
             "<texture>b.tga\n</texture>\n<texture>a.tga\n<path>first</path>\n</texture>\n"
             "<texture>a.tga\n<path>second</path>\n</texture>\n"
             "<font>z.bgf\n<identifier>zed</identifier>\n<lf_height>1</lf_height>\n</font>\n"
             "<font>a.bgf\n<identifier>alpha</identifier>\n<lf_height>1</lf_height>\n</font>\n");
    ASSERT_NE(project, nullptr);
    const auto& pages = project->records().texture_pages;
    ASSERT_EQ(pages.size(), 2u);
    EXPECT_EQ(pages[0].path, dir.File("a.tga"));
    EXPECT_EQ(pages[0].folder, "first");
    EXPECT_EQ(project->records().font_pages[0].identifier, "alpha");
}

TEST_F(PageOperationsTest, LookupsReportAndAnswerEmptyRecords) {
    Start();
    CQuilletDoc* project = Open("ui.qlt", "<texture>menu.tga\n</texture>\n");
    const std::string page = dir.File("menu.tga");
    EXPECT_TRUE(project->TextureExists(page));
    EXPECT_EQ(project->FindTexture(dir.File("none.tga")).path, "");
    EXPECT_EQ(ui.boxes.back().text, "Texture not found");
    EXPECT_EQ(ui.boxes.back().caption, "Error");
    EXPECT_EQ(project->RegionOfTexture(page, "none").name, "");
    EXPECT_EQ(ui.boxes.back().text, "TPage region not found");

    project->AddRegion(page, "button", {0, 0, 8, 8}, nullptr);
    EXPECT_TRUE(project->IsModified());
    EXPECT_FALSE(project->RegionNameFree("button"));
    EXPECT_TRUE(project->RegionExists("button"));
    Core::Image* image = nullptr;
    EXPECT_FALSE(project->RegionImage(page, "button", image));
    project->MoveRegion(page, "button", 10, 20);
    EXPECT_EQ(project->RegionOfTexture(page, "button").rect, (PageRect{10, 20, 18, 28}));
    EXPECT_TRUE(project->SetTextureFolder(page, "menus"));
    EXPECT_FALSE(project->SetTextureFolder(dir.File("none.tga"), "x"));
}

TEST_F(PageOperationsTest, FontsAndMoviesAreAddedOnceEach) {
    Start();
    CQuilletDoc* project = GetProjectDoc();
    EXPECT_TRUE(project->AddFont("title", "/f/title.bgf", 12));
    EXPECT_FALSE(project->AddFont("title", "/f/other.bgf", 10));
    EXPECT_EQ(project->FindFontByPath("/f/title.bgf").identifier, "title");
    EXPECT_TRUE(project->AddFmv("/m/intro.mpg"));
    EXPECT_TRUE(project->AddFmv("/n/intro.mpg"));  // same identifier, another path
    EXPECT_FALSE(project->AddFmv("/m/intro.mpg"));
    EXPECT_EQ(project->records().fmv_pages.size(), 2u);
    EXPECT_TRUE(project->FmvExists("intro_mpg"));
    EXPECT_TRUE(project->SetFmvFolder("intro_mpg", "films"));
    EXPECT_EQ(project->FindFmvByPath("/m/intro.mpg").folder, "films");
    EXPECT_EQ(project->FindFmvByIdentifier("nothing").path, "");
    EXPECT_EQ(ui.boxes.back().text, "Fmv not found");
}

TEST_F(PageOperationsTest, UndoKeepsPagesThatExistNowAndBringsBackLostOnes) {
    Start();
    CQuilletDoc* project = Open("ui.qlt", "<texture>menu.tga\n</texture>\n");
    CountingView tree;
    project->AddView(tree);
    OpenLayoutPage("Main");
    const std::string page = dir.File("menu.tga");
    project->AddRegion(page, "button", {0, 0, 8, 8}, nullptr);
    project->OnEditUndo();
    // The present record wins: undo does not take back a region edit inside a page.
    EXPECT_TRUE(project->RegionExists("button"));
    project->RemoveView(tree);
}

}  // namespace
