// The dialogs that make UI objects, and the chooser, driven as the person would over a
// project read from its file.
#include <functional>

#include "forms/AddArtForm.h"
#include "forms/AddButtonForm.h"
#include "forms/AddScrollBoxForm.h"
#include "forms/AddSliderForm.h"
#include "forms/ChooserForm.h"
#include "model/ProjectFixture.h"
#include "model/identifier.h"

namespace {

using framework::TreeItem;

std::string Region(const std::string& name, int left, int top, int right, int bottom) {
    return "<region>" + name + "\n<left>" + std::to_string(left) + "</left>\n<top>" +
           std::to_string(top) + "</top>\n<right>" + std::to_string(right) + "</right>\n<bottom>" +
           std::to_string(bottom) + "</bottom>\n</region>\n";
}

std::string Texture(const std::string& file, const std::string& folder,
                    const std::string& regions) {
    return "<texture>" + file + "\n" + (folder.empty() ? "" : "<path>" + folder + "</path>\n") +
           regions + "</texture>\n";
}

std::string Movie(const std::string& file, const std::string& folder) {
    std::string identifier = file;
    identifier.replace(identifier.find('.'), 1, "_");
    return "<fmv>" + file + "\n" + (folder.empty() ? "" : "<path>" + folder + "</path>\n") +
           "<identifier>" + identifier +
           "</identifier>\n<left>0</left>\n<top>0</top>\n<right>64</right>\n<bottom>32</"
           "bottom>\n</fmv>\n";
}

std::string Slot(const std::string& slot, const std::string& page, const std::string& region) {
    return "<UI region>" + slot + "\n<page>" + page + "</page>\n<region>" + region +
           "</region>\n</UI region>\n";
}

std::string Object(const std::string& name, const std::string& type, const std::string& body) {
    return "<UI object>" + name + "\n<type>" + type + "</type>\n" + body + "</UI object>\n";
}

// The first `count` states of a button, all showing one region.
std::string States(const std::string& page, const std::string& region, size_t count) {
    std::string states;
    for (const char* state : {"enabled", "highlighted", "selected", "checked"}) {
        if (count-- == 0) break;
        states += Slot(state, page, region);
    }
    return states;
}

// Pages in two folders, one page without a folder and one folder page without regions;
// movies with and without a folder; a push button, a toggle button that lacks its
// "highlighted" state, and a vertical slider.
const std::string kProject =
    Texture("a.tga", "buttons",
            Region("up", 0, 0, 20, 10) + Region("down", 0, 10, 20, 20) +
                Region("glow", 20, 0, 40, 10)) +
    Texture("b.tga", "buttons", Region("knob", 0, 0, 16, 20)) +
    Texture("c.tga", "", Region("loose", 0, 0, 8, 8)) + Texture("d.tga", "bars", "") +
    Texture("e.tga", "bars", Region("bar", 0, 0, 8, 100) + Region("arrow", 8, 0, 24, 10)) +
    Movie("intro.mpg", "movies") + Movie("loop.avi", "") + Movie("outro.mpg", "movies") +
    Object("ok", "push_button",
           Slot("selected", "a.tga", "down") + Slot("enabled", "a.tga", "up") +
               Slot("highlighted", "a.tga", "glow")) +
    Object("sound", "toggle_button",
           Slot("enabled", "a.tga", "up") + Slot("selected", "a.tga", "down") +
               Slot("checked", "b.tga", "knob")) +
    Object("scroller", "UI_V_Slider",
           Object("Art", "art", Slot("art", "e.tga", "bar")) +
               Object("Thumb", "push_button", States("b.tga", "knob", 3)) +
               Object("Decrease", "push_button", States("e.tga", "arrow", 3)) +
               Object("Increase", "toggle_button", States("e.tga", "arrow", 4)));

class ObjectFormsTest : public ProjectFixture {
protected:
    CQuilletDoc* project = nullptr;

    void SetUp() override {
        Start();
        project = Open("ui.qlt", kProject);
        ASSERT_NE(project, nullptr);
        ui.boxes.clear();
    }
    std::string Page(const std::string& file) const { return dir.File(file); }
    const UI_OBJECT& Existing(const std::string& name) const { return project->FindObject(name); }
    // The person at the next dialog: `fill` works its fields, then OK.
    template <typename PartForm>
    void NextDialog(std::function<void(PartForm&)> fill, bool ok = true) {
        ui.forms.push_back([fill, ok](framework::Form& form) {
            fill(dynamic_cast<PartForm&>(form));
            return ok;
        });
    }
};

std::vector<std::string> Texts(const std::vector<TreeItem>& items) {
    std::vector<std::string> texts;
    for (const TreeItem& item : items)
        texts.push_back(item.text);
    return texts;
}

std::vector<UI_REGION> RegionsOf(const UI_OBJECT& object) {
    return object.Regions() != nullptr ? *object.Regions() : std::vector<UI_REGION>();
}

TEST_F(ObjectFormsTest, ButtonTreeOffersPagesWithAFolderAndRegionsInRecordOrder) {
    AddButtonForm form(*project);
    const std::vector<TreeItem>& folders = form.At(AddButtonForm::kRegions).items;
    ASSERT_EQ(Texts(folders), (std::vector<std::string>{"buttons", "bars"}))
        << "the page without a folder is left out, and each folder comes once";
    EXPECT_EQ(Texts(folders[0].children), (std::vector<std::string>{Page("a.tga"), Page("b.tga")}));
    EXPECT_EQ(Texts(folders[0].children[0].children),
              (std::vector<std::string>{"up", "down", "glow"}));
    EXPECT_EQ(Texts(folders[1].children), std::vector<std::string>{Page("e.tga")})
        << "a page without regions is left out";
}

TEST_F(ObjectFormsTest, StateButtonsTakeThePickedRegionAndTheFirstNamesTheButton) {
    AddButtonForm form(*project);
    EXPECT_EQ(form.Caption(), "Add Button");
    form.SelectItem(AddButtonForm::kRegions, {"buttons", Page("a.tga")}, ui);
    form.Press(AddButtonForm::kEnabled, ui);
    EXPECT_EQ(form.Text(AddButtonForm::kEnabledRegion), "") << "a page is no pick";
    EXPECT_EQ(form.Name(), "");

    form.SelectItem(AddButtonForm::kRegions, {"buttons", Page("a.tga"), "down"}, ui);
    form.Press(AddButtonForm::kSelected, ui);
    EXPECT_EQ(form.Text(AddButtonForm::kSelectedRegion), "down");
    EXPECT_EQ(form.Text(AddButtonForm::kSelectedPage), Page("a.tga"));
    EXPECT_EQ(form.Name(), "down") << "the first region names the button";

    form.SelectItem(AddButtonForm::kRegions, {"buttons", Page("b.tga"), "knob"}, ui);
    form.Press(AddButtonForm::kEnabled, ui);
    EXPECT_EQ(form.Name(), "down") << "a name is never overwritten";
    form.SelectItem(AddButtonForm::kRegions, {"buttons", Page("b.tga"), "gone"}, ui);
    form.Press(AddButtonForm::kHighlighted, ui);
    EXPECT_EQ(form.Text(AddButtonForm::kHighlightedRegion), "") << "a path the tree lacks";

    form.SetText(AddButtonForm::kName, "knobby", ui);
    ASSERT_TRUE(form.Accept(ui));
    const std::unique_ptr<UI_OBJECT> button = form.Build();
    ASSERT_NE(dynamic_cast<UI_PUSH_BUTTON*>(button.get()), nullptr);
    EXPECT_EQ(button->Name(), "knobby");
    EXPECT_EQ(RegionsOf(*button), (std::vector<UI_REGION>{{"enabled", Page("b.tga"), "knob"},
                                                          {"highlighted", "", ""},
                                                          {"selected", Page("a.tga"), "down"}}))
        << "an empty row still gives its state";
}

TEST_F(ObjectFormsTest, OnlyAToggleButtonHasTheCheckedRow) {
    AddButtonForm form(*project);
    EXPECT_TRUE(form.At(AddButtonForm::kPush).checked) << "a new button is a push button";
    for (const int id :
         {AddButtonForm::kChecked, AddButtonForm::kCheckedRegion, AddButtonForm::kCheckedPage})
        EXPECT_FALSE(form.Enabled(id)) << id;
    form.SelectItem(AddButtonForm::kRegions, {"buttons", Page("b.tga"), "knob"}, ui);
    form.Press(AddButtonForm::kChecked, ui);
    EXPECT_EQ(form.Text(AddButtonForm::kCheckedRegion), "") << "a disabled row takes nothing";

    form.SetChecked(AddButtonForm::kToggle, true, ui);
    EXPECT_TRUE(form.Enabled(AddButtonForm::kChecked));
    EXPECT_TRUE(form.Enabled(AddButtonForm::kCheckedPage));
    form.Press(AddButtonForm::kChecked, ui);
    ASSERT_TRUE(form.Accept(ui));
    std::unique_ptr<UI_OBJECT> toggle = form.Build();
    ASSERT_NE(dynamic_cast<UI_TOGGLE_BUTTON*>(toggle.get()), nullptr);
    const std::vector<UI_REGION> regions = RegionsOf(*toggle);
    ASSERT_EQ(regions.size(), 4u);
    EXPECT_EQ(regions[3], (UI_REGION{"checked", Page("b.tga"), "knob"}));

    // Back to push: the row is kept but takes no part.
    form.SetChecked(AddButtonForm::kPush, true, ui);
    EXPECT_FALSE(form.Enabled(AddButtonForm::kChecked));
    EXPECT_EQ(RegionsOf(*form.Build()).size(), 3u);

    // Neither style chosen: told, and the dialog stays.
    form.SetChecked(AddButtonForm::kPush, false, ui);
    EXPECT_FALSE(form.Accept(ui));
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, AddButtonForm::kUnknownTypeText);
    EXPECT_EQ(form.Build(), nullptr);
}

TEST_F(ObjectFormsTest, EditButtonLoadsStatesByNameAndLeavesAMissingOneEmpty) {
    AddButtonForm push(*project, {&Existing("ok")});
    EXPECT_EQ(push.Caption(), "Edit Button");
    EXPECT_EQ(push.At(AddButtonForm::kName).kind, framework::ControlKind::ReadOnly);
    EXPECT_EQ(push.Name(), "ok");
    EXPECT_FALSE(push.Enabled(AddButtonForm::kPush));
    EXPECT_FALSE(push.Enabled(AddButtonForm::kToggle));
    EXPECT_EQ(push.Text(AddButtonForm::kEnabledRegion), "up");
    EXPECT_EQ(push.Text(AddButtonForm::kSelectedRegion), "down");
    EXPECT_EQ(push.Text(AddButtonForm::kHighlightedPage), Page("a.tga"));
    EXPECT_TRUE(ui.boxes.empty()) << "a push button has no checked state to miss";
    EXPECT_TRUE(push.Accept(ui)) << "an edit keeps its own name";
    EXPECT_EQ(RegionsOf(*push.Build()),
              (std::vector<UI_REGION>{{"enabled", Page("a.tga"), "up"},
                                      {"highlighted", Page("a.tga"), "glow"},
                                      {"selected", Page("a.tga"), "down"}}))
        << "the states come out in their own order";

    AddButtonForm toggle(*project, {&Existing("sound")});
    EXPECT_TRUE(toggle.At(AddButtonForm::kToggle).checked);
    EXPECT_TRUE(toggle.Enabled(AddButtonForm::kChecked));
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].caption, "Error");
    EXPECT_NE(ui.boxes[0].text.find("highlighted"), std::string::npos);
    EXPECT_EQ(toggle.Text(AddButtonForm::kHighlightedRegion), "");
    EXPECT_EQ(toggle.Text(AddButtonForm::kCheckedRegion), "knob");
}

TEST_F(ObjectFormsTest, NamesAreIdentifiersOfAtMost32AndNewOnesMustBeFree) {
    AddButtonForm form(*project);
    form.SetText(AddButtonForm::kName, std::string(33, 'n'), ui);
    EXPECT_EQ(form.Name(), std::string(32, 'n')) << "the field refuses a 33rd character";
    EXPECT_TRUE(form.Accept(ui));

    form.SetText(AddButtonForm::kName, "9lives", ui);
    EXPECT_FALSE(form.Accept(ui));
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, kInvalidIdentifierText);
    EXPECT_EQ(ui.boxes[0].caption, "Bad Button Name");
    EXPECT_EQ(ui.boxes[0].icon, framework::MessageIcon::Warning);

    for (const char* taken : {"ok", "scroller", "empty_art"}) {
        ui.boxes.clear();
        form.SetText(AddButtonForm::kName, taken, ui);
        EXPECT_FALSE(form.Accept(ui)) << taken;
        ASSERT_EQ(ui.boxes.size(), 1u);
        EXPECT_EQ(ui.boxes[0].text, "Object name is not unique.  Please enter a different name");
    }
    form.SetText(AddButtonForm::kName, "Thumb", ui);
    EXPECT_TRUE(form.Accept(ui)) << "a slider's parts are not objects of the project";

    ui.boxes.clear();
    AddArtForm art(*project);
    art.SetText(AddArtForm::kName, "", ui);
    EXPECT_FALSE(art.Accept(ui));
    EXPECT_EQ(ui.boxes.at(0).caption, "Bad Art Name");
    AddScrollBoxForm box(*project);
    box.SetText(AddScrollBoxForm::kName, "a b", ui);
    EXPECT_FALSE(box.Accept(ui));
    EXPECT_EQ(ui.boxes.at(1).caption, "Bad scroll box Name");
    AddSliderForm slider(*project);
    slider.SetText(AddSliderForm::kName, "1up", ui);
    EXPECT_FALSE(slider.Accept(ui));
    EXPECT_EQ(ui.boxes.at(2).caption, "Bad Button Name");
    slider.SetText(AddSliderForm::kName, "ok", ui);
    EXPECT_FALSE(slider.Accept(ui));
    EXPECT_EQ(ui.boxes.at(3).text, ObjectForm::kNameTakenText);
}

TEST_F(ObjectFormsTest, ArtPicksARegionOrAMovieByArrowOrDoubleClick) {
    AddArtForm form(*project);
    const std::vector<TreeItem>& roots = form.At(AddArtForm::kTree).items;
    ASSERT_EQ(Texts(roots), (std::vector<std::string>{"Textures", "FMVs"}));
    EXPECT_EQ(Texts(roots[0].children), (std::vector<std::string>{"buttons", "bars"}));
    ASSERT_EQ(Texts(roots[1].children), std::vector<std::string>{"movies"})
        << "a movie without a folder is left out";
    EXPECT_EQ(Texts(roots[1].children[0].children),
              (std::vector<std::string>{"intro_mpg", "outro_mpg"}));

    EXPECT_EQ(form.Build(), nullptr) << "nothing picked, no object";
    form.SelectItem(AddArtForm::kTree, {"Textures", "bars"}, ui);
    EXPECT_FALSE(form.Press(AddArtForm::kTree, ui));
    EXPECT_EQ(form.RegionName(), "");

    form.SelectItem(AddArtForm::kTree, {"Textures", "bars", Page("e.tga"), "bar"}, ui);
    EXPECT_FALSE(form.Press(AddArtForm::kTree, ui)) << "a double click picks, it is no OK";
    EXPECT_EQ(form.RegionName(), "bar");
    EXPECT_EQ(form.PageName(), Page("e.tga"));
    EXPECT_EQ(form.Name(), "bar");

    form.SelectItem(AddArtForm::kTree, {"FMVs", "movies", "outro_mpg"}, ui);
    form.Press(AddArtForm::kPick, ui);
    EXPECT_EQ(form.RegionName(), "outro_mpg");
    EXPECT_EQ(form.PageName(), Page("outro.mpg")) << "a movie shows its file as the page";
    ASSERT_TRUE(form.Accept(ui));
    const std::unique_ptr<UI_OBJECT> art = form.Build();
    ASSERT_NE(dynamic_cast<UI_ART*>(art.get()), nullptr);
    EXPECT_EQ(art->Name(), "bar");
    EXPECT_EQ(RegionsOf(*art), (std::vector<UI_REGION>{{"art", Page("outro.mpg"), "outro_mpg"}}));
    EXPECT_EQ(art->NaturalBounds(), (PageRect{0, 0, 64, 32}));

    AddArtForm edit(*project, {project->FindObject("scroller").SubObjects()->at(0).get()});
    EXPECT_EQ(edit.Caption(), "Edit Art");
    EXPECT_EQ(edit.RegionName(), "bar");
    EXPECT_EQ(edit.PageName(), Page("e.tga"));
}

TEST_F(ObjectFormsTest, ScrollBoxOffersTexturesOnly) {
    AddScrollBoxForm form(*project);
    EXPECT_EQ(form.Caption(), "Add Scroll Box");
    const std::vector<TreeItem>& roots = form.At(AddScrollBoxForm::kTree).items;
    ASSERT_EQ(Texts(roots), std::vector<std::string>{"Textures"});
    EXPECT_EQ(roots[0].children.size(), 2u);

    form.SelectItem(AddScrollBoxForm::kTree, {"Textures", "buttons", Page("a.tga"), "glow"}, ui);
    form.Press(AddScrollBoxForm::kPick, ui);
    form.SetText(AddScrollBoxForm::kName, "list", ui);
    ASSERT_TRUE(form.Accept(ui));
    const std::unique_ptr<UI_OBJECT> box = form.Build();
    ASSERT_NE(dynamic_cast<UI_SCROLL_BOX*>(box.get()), nullptr);
    EXPECT_EQ(RegionsOf(*box), (std::vector<UI_REGION>{{"scroll_box", Page("a.tga"), "glow"}}));
}

TEST_F(ObjectFormsTest, SliderWithoutArtIsNoSliderAndNoMessage) {
    AddSliderForm form(*project);
    form.SetText(AddSliderForm::kName, "volume", ui);
    NextDialog<AddButtonForm>([&](AddButtonForm& thumb) {
        thumb.SelectItem(AddButtonForm::kRegions, {"buttons", Page("b.tga"), "knob"}, ui);
        thumb.Press(AddButtonForm::kEnabled, ui);
    });
    form.Press(AddSliderForm::kCreateThumb, ui);
    EXPECT_EQ(form.Thumb().Text(AddButtonForm::kEnabledRegion), "knob");
    EXPECT_TRUE(form.Accept(ui));
    EXPECT_EQ(form.Build(), nullptr);
    EXPECT_TRUE(ui.boxes.empty());
}

TEST_F(ObjectFormsTest, SliderIsBuiltFromItsPartsInOrderAndLaidOut) {
    AddSliderForm form(*project);
    EXPECT_EQ(form.Caption(), "Add Slider");
    EXPECT_TRUE(form.At(AddSliderForm::kHorizontal).checked);
    EXPECT_EQ(form.Art().At(AddArtForm::kName).kind, framework::ControlKind::ReadOnly);
    for (const AddButtonForm* part : {&form.Thumb(), &form.Decrease(), &form.Increase()})
        EXPECT_EQ(part->At(AddButtonForm::kName).kind, framework::ControlKind::ReadOnly)
            << part->Name() << ": a part's name is fixed";
    EXPECT_EQ(form.Art().Name(), "Art");
    EXPECT_EQ(form.Decrease().Name(), "Decrease");

    const auto pick = [&](int press, std::vector<std::string> path) {
        NextDialog<AddButtonForm>([&, path, press](AddButtonForm& button) {
            button.SelectItem(AddButtonForm::kRegions, path, ui);
            button.Press(press, ui);
        });
    };
    NextDialog<AddArtForm>([&](AddArtForm& art) {
        art.SelectItem(AddArtForm::kTree, {"Textures", "bars", Page("e.tga"), "bar"}, ui);
        art.Press(AddArtForm::kPick, ui);
    });
    form.Press(AddSliderForm::kCreateArt, ui);
    EXPECT_EQ(form.Art().Name(), "Art") << "picking names no part";
    pick(AddButtonForm::kEnabled, {"buttons", Page("b.tga"), "knob"});
    form.Press(AddSliderForm::kCreateThumb, ui);
    pick(AddButtonForm::kEnabled, {"bars", Page("e.tga"), "arrow"});
    form.Press(AddSliderForm::kCreateDecrease, ui);
    pick(AddButtonForm::kEnabled, {"bars", Page("e.tga"), "arrow"});
    form.Press(AddSliderForm::kCreateIncrease, ui);
    // A cancelled dialog keeps what its part had.
    pick(AddButtonForm::kEnabled, {"buttons", Page("a.tga"), "up"});
    ui.forms.back() = [&](framework::Form& part) {
        dynamic_cast<AddButtonForm&>(part).SelectItem(AddButtonForm::kRegions,
                                                      {"buttons", Page("a.tga"), "up"}, ui);
        part.Press(AddButtonForm::kEnabled, ui);
        return false;
    };
    form.Press(AddSliderForm::kCreateThumb, ui);
    EXPECT_EQ(form.Thumb().Text(AddButtonForm::kEnabledRegion), "knob");

    form.SetChecked(AddSliderForm::kVertical, true, ui);
    form.SetText(AddSliderForm::kName, "volume", ui);
    ASSERT_TRUE(form.Accept(ui));
    const std::unique_ptr<UI_OBJECT> built = form.Build();
    auto* slider = dynamic_cast<UI_V_SLIDER*>(built.get());
    ASSERT_NE(slider, nullptr);
    EXPECT_EQ(slider->Name(), "volume");
    ASSERT_EQ(slider->parts.size(), 4u);
    const UI_SLIDER::Parts parts = slider->GetParts();
    EXPECT_EQ(parts.art->Name(), "Art");
    EXPECT_EQ(parts.thumb->Name(), "Thumb");
    EXPECT_EQ(parts.decrease->Name(), "Decrease");
    EXPECT_EQ(parts.increase->Name(), "Increase");
    EXPECT_EQ(RegionsOf(*parts.thumb)[0].region, "knob");
    // Laid out down the slider: decrease 16x10, then art 8x100 and thumb 16x20 centred
    // across, then increase.
    EXPECT_EQ(parts.decrease->Position(), (Point{0, 0}));
    EXPECT_EQ(parts.art->Position(), (Point{4, 10}));
    EXPECT_EQ(parts.thumb->Position(), (Point{0, 10}));
    EXPECT_EQ(parts.increase->Position(), (Point{0, 30}));
    EXPECT_EQ(slider->NaturalBounds(), (PageRect{0, 0, 16, 40}));
}

TEST_F(ObjectFormsTest, EditSliderStartsEachPartOnTheSlidersOwn) {
    AddSliderForm form(*project, {&Existing("scroller")});
    EXPECT_EQ(form.Caption(), "Edit Slider");
    EXPECT_EQ(form.Name(), "scroller");
    EXPECT_TRUE(form.At(AddSliderForm::kVertical).checked);
    EXPECT_FALSE(form.Enabled(AddSliderForm::kHorizontal));
    EXPECT_EQ(form.Art().Caption(), "Edit Art");
    EXPECT_EQ(form.Art().RegionName(), "bar");
    EXPECT_EQ(form.Increase().Caption(), "Edit Button");
    EXPECT_TRUE(form.Increase().At(AddButtonForm::kToggle).checked);
    EXPECT_TRUE(ui.boxes.empty());

    ASSERT_TRUE(form.Accept(ui));
    const std::unique_ptr<UI_OBJECT> built = form.Build();
    ASSERT_NE(dynamic_cast<UI_V_SLIDER*>(built.get()), nullptr);
    EXPECT_EQ(built->Name(), "scroller");
    EXPECT_NE(dynamic_cast<UI_TOGGLE_BUTTON*>(built->SubObjects()->at(3).get()), nullptr);
}

TEST_F(ObjectFormsTest, ChooserOffersRegionsOrFoldersAndAnswersALeaf) {
    ChooserForm regions(*project, ChooserForm::Mode::Regions);
    EXPECT_EQ(regions.Caption(), "Available Regions");
    std::string first = "kept";
    std::string second = "kept";
    ui.forms.push_back([&](framework::Form& form) {
        const std::vector<TreeItem>& items = form.At(ChooserForm::kTree).items;
        EXPECT_EQ(Texts(items), (std::vector<std::string>{Page("a.tga"), Page("b.tga"),
                                                          Page("c.tga"), Page("e.tga")}))
            << "every page with a region, whatever its folder";
        form.SelectItem(ChooserForm::kTree, {Page("c.tga"), "loose"}, ui);
        form.SelectItem(ChooserForm::kTree, {Page("c.tga")}, ui);
        return true;
    });
    EXPECT_FALSE(regions.Choose(ui, first, second)) << "OK with a node picks nothing";
    EXPECT_EQ(first, "kept");

    ui.forms.push_back([&](framework::Form& form) {
        form.SelectItem(ChooserForm::kTree, {Page("c.tga"), "loose"}, ui);
        EXPECT_TRUE(form.Press(ChooserForm::kTree, ui)) << "a double click on a leaf is OK";
        return true;
    });
    EXPECT_TRUE(regions.Choose(ui, first, second));
    EXPECT_EQ(first, Page("c.tga"));
    EXPECT_EQ(second, "loose");

    // Used again, it starts empty and shows the project as it stands.
    project->AddRegion(Page("d.tga"), "late", {0, 0, 4, 4}, nullptr);
    ui.forms.push_back([&](framework::Form& form) {
        EXPECT_EQ(dynamic_cast<ChooserForm&>(form).SecondPick(), "");
        EXPECT_FALSE(form.Press(ChooserForm::kTree, ui)) << "a double click on nothing";
        EXPECT_EQ(form.At(ChooserForm::kTree).items.size(), 5u);
        return false;
    });
    EXPECT_FALSE(regions.Choose(ui, first, second));

    ChooserForm paths(*project, ChooserForm::Mode::Paths);
    EXPECT_EQ(paths.Caption(), "Available Paths");
    ui.forms.push_back([&](framework::Form& form) {
        const std::vector<TreeItem>& items = form.At(ChooserForm::kTree).items;
        EXPECT_EQ(Texts(items), (std::vector<std::string>{"Textures", "FMVs"}));
        EXPECT_EQ(Texts(items[0].children), (std::vector<std::string>{"buttons", "bars"}))
            << "each folder once, with or without regions";
        EXPECT_EQ(Texts(items[1].children), std::vector<std::string>{"movies"});
        form.SelectItem(ChooserForm::kTree, {"FMVs", "movies"}, ui);
        return true;
    });
    EXPECT_TRUE(paths.Choose(ui, first, second));
    EXPECT_EQ(first, "FMVs");
    EXPECT_EQ(second, "movies");
}

TEST_F(ObjectFormsTest, ChooserOfAProjectWithoutFoldersPicksNothing) {
    ASSERT_NE(Open("bare.qlt", Texture("x.tga", "", "") + Movie("m.avi", "")), nullptr);
    ChooserForm paths(*GetProjectDoc(), ChooserForm::Mode::Paths);
    std::string first;
    std::string second;
    ui.forms.push_back([&](framework::Form& form) {
        EXPECT_TRUE(form.At(ChooserForm::kTree).items[0].children.empty());
        form.SelectItem(ChooserForm::kTree, {"Textures"}, ui);
        EXPECT_FALSE(form.Press(ChooserForm::kTree, ui)) << "an empty root is no pick";
        return true;
    });
    EXPECT_FALSE(paths.Choose(ui, first, second));
}

}  // namespace
