#include "ProjectFixture.h"
#include "model/ProjectFile.h"
#include "model/RecordIndex.h"
#include "model/qlt_errors.h"
#include "model/qlt_paths.h"

namespace {

// A page with the art of one vertical slider: decrease 16x10, art 8x100, thumb 16x20,
// increase 16x10.
const std::string kSliderPage =
    "<texture>parts.tga\n"
    "<region>dec\n<left>0</left>\n<top>0</top>\n<right>16</right>\n<bottom>10</bottom>\n</region>\n"
    "<region>bar\n<left>16</left>\n<top>0</top>\n<right>24</right>\n<bottom>100</bottom>\n</"
    "region>\n"
    "<region>knob\n<left>24</left>\n<top>0</top>\n<right>40</right>\n<bottom>20</bottom>\n</"
    "region>\n"
    "<region>inc\n<left>40</left>\n<top>0</top>\n<right>56</right>\n<bottom>10</bottom>\n</"
    "region>\n"
    "</texture>\n";

std::string Region(const std::string& slot, const std::string& name) {
    return "<UI region>" + slot + "\n<page>parts.tga</page>\n<region>" + name +
           "</region>\n</UI region>\n";
}

std::string Part(const std::string& name, const std::string& type, const std::string& body) {
    return "<UI object>" + name + "\n<type>" + type + "</type>\n" + body + "</UI object>\n";
}

const std::string kSlider = Part("scroller", "UI_V_Slider",
                                 Part("Art", "art", Region("art", "bar")) +
                                     Part("Thumb", "push_button", Region("enabled", "knob")) +
                                     Part("Decrease", "push_button", Region("enabled", "dec")) +
                                     Part("Increase", "push_button", Region("enabled", "inc")));

class UiObjectsTest : public ProjectFixture {
protected:
    CQuilletDoc* project = nullptr;

    void Load(const std::string& objects) {
        Start();
        project = Open("ui.qlt", kSliderPage + objects);
        ASSERT_NE(project, nullptr);
    }
    const UI_SLIDER& Slider(const std::string& name) {
        return dynamic_cast<const UI_SLIDER&>(project->FindObject(name));
    }
};

TEST_F(UiObjectsTest, EveryKindRoundTripsWithNestedIndent) {
    const std::string objects =
        Part("title", "art", Region("art", "bar")) +
        Part("ok", "push_button",
             Region("enabled", "dec") + Region("highlighted", "inc") + Region("extra", "knob")) +
        Part("sound", "toggle_button", Region("checked", "knob")) +
        Part("list", "scroll_box", Region("scroll_box", "bar")) + kSlider;
    Load(objects);
    ASSERT_EQ(project->records().ui_objects.size(), 5u);
    ASSERT_TRUE(project->DoFileSave());
    const std::string saved = ReadFile(dir.File("ui.qlt"));
    SCOPED_TRACE(saved);
    EXPECT_NE(saved.find("  <UI region>extra\r\n    <page>parts.tga</page>\r\n"),
              std::string::npos);
    EXPECT_NE(saved.find("<UI object>scroller\r\n  <type>UI_V_Slider</type>\r\n  <UI object>Art\r\n"
                         "    <type>art</type>\r\n    <UI region>art\r\n"),
              std::string::npos);
    // What was written reads back to the same text.
    CQuilletDoc* again = Open("copy.qlt", saved);
    ASSERT_NE(again, nullptr);
    ASSERT_TRUE(again->DoFileSave());
    EXPECT_EQ(ReadFile(dir.File("copy.qlt")), saved);
}

TEST_F(UiObjectsTest, SliderLayoutFollowsItsParts) {
    Load(kSlider);
    const UI_SLIDER& slider = Slider("scroller");
    const UI_SLIDER::Parts parts = slider.GetParts();
    EXPECT_EQ(parts.decrease->Position().y, 0);
    EXPECT_EQ(parts.art->Position().x, 4);  // (16 - 8) / 2
    EXPECT_EQ(parts.art->Position().y, 10);
    EXPECT_EQ(parts.thumb->Position().y, 10);
    EXPECT_EQ(parts.increase->Position().y, 30);
    EXPECT_FALSE(parts.thumb->StretchX());
    EXPECT_FALSE(slider.StretchX());
    EXPECT_TRUE(slider.StretchY());
    // The art never lengthens a slider.
    EXPECT_EQ(slider.NaturalBounds(), (PageRect{0, 0, 16, 40}));
    EXPECT_EQ(slider.RangeY(1.0f), 0);
    EXPECT_EQ(slider.RangeY(2.0f), 40);
    EXPECT_EQ(slider.RangeX(2.0f), 0);

    const PageRect piece{100, 100, 116, 180};
    EXPECT_EQ(slider.RegionRect(*parts.thumb, piece), (PageRect{100, 130, 116, 150}));
    EXPECT_EQ(slider.RegionRect(*parts.art, piece), (PageRect{104, 110, 112, 170}));
    EXPECT_EQ(slider.RegionRect(*parts.increase, piece), (PageRect{100, 170, 116, 180}));
    EXPECT_EQ(slider.RegionRect(*parts.decrease, piece), (PageRect{100, 100, 116, 110}));
}

TEST(UiObjectReaderTest, TagsAreCaseSensitiveAndUnknownKindsEndTheLoad) {
    SetProjectBaseDir({});
    std::string file = Part("x", "Art", Region("art", "bar"));
    framework::Archive archive = framework::Archive::ForLoading(file, {});
    ProjectRecords records;
    EXPECT_THROW(ReadProject(archive, records), NO_BUILDER);

    // Without its <type> line the object is dropped; its next line is then a top-level line.
    const std::string untyped = "<UI object>x\n<UI region>art\n<page>p</page>\n";
    framework::Archive second = framework::Archive::ForLoading(untyped, {});
    EXPECT_THROW(ReadProject(second, records), NOT_A_QLT_FILE);

    const std::string art_with_more = Part("x", "art", Region("art", "bar") + "<extra>\n");
    framework::Archive third = framework::Archive::ForLoading(art_with_more, {});
    EXPECT_THROW(ReadProject(third, records), BAD_ART);
}

TEST(UiObjectReaderTest, ASecondBuilderForATagIsRefused) {
    Builders();
    struct Nothing : UI_OBJECT_BUILDER {
        std::unique_ptr<UI_OBJECT> Build(framework::Archive&, std::string&,
                                         const std::string&) const override {
            return nullptr;
        }
    } nothing;
    EXPECT_THROW(RegisterBuilder("art", nothing), BAD_BUILDER);
}

TEST_F(UiObjectsTest, ObjectsThatLostPartsStaySafe) {
    // A broken record costs its lines: the reader does not look for the record's end.
    Load(Part("lost", "art", "<UI region>art\n<page>p</page>\n<oops>x</oops>\n") +
         Part("half", "UI_H_Slider",
              Part("Art", "art", Region("art", "bar")) + "<UI object>Thumb\n<nope>\n"));
    const UI_OBJECT& lost = project->FindObject("lost");
    EXPECT_EQ(lost.NaturalBounds(), PageRect{});
    const UI_SLIDER& half = Slider("half");
    EXPECT_EQ(half.parts.size(), 1u);
    EXPECT_EQ(half.GetParts().thumb, nullptr);
    // Without thumb and buttons the slider has no length, and the art cannot give it one.
    EXPECT_EQ(half.NaturalBounds(), PageRect{});
    EXPECT_EQ(half.RangeX(1.0f), 0);
    ASSERT_TRUE(project->DoFileSave());
    // The art that lost its region still writes its slot, with an empty page and region.
    EXPECT_NE(ReadFile(dir.File("ui.qlt"))
                  .find("<UI object>lost\r\n  <type>art</type>\r\n  <UI region>art\r\n    "
                        "<page></page>\r\n"),
              std::string::npos);
}

TEST_F(UiObjectsTest, LookupsFindTheEmptyObjectsFirst) {
    Load(Part("empty_art", "art", Region("art", "bar")));
    const UI_OBJECT& found = project->FindObject("empty_art");
    EXPECT_EQ(found.NaturalBounds(), UI_OBJECT::EmptyRect());
    EXPECT_TRUE(found.IsEmptyObject());
    const UI_OBJECT& vertical = project->FindObject("empty_vt_slider");
    EXPECT_EQ(vertical.NaturalBounds(), UI_OBJECT::EmptyRect());
    EXPECT_EQ(vertical.RangeY(3.0f), 0);
    EXPECT_EQ(project->FindObject("nothing").Name(), "");
    EXPECT_EQ(ui.boxes.back().text, "Object not found");
    EXPECT_TRUE(project->ObjectExists("empty_scroll_box"));
}

TEST_F(UiObjectsTest, UndoReturnsTheObjectsExactly) {
    Load(kSlider);
    CountingView tree;
    project->AddView(tree);
    OpenLayoutPage("Main");
    auto art = std::make_unique<UI_ART>("title");
    art->regions.push_back({"art", dir.File("parts.tga"), "bar"});
    project->AddObject(std::move(art));
    EXPECT_TRUE(project->ObjectExists("title"));
    project->OnEditUndo();
    EXPECT_FALSE(project->ObjectExists("title"));
    EXPECT_EQ(project->records().ui_objects.size(), 1u);
    project->OnEditRedo();
    EXPECT_EQ(project->FindObject("title").NaturalBounds(), (PageRect{0, 0, 8, 100}));
    project->RemoveView(tree);
}

}  // namespace

namespace {

TEST(RecordIndexTest, FindsWhatALinearSearchFinds) {
    ProjectRecords first;
    ProjectRecords second;
    TPAGE page;
    page.path = "/p.tga";
    page.regions.emplace_back("a", PageRect{0, 0, 1, 1}, nullptr);
    page.regions.emplace_back("a", PageRect{0, 0, 2, 2}, nullptr);
    first.texture_pages.push_back(page);
    page.regions = {TREGION("b", {0, 0, 3, 3}, nullptr)};
    second.texture_pages.push_back(page);  // the same path again: never reached
    second.fmv_pages.emplace_back("/m/intro.mpg");
    first.ui_objects.push_back(std::make_unique<UI_ART>("x"));
    second.ui_objects.push_back(std::make_unique<UI_PUSH_BUTTON>("x"));

    const RecordIndex index{&first, &second};
    for (const UI_REGION& region :
         {UI_REGION{"art", "/p.tga", "a"}, UI_REGION{"art", "/p.tga", "b"},
          UI_REGION{"art", "/none", "intro_mpg"}}) {
        EXPECT_EQ(index.RegionRect(region), LookUpRegionRect(region, {&first, &second}))
            << region.region;
    }
    EXPECT_EQ(index.ObjectNamed("x"), first.ui_objects[0].get());
    EXPECT_EQ(index.ObjectNamed("empty_art"), EmptyObjects()[0]);
    // Records added later are seen too.
    second.ui_objects.push_back(std::make_unique<UI_ART>("y"));
    EXPECT_EQ(index.ObjectNamed("y"), second.ui_objects[1].get());
}

}  // namespace
