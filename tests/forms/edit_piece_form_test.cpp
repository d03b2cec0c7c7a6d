// The Edit Piece dialog without widgets: which controls each kind of piece and each piece
// type makes live, and the attributes OK builds from them.
#include <gtest/gtest.h>

#include <memory>

#include "forms/EditPieceForm.h"
#include "model/ProjectFixture.h"
#include "model/piece_files.h"

namespace {

using Id = EditPieceForm::Id;
using Rows = std::vector<std::string>;

const std::string kTypes =
    "type,name,arguments\r\nart,backdrop,default\r\nart,variable_text,default\r\n"
    "push_btn,menu_option,default\r\npush_btn,variable_button,default\r\n"
    "toggle_btn,setting,default\r\nslider,scroller,default\r\nscroll_box,save_list,rows=8\r\n";

// A piece of a built-in empty object, which needs no texture page.
std::string PieceRecord(const std::string& name, const std::string& object,
                        const std::string& identifier, const std::string& parameters = "",
                        const std::string& tail = "") {
    return "<UI piece>" + name + "\n<identifier>" + identifier +
           "</identifier>\n<Parameters>\n<x>0</x>\n<y>0</y>\n<width>64</width>\n<height>64</"
           "height>\n" +
           parameters + "</Parameters>\n<object_id>" + object + "</object_id>\n" + tail +
           "</UI piece>\n";
}

class EditPieceFormTest : public ProjectFixture {
protected:
    // A project of the pages "Main", with `pieces`, and "Options"; the piece files above
    // (unless `with_types` is false) and the fonts "body" and "title".
    void OpenProject(const std::string& pieces, bool with_types = true) {
        dir.Write("types.txt", kTypes);
        dir.Write("texts.txt", "TXT_QUIT\r\nTXT_BACK\r\n");
        Start();
        project = Open("ui.qlt",
                       "<version>1.01</version>\n<layout>\n<layout_width>800</layout_width>\n"
                       "<layout_height>600</layout_height>\n<piece_types_fname>" +
                           std::string(with_types ? "types.txt" : "") +
                           "</piece_types_fname>\n<piece_texts_fname>texts.txt</"
                           "piece_texts_fname>\n<lpage>Main\n" +
                           pieces + "</lpage>\n<lpage>Options\n</lpage>\n</layout>\n");
        ASSERT_NE(project, nullptr);
        project->AddFont("title", dir.File("title.ugf"), 24);
        project->AddFont("body", dir.File("body.bgf"), 12);
    }

    EditPieceForm& Edit(const std::string& piece, const Rows& edit_groups = {},
                        const Rows& groups = {}) {
        form = std::make_unique<EditPieceForm>(*project, "Main",
                                               project->FindLayout("Main").FindPiece(piece),
                                               edit_groups, groups, ui);
        return *form;
    }

    bool InUse(const std::string& type) {
        for (const PIECE_TYPE& each : project->qlt_file().push_button_types)
            if (each.name == type) return each.in_use;
        for (const PIECE_TYPE& each : project->qlt_file().art_types)
            if (each.name == type) return each.in_use;
        ADD_FAILURE() << "no type " << type;
        return false;
    }

    CQuilletDoc* project = nullptr;
    std::unique_ptr<EditPieceForm> form;
};

TEST_F(EditPieceFormTest, APushButtonShowsItsRecordInEveryList) {
    OpenProject(PieceRecord("ok", "empty_push_button", "menu_option",
                            "<menu_id>Options</menu_id>\n<group_id>g2</group_id>\n<delta>5</"
                            "delta>\n<UI text>TXT_QUIT\n<font_id>body</font_id>\n<align>centre</"
                            "align>\n</UI text>\n<tool_tip_id>TXT_BACK</tool_tip_id>\n",
                            "<edit_group_id>e1</edit_group_id>\n"));
    ASSERT_TRUE(InUse("menu_option")) << "flagged when the project was read";
    EditPieceForm& dialog = Edit("ok", {"e1"}, {"g1", "g2"});
    EXPECT_EQ(dialog.Caption(), "Edit Piece");
    EXPECT_FALSE(InUse("menu_option")) << "unused while the dialog is open";
    EXPECT_EQ(dialog.Text(Id::kName), "ok");
    EXPECT_EQ(dialog.Text(Id::kDescription), "Push button piece");
    EXPECT_EQ(dialog.Text(Id::kObjectId), "empty_push_button");
    EXPECT_EQ(dialog.At(Id::kPieceId).rows, (Rows{"menu_option", "variable_button"}));
    EXPECT_EQ(dialog.SelectedText(Id::kPieceId), "menu_option");
    EXPECT_EQ(dialog.At(Id::kTextId).rows, (Rows{"<No Text>", "TXT_BACK", "TXT_QUIT"}));
    EXPECT_EQ(dialog.SelectedText(Id::kTextId), "TXT_QUIT");
    EXPECT_EQ(dialog.At(Id::kFont).rows, (Rows{"title", "body"})) << "the project's order";
    EXPECT_EQ(dialog.SelectedText(Id::kFont), "body");
    EXPECT_TRUE(dialog.At(Id::kAlignCentre).checked);
    EXPECT_EQ(dialog.At(Id::kNextMenu).rows, (Rows{"Main", "Options"}));
    EXPECT_EQ(dialog.SelectedText(Id::kNextMenu), "Options");
    EXPECT_TRUE(dialog.Enabled(Id::kNextMenu));
    EXPECT_EQ(dialog.Text(Id::kDelta), "5");
    EXPECT_FALSE(dialog.Enabled(Id::kDelta)) << "only a variable button has a delta";
    EXPECT_EQ(dialog.At(Id::kGroupId).rows, (Rows{"<No Group>", "g1", "g2"}));
    EXPECT_EQ(dialog.SelectedText(Id::kGroupId), "g2");
    EXPECT_EQ(dialog.SelectedText(Id::kToolTip), "TXT_BACK");
    EXPECT_EQ(dialog.SelectedText(Id::kEditGroup), "e1");
    EXPECT_FALSE(dialog.Enabled(Id::kHzSlider));
    EXPECT_TRUE(ui.boxes.empty());

    // OK with nothing changed: the record comes back as it was, less the delta.
    ASSERT_TRUE(dialog.Accept(ui));
    UI_PIECE expected = project->FindLayout("Main").FindPiece("ok");
    expected.attributes.delta = 0;
    const UI_PIECE& built = dialog.Piece();
    EXPECT_EQ(built.attributes, expected.attributes);
    EXPECT_EQ(built.edit_group_id, "e1");
    EXPECT_TRUE(InUse("menu_option"));
}

TEST_F(EditPieceFormTest, EachKindOpensItsOwnSections) {
    OpenProject(PieceRecord("art", "empty_art", "backdrop") +
                PieceRecord("toggle", "empty_toggle_button", "setting") +
                PieceRecord("hz", "empty_hz_slider", "scroller") +
                PieceRecord("vt", "empty_vt_slider", "scroller") +
                PieceRecord("box", "empty_scroll_box", "save_list",
                            "<vt_slider>vt</vt_slider>\n<menu_id>Options</menu_id>\n"));
    struct Expected {
        const char* piece;
        const char* description;
        bool text, group, sliders;
        Rows types;
    };
    const Expected kinds[] = {
        {"art", "Art piece", true, false, false, {"backdrop", "variable_text"}},
        {"toggle", "Toggle button piece", true, true, false, {"setting"}},
        {"hz", "Horizontal slider piece", false, true, false, {"scroller"}},
        {"vt", "Vertical slider piece", false, true, false, {"scroller"}},
        {"box", "Scroll box piece", false, true, true, {"save_list"}},
    };
    for (const Expected& kind : kinds) {
        const EditPieceForm& dialog = Edit(kind.piece);
        EXPECT_EQ(dialog.Text(Id::kDescription), kind.description);
        EXPECT_EQ(dialog.At(Id::kPieceId).rows, kind.types) << kind.piece;
        EXPECT_EQ(dialog.Enabled(Id::kTextId), kind.text) << kind.piece;
        EXPECT_EQ(dialog.Enabled(Id::kGroupId), kind.group) << kind.piece;
        EXPECT_EQ(dialog.Enabled(Id::kAddGroup), kind.group) << kind.piece;
        EXPECT_EQ(dialog.Enabled(Id::kBrowse), kind.group) << kind.piece;
        EXPECT_EQ(dialog.Enabled(Id::kVtSlider), kind.sliders) << kind.piece;
        EXPECT_FALSE(dialog.Enabled(Id::kNextMenu)) << kind.piece;
        EXPECT_TRUE(dialog.At(Id::kNextMenu).rows.empty()) << kind.piece;
        EXPECT_TRUE(dialog.Enabled(Id::kToolTip) && dialog.Enabled(Id::kEditGroup));
    }
    const EditPieceForm& box = Edit("box");
    EXPECT_EQ(box.At(Id::kHzSlider).rows, (Rows{"<None>", "hz"}));
    EXPECT_EQ(box.At(Id::kVtSlider).rows, (Rows{"<None>", "vt"}));
    EXPECT_EQ(box.SelectedText(Id::kVtSlider), "vt");
    EXPECT_EQ(box.SelectedText(Id::kHzSlider), "<None>");
    EXPECT_EQ(box.At(Id::kMenuId).rows, (Rows{"<None>", "Main", "Options"}));
    EXPECT_EQ(box.SelectedText(Id::kMenuId), "Options") << "the second <menu_id> of the file";
    EXPECT_TRUE(ui.boxes.empty());
}

TEST_F(EditPieceFormTest, AlignmentAndFontFollowTheTextAndVariableText) {
    OpenProject(PieceRecord("label", "empty_art", "backdrop"));
    EditPieceForm& dialog = Edit("label");
    EXPECT_TRUE(dialog.Enabled(Id::kTextId));
    EXPECT_FALSE(dialog.Enabled(Id::kFont)) << "no text, so no look to choose";
    EXPECT_FALSE(dialog.Enabled(Id::kAlignRight));
    ASSERT_TRUE(dialog.Accept(ui));
    EXPECT_EQ(dialog.Piece().attributes, PIECE_ATTRIBUTES()) << "<No Text> keeps all three empty";

    dialog.SelectRowText(Id::kTextId, "TXT_BACK", ui);
    EXPECT_TRUE(dialog.Enabled(Id::kFont));
    dialog.SetChecked(Id::kAlignRight, true, ui);
    dialog.SelectRowText(Id::kFont, "title", ui);
    ASSERT_TRUE(dialog.Accept(ui));
    EXPECT_EQ(dialog.Piece().attributes.text_id, "TXT_BACK");
    EXPECT_EQ(dialog.Piece().attributes.align, 2);
    EXPECT_EQ(dialog.Piece().attributes.font_id, "title");

    // Variable text takes its text from the game: only its look stays to choose.
    dialog.SelectRow(Id::kTextId, 0, ui);
    dialog.SelectRowText(Id::kPieceId, "variable_text", ui);
    EXPECT_FALSE(dialog.Enabled(Id::kTextId));
    EXPECT_TRUE(dialog.Enabled(Id::kFont));
    EXPECT_TRUE(dialog.Enabled(Id::kAlignCentre));
    dialog.SetChecked(Id::kAlignCentre, true, ui);
    ASSERT_TRUE(dialog.Accept(ui));
    EXPECT_EQ(dialog.Piece().piece_identifier, "variable_text");
    EXPECT_EQ(dialog.Piece().attributes.text_id, "EMPTY_TEXT");
    EXPECT_EQ(dialog.Piece().attributes.align, 1);
    EXPECT_EQ(dialog.Piece().attributes.font_id, "title");
}

TEST_F(EditPieceFormTest, OkBuildsFreshAttributesFromTheLiveControlsOnly) {
    // Neither a group nor a hot spot belongs to art: what the file had goes.
    OpenProject(PieceRecord("art", "empty_art", "backdrop",
                            "<menu_id>Options</menu_id>\n<group_id>g</group_id>\n<hot_spot>"
                            "spot.tga</hot_spot>\n<delta>3</delta>\n<hz_slider>hz</hz_slider>\n",
                            "<edit_group_id>e</edit_group_id>\n"));
    EditPieceForm& dialog = Edit("art", {"e"});
    dialog.SetText(Id::kPieceData, "rows=3", ui);
    dialog.SetChecked(Id::kLocked, true, ui);
    dialog.SelectRow(Id::kEditGroup, 0, ui);
    ASSERT_TRUE(dialog.Accept(ui));
    const UI_PIECE& built = dialog.Piece();
    EXPECT_EQ(built.attributes, PIECE_ATTRIBUTES());
    EXPECT_EQ(built.edit_group_id, "") << "<No Group>";
    EXPECT_EQ(built.object_data, "rows=3");
    EXPECT_TRUE(built.locked);
    EXPECT_EQ(built.x, 0);
    EXPECT_EQ(built.scale_x, 1.0f) << "place and scale are not the dialog's";
}

TEST_F(EditPieceFormTest, TheDeltaSpinsBackwardsAndBelongsToVariableButtons) {
    OpenProject(PieceRecord("more", "empty_push_button", "variable_button", "<delta>7</delta>\n"));
    EditPieceForm& dialog = Edit("more");
    ASSERT_TRUE(dialog.Enabled(Id::kDelta));
    dialog.Spin(Id::kDelta, 1, ui);
    EXPECT_EQ(dialog.Text(Id::kDelta), "6") << "up lowers the number";
    dialog.Spin(Id::kDelta, -10, ui);
    EXPECT_EQ(dialog.Text(Id::kDelta), "16");
    dialog.SetText(Id::kDelta, "-2147483648", ui);
    dialog.Spin(Id::kDelta, 1, ui);
    EXPECT_EQ(dialog.Text(Id::kDelta), "-2147483648") << "held to 32 bits";
    dialog.SetText(Id::kDelta, "+12", ui);
    ASSERT_TRUE(dialog.Accept(ui));
    EXPECT_EQ(dialog.Piece().attributes.delta, 12);

    dialog.SetText(Id::kDelta, "12 ", ui);
    EXPECT_TRUE(dialog.Accept(ui)) << "reported, and the dialog closes all the same";
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, "Failed to get dialogue var delta");
    EXPECT_EQ(ui.boxes[0].caption, "Error");
    EXPECT_EQ(dialog.Piece().attributes.delta, 0);

    // Another type takes the delta away, and OK keeps none.
    dialog.SetText(Id::kDelta, "4", ui);
    dialog.SelectRowText(Id::kPieceId, "menu_option", ui);
    EXPECT_FALSE(dialog.Enabled(Id::kDelta));
    EXPECT_TRUE(dialog.Enabled(Id::kNextMenu));
    ASSERT_TRUE(dialog.Accept(ui));
    EXPECT_EQ(dialog.Piece().attributes.delta, 0);
    EXPECT_EQ(dialog.Piece().attributes.menu_id, "Main") << "row 0 of the next menus";
    EXPECT_TRUE(InUse("menu_option"));
}

TEST_F(EditPieceFormTest, ATypeTheFileLacksIsAppendedToIt) {
    OpenProject(PieceRecord("odd", "empty_toggle_button", "fancy"));
    const EditPieceForm& dialog = Edit("odd");
    EXPECT_EQ(dialog.At(Id::kPieceId).rows, (Rows{"setting", "fancy"})) << "last until a reload";
    EXPECT_EQ(dialog.SelectedText(Id::kPieceId), "fancy");
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text,
              "Unrecognised piece type fancy has been added to the piece type file with default "
              "arguments.  You should update the piece type file if this piece needs special "
              "parameters.");
    EXPECT_EQ(ui.boxes[0].caption, "quillet");
    EXPECT_EQ(ReadFile(dir.File("types.txt")), kTypes + "\r\ntoggle_btn,fancy,default\r\n");
    ASSERT_TRUE(ReloadPieceTypes(project->qlt_file())) << "the blank line is passed over";
    EXPECT_EQ(project->qlt_file().toggle_button_types.size(), 2u);
}

TEST_F(EditPieceFormTest, WithoutATypesFileThePieceKeepsItsTypeAndIsToldOfIt) {
    OpenProject(
        PieceRecord("ok", "empty_push_button", "menu_option", "<menu_id>Options</menu_id>\n"),
        false);
    EditPieceForm& dialog = Edit("ok");
    EXPECT_EQ(dialog.At(Id::kPieceId).rows, (Rows{"menu_option"}));
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, "Invalid piece type") << "not a push button type of the project";
    EXPECT_TRUE(dialog.Enabled(Id::kNextMenu)) << "the rule never takes the list away";
    ASSERT_TRUE(dialog.Accept(ui));
    EXPECT_EQ(dialog.Piece().piece_identifier, "menu_option");
    EXPECT_EQ(dialog.Piece().attributes.menu_id, "Options");
}

TEST_F(EditPieceFormTest, AddMakesANewGroupIdAndSelectsIt) {
    OpenProject(PieceRecord("ok", "empty_push_button", "menu_option"));
    EditPieceForm& dialog = Edit("ok", {}, {"g1"});
    const auto name = [this](const std::string& text) {
        return [this, text](framework::Form& group) {
            EXPECT_EQ(group.Caption(), "Create group");
            group.SetText(1049, text, ui);
            return true;
        };
    };
    ui.forms = {name("g1"), [this](framework::Form& group) {
                    EXPECT_EQ(group.Text(1049), "g1") << "the dialog comes back as it was left";
                    group.SetText(1049, std::string(40, 'g'), ui);
                    return true;
                }};
    dialog.Press(Id::kAddGroup, ui);
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, "This group already exists");
    EXPECT_EQ(ui.boxes[0].caption, "Error");
    EXPECT_EQ(dialog.At(Id::kGroupId).rows, (Rows{"<No Group>", "g1", std::string(32, 'g')}));
    EXPECT_EQ(dialog.At(Id::kGroupId).selected, 2);

    ui.forms = {name("")};
    dialog.Press(Id::kAddGroup, ui);
    ui.forms = {};
    dialog.Press(Id::kAddGroup, ui);
    EXPECT_EQ(dialog.At(Id::kGroupId).rows.size(), 3u) << "an empty name and Cancel add nothing";
    ASSERT_TRUE(dialog.Accept(ui));
    EXPECT_EQ(dialog.Piece().attributes.group_id, std::string(32, 'g'));
}

TEST_F(EditPieceFormTest, BrowseAndClearSetTheHotSpot) {
    OpenProject(
        PieceRecord("ok", "empty_push_button", "menu_option", "<hot_spot>old.tga</hot_spot>\n"));
    EditPieceForm& dialog = Edit("ok");
    EXPECT_EQ(dialog.Text(Id::kHotSpot), dir.File("old.tga")) << "absolute in memory";
    ui.file_names = {std::nullopt, dir.File("spot.tga")};
    dialog.Press(Id::kBrowse, ui);
    EXPECT_EQ(dialog.Text(Id::kHotSpot), dir.File("old.tga")) << "Cancel keeps it";
    dialog.Press(Id::kBrowse, ui);
    EXPECT_EQ(dialog.Text(Id::kHotSpot), dir.File("spot.tga"));
    EXPECT_EQ(ui.file_requests.back().filter, "Hot spot files (*.tga)");
    ASSERT_TRUE(dialog.Accept(ui));
    EXPECT_EQ(dialog.Piece().attributes.hot_spot, dir.File("spot.tga"));
    dialog.Press(Id::kClear, ui);
    ASSERT_TRUE(dialog.Accept(ui));
    EXPECT_EQ(dialog.Piece().attributes.hot_spot, "");
}

}  // namespace
