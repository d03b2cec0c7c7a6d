#include <functional>

#include "ProjectFixture.h"
#include "core_tga.h"
#include "texture/TexturePageDoc.h"

namespace {

std::string Region(const std::string& name, int left, int width = 8) {
    return "<region>" + name + "\n<left>" + std::to_string(left) +
           "</left>\n<top>0</top>\n<right>" + std::to_string(left + width) +
           "</right>\n<bottom>8</bottom>\n</region>\n";
}

std::string Art(const std::string& name, const std::string& page, const std::string& region) {
    return "<UI object>" + name + "\n<type>art</type>\n<UI region>art\n<page>" + page +
           "</page>\n<region>" + region + "</region>\n</UI region>\n</UI object>\n";
}

std::string Piece(const std::string& name, const std::string& object,
                  const std::string& font = "") {
    const std::string text = font.empty() ? ""
                                          : "<UI text>t\n<font_id>" + font +
                                                "</font_id>\n<align>left</align>\n</UI text>\n";
    return "<UI piece>" + name +
           "\n<identifier>i</identifier>\n<Parameters>\n<x>0</x>\n<y>0</y>\n"
           "<width>8</width>\n<height>8</height>\n" +
           text + "</Parameters>\n<object_id>" + object + "</object_id>\n</UI piece>\n";
}

// Two pages in folders "menus" and "icons"; objects "a" and "b" use region "shared", "c"
// uses "icon"; pages Main and Other show them. Region "wide" is twice as wide as the others.
const std::string kProject =
    "<texture>menus.tga\n<path>menus</path>\n" + Region("shared", 0) + Region("lonely", 8) +
    Region("wide", 16, 16) + "</texture>\n" + "<texture>icons.tga\n<path>icons</path>\n" +
    Region("icon", 0) + "</texture>\n" +
    "<font>f.bgf\n<identifier>big</identifier>\n<lf_height>12</lf_height>\n</font>\n" +
    "<fmv>intro.mpg\n<identifier>intro_mpg</identifier>\n<left>0</left>\n<top>0</top>\n<right>64</"
    "right>\n"
    "<bottom>64</bottom>\n</fmv>\n" +
    Art("a", "menus.tga", "shared") + Art("b", "menus.tga", "shared") +
    Art("c", "icons.tga", "icon") + Art("movie", "intro.mpg", "intro_mpg") +
    "<layout>\n<layout_width>800</layout_width>\n<layout_height>600</layout_height>\n"
    "<piece_types_fname></piece_types_fname>\n<piece_texts_fname></piece_texts_fname>\n"
    "<texture_path>menus</texture_path>\n"
    "<lpage>Main\n<texture_path>icons</texture_path>\n" +
    Piece("pa", "a", "big") + Piece("pb", "b") + Piece("pc", "c") + Piece("pc2", "c") +
    "</lpage>\n" + "<lpage>Other\n" + Piece("qa", "a") + Piece("qc", "c") + Piece("qc2", "c") +
    "</lpage>\n</layout>\n";

class CascadesTest : public ProjectFixture {
protected:
    CQuilletDoc* project = nullptr;
    void SetUp() override {
        Start();
        project = Open("ui.qlt", kProject);
        ASSERT_NE(project, nullptr);
    }
    std::string Page(const std::string& name) { return dir.File(name); }
    std::unique_ptr<UI_ART> ArtOn(const std::string& name, const std::string& page,
                                  const std::string& region) {
        auto art = std::make_unique<UI_ART>(name);
        art->regions.push_back({"art", page.empty() ? "" : Page(page), region});
        return art;
    }
    bool Has(const std::string& page, const std::string& piece) {
        return project->FindLayout(page).PieceExists(piece);
    }
};

TEST_F(CascadesTest, ARegionAsksOnceAndThenOncePerObject) {
    ASSERT_TRUE(project->DeleteRegion(Page("menus.tga"), "shared", true));
    ASSERT_EQ(ui.boxes.size(), 3u);
    EXPECT_EQ(
        ui.boxes[0].text,
        "The following region is being used by a UI object:\n\nshared\n\nContinuing will delete "
        "any UI objects and UI pieces using this region.");
    EXPECT_EQ(ui.boxes[0].caption, "Confirm delete region");
    EXPECT_EQ(ui.boxes[0].buttons, framework::MessageButtons::OkCancel);
    EXPECT_EQ(ui.boxes[1].caption, "Confirm delete object");
    EXPECT_FALSE(project->ObjectExists("a"));
    EXPECT_FALSE(project->ObjectExists("b"));
    EXPECT_FALSE(Has("Main", "pa"));
    EXPECT_FALSE(Has("Other", "qa"));
    EXPECT_TRUE(Has("Main", "pc"));
    EXPECT_FALSE(project->RegionExists("shared"));
}

TEST_F(CascadesTest, CancelLeavesThatStepAsItWas) {
    ui.answers = {framework::Answer::Cancel};
    EXPECT_FALSE(project->DeleteRegion(Page("menus.tga"), "shared", true));
    EXPECT_TRUE(project->RegionExists("shared"));
    // Cancel for one object: it stays, pointing nowhere, and the region goes anyway.
    ui.answers = {framework::Answer::Ok, framework::Answer::Cancel, framework::Answer::Ok};
    EXPECT_TRUE(project->DeleteRegion(Page("menus.tga"), "shared", true));
    EXPECT_TRUE(project->ObjectExists("a"));
    EXPECT_FALSE(project->ObjectExists("b"));
    EXPECT_FALSE(project->RegionExists("shared"));
}

TEST_F(CascadesTest, APageWhoseRegionsAreKeptStays) {
    ui.answers = {framework::Answer::Cancel};
    EXPECT_FALSE(project->DeleteTexturePage(Page("menus.tga")));
    EXPECT_TRUE(project->TextureExists(Page("menus.tga")));
    EXPECT_FALSE(project->RegionExists("lonely"));  // the unused region went
    EXPECT_TRUE(project->RegionExists("shared"));
    EXPECT_TRUE(project->DeleteTexturePage(Page("icons.tga")));
    EXPECT_FALSE(project->TextureExists(Page("icons.tga")));
    EXPECT_FALSE(Has("Other", "qc2"));
}

TEST_F(CascadesTest, FontsLoseOnlyTheirTextsAndMoviesNameTheirIdentifier) {
    ASSERT_TRUE(project->DeleteFont("big"));
    EXPECT_TRUE(Has("Main", "pa"));
    EXPECT_EQ(project->FindLayout("Main").FindPiece("pa").attributes.text_id, "");
    EXPECT_FALSE(project->FontExists("big"));
    ASSERT_TRUE(project->DeleteFmv(Page("intro.mpg")));
    EXPECT_NE(ui.boxes.back().text.find("\n\nintro_mpg\n\n"), std::string::npos);
    EXPECT_EQ(ui.boxes.back().caption, "Confirm delete region");
    EXPECT_FALSE(project->ObjectExists("movie"));
}

TEST_F(CascadesTest, PathsTakeThePiecesThatUseThem) {
    EXPECT_TRUE(project->PageUsesTextureFolder("Main", "icons"));
    ASSERT_TRUE(project->DeletePageTexturePath("Main", "icons"));
    EXPECT_EQ(ui.boxes.back().caption, "Confirm delete path");
    EXPECT_FALSE(Has("Main", "pc"));
    EXPECT_TRUE(Has("Other", "qc"));  // another page keeps its pieces
    ASSERT_TRUE(project->DeleteCommonTexturePath("menus"));
    EXPECT_FALSE(Has("Other", "qa"));
    EXPECT_TRUE(project->qlt_file().common_texture_paths.empty());
    EXPECT_TRUE(project->AddCommonFmvPath("films"));
    EXPECT_FALSE(project->AddCommonFmvPath("films"));
}

TEST_F(CascadesTest, ReplacingAnObjectRemovesOneIllegalPiecePerPage) {
    const LPAGE& other = project->FindLayout("Other");
    EXPECT_TRUE(project->ObjectLegalOnPage(project->FindObject("a"), other));  // "menus" is common
    EXPECT_FALSE(project->ObjectLegalOnPage(project->FindObject("c"), other));
    auto replacement = std::make_unique<UI_ART>("c2");
    replacement->regions.push_back({"art", Page("icons.tga"), "icon"});
    const size_t snapshots = project->undo_list.size();
    ASSERT_TRUE(project->ReplaceObject("c", std::move(replacement)));
    EXPECT_EQ(ui.boxes.back().caption, "Confirm delete pieces");
    EXPECT_FALSE(Has("Other", "qc"));
    EXPECT_TRUE(Has("Other", "qc2"));  // only the first illegal piece of a page goes
    EXPECT_EQ(project->FindLayout("Main").FindPiece("pc").object_id, "c2");
    EXPECT_EQ(project->FindLayout("Other").FindPiece("qc2").object_id, "c2");
    EXPECT_FALSE(project->ObjectExists("c"));
    EXPECT_GT(project->undo_list.size(), snapshots);
}

TEST_F(CascadesTest, PiecesGoThroughTheOpenWindowOfTheirPage) {
    framework::Document* window = project->OpenLayout("Main");
    ASSERT_TRUE(project->DeleteObject("b"));
    EXPECT_TRUE(window->IsModified());
    EXPECT_FALSE(Has("Main", "pb"));
    project->DeleteLayout("Main");
    EXPECT_FALSE(project->LayoutExists("Main"));
    EXPECT_TRUE(app.Templates()[2]->GetDocuments().empty());
}

// A view that notes, at each update, what the project looks like then.
class WatchingView : public framework::View {
public:
    std::function<void()> watch;
    int updates = 0;
    void OnUpdate(framework::View*, long, void*) override {
        ++updates;
        if (watch) watch();
    }
    void CloseFrame() override {}
};

// Every change of the project reaches its views, after the change is made.
TEST_F(CascadesTest, EveryChangeReachesTheViewsOnceItIsMade) {
    WatchingView tree;
    project->AddView(tree);
    bool icons_shown = true;
    tree.watch = [&] { icons_shown = project->TextureExists(Page("icons.tga")); };
    ASSERT_TRUE(project->DeleteTexturePage(Page("icons.tga")));
    EXPECT_FALSE(icons_shown) << "the last update came before the page went";
    tree.watch = nullptr;
    ui.boxes.clear();

    const std::vector<std::function<void()>> changes{
        [&] { project->CreateLayout("New"); },
        [&] { project->CopyLayout("Main", "New"); },
        [&] { project->AddPageTexturePath("New", "extra"); },
        [&] { project->AddPageFmvPath("New", "films"); },
        [&] { project->DeletePageTexturePath("New", "extra"); },
        [&] { project->DeletePageFmvPath("New", "films"); },
        [&] { project->AddCommonTexturePath("extra"); },
        [&] { project->AddCommonFmvPath("films"); },
        [&] { project->DeleteCommonTexturePath("extra"); },
        [&] { project->DeleteCommonFmvPath("films"); },
        [&] { project->AddFont("small", Page("small.bgf"), 8); },
        [&] { project->AddFmv(Page("outro.mpg")); },
        [&] { project->SetTextureFolder(Page("menus.tga"), "menus2"); },
        [&] { project->SetFmvFolder("intro_mpg", "films"); },
        [&] { project->DeleteLayout("New"); },
    };
    for (size_t index = 0; index < changes.size(); ++index) {
        const int before = tree.updates;
        changes[index]();
        EXPECT_GT(tree.updates, before) << "change " << index;
    }
    EXPECT_TRUE(ui.boxes.empty());
    project->RemoveView(tree);
}

// Undo gives back pieces exactly as they were, measured against the objects of their time.
TEST_F(CascadesTest, UndoMeasuresPiecesAgainstTheSnapshotsOwnObjects) {
    CountingView tree;
    project->AddView(tree);
    project->OpenLayout("Main");
    ASSERT_EQ(project->FindLayout("Main").FindPiece("pb").scale_x, 1.0f);
    ASSERT_TRUE(project->ReplaceObject("b", ArtOn("b", "menus.tga", "wide")));
    project->OnEditUndo();
    EXPECT_EQ(project->FindLayout("Main").FindPiece("pb").scale_x, 1.0f);
    project->OnEditRedo();
    EXPECT_EQ(project->FindLayout("Main").FindPiece("pb").scale_x, 1.0f);
    project->RemoveView(tree);
}

// A page, movie or object that is not there names nothing: nothing else may go in its place.
TEST_F(CascadesTest, DeletionsActOnlyOnWhatTheyName) {
    project->AddObject(ArtOn("blank", "", ""));
    EXPECT_FALSE(project->DeletePageTexturePath("Nowhere", "icons"));
    EXPECT_FALSE(project->DeletePageTexturePath("", "icons"));
    EXPECT_FALSE(project->DeletePageFmvPath("", "icons"));
    EXPECT_TRUE(Has("Main", "pc"));
    EXPECT_TRUE(Has("Other", "qc"));
    EXPECT_FALSE(project->DeleteFmv(Page("nowhere.mpg")));
    EXPECT_TRUE(project->ObjectExists("blank"));
    std::vector<std::string> texts;
    for (const auto& box : ui.boxes)
        texts.push_back(box.text);
    EXPECT_EQ(texts, (std::vector<std::string>{"Layout page not found", "Layout page not found",
                                               "Layout page not found", "Fmv not found"}));

    // Of two objects of one name, the one replaced is the first; the other stays.
    project->AddObject(ArtOn("a", "menus.tga", "lonely"));
    ASSERT_TRUE(project->ReplaceObject("a", ArtOn("a2", "menus.tga", "shared")));
    EXPECT_TRUE(project->ObjectExists("a"));
    EXPECT_TRUE(project->ObjectExists("a2"));
}

TEST_F(CascadesTest, DeletingARegionMarksItsOpenPage) {
    Core::Image* picture = Core::create_image(32, 8, Core::PIXEL_FORMAT_8888);
    ASSERT_TRUE(Core::save_tga(*picture, Page("menus.tga").c_str(), Core::PIXEL_FORMAT_8888));
    Core::destroy_image(picture);
    framework::Document* window = project->OpenTexture(Page("menus.tga"));
    ASSERT_NE(window, nullptr);
    window->SetModifiedFlag(false);
    ASSERT_TRUE(project->DeleteRegion(Page("menus.tga"), "lonely", true));
    EXPECT_TRUE(window->IsModified());
}

}  // namespace
