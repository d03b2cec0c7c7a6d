// The commands on single pieces, with the person at their dialogs: editing and cloning
// through Edit Piece, copying and pasting attributes, resetting a size, edit groups and
// inserting an object.
#include <gtest/gtest.h>

#include "LayoutViewFixture.h"
#include "forms/EditPieceForm.h"
#include "forms/InsertObjectForm.h"
#include "model/identifier.h"
#include "model/piece_files.h"
#include "shell/CommandIds.h"

namespace {

using namespace commands;
using Names = std::vector<std::string>;
using Person = std::function<bool(framework::Form&)>;

const std::string kUnique = "Piece name is not unique.  Please enter a different name | Error";

class PieceDialogsTest : public LayoutViewFixture {
protected:
    // A right click on the piece, choosing `command` from the menu (0: none).
    void RightClick(const std::string& name, int command = 0) {
        const PageRect r = RectOf(name);
        canvas.menu_answer = command;
        view->OnRButtonDown({r.left + 1, r.top + 1});
        view->OnRButtonUp({r.left + 1, r.top + 1});
    }

    // The person at an Edit Piece dialog: types the name (unless empty), then OK.
    Person Named(const std::string& name, bool locked = false) {
        return [this, name, locked](framework::Form& form) {
            EXPECT_EQ(form.Caption(), "Edit Piece");
            if (!name.empty()) form.SetText(EditPieceForm::kName, name, ui);
            if (locked) form.SetChecked(EditPieceForm::kLocked, true, ui);
            return true;
        };
    }
    static Person Cancel() {
        return [](framework::Form&) { return false; };
    }

    Names PageOrder() {
        Names names;
        for (const UI_PIECE& piece : document->Page()->pieces)
            names.push_back(piece.name);
        return names;
    }
    Names BoxTexts() const {
        Names texts;
        for (const framework::RecordedBox& box : ui.boxes)
            texts.push_back(box.text + " | " + box.caption);
        return texts;
    }

    // Gives the page's texture the folder "menus"; `open` lets "Main" use it.
    void PutTextureInFolder(bool open) {
        project->qlt_file().common_texture_paths.clear();
        ASSERT_TRUE(project->SetTextureFolder(page_path, "menus"));
        if (open) document->Page()->texture_paths = {"menus"};
    }
};

TEST_F(PieceDialogsTest, EditAsksAgainUntilTheNameIsValidAndFreeOnThePage) {
    CLayoutPageView& page =
        OpenView(Box("a", 10, 10, "<tool_tip_id>tip</tool_tip_id>\n") + Box("b", 40, 10));
    Select({"a"});
    const size_t depth = UndoDepth();
    ui.forms = {Named("1a"), Named("b"), [this](framework::Form& form) {
                    EXPECT_EQ(form.Text(EditPieceForm::kName), "b") << "entries stay";
                    return Named("renamed")(form);
                }};
    RightClick("a", kEditPiece);
    EXPECT_EQ(BoxTexts(),
              (Names{std::string(kInvalidIdentifierText) + " | Bad Piece Name", kUnique}));
    EXPECT_TRUE(ui.forms.empty());
    EXPECT_EQ(PageOrder(), (Names{"renamed", "b"}));
    EXPECT_EQ(Corner("renamed"), (Point{10, 10}));
    // A tool tip the texts file does not list stands as a row of its own and stays.
    EXPECT_EQ(Piece("renamed").attributes.tool_tip_id, "tip");
    EXPECT_EQ(page.ContextPiece(), "");
    EXPECT_EQ(Selected(), Names{"renamed"}) << "the selection follows the new name";
    EXPECT_EQ(UndoDepth(), depth + 1);
    EXPECT_EQ(LastStatus(), "\"renamed\": (10, 10) -> (20, 20) = (10 x 10)");

    // Its own name again is no clash; OK with nothing changed goes through.
    ui.boxes.clear();
    ui.forms = {Named("")};
    RightClick("b", kEditPiece);
    EXPECT_TRUE(ui.boxes.empty());
    EXPECT_EQ(UndoDepth(), depth + 2);

    project->OnEditUndo();
    project->OnEditUndo();
    EXPECT_EQ(PageOrder(), (Names{"a", "b"}));
}

TEST_F(PieceDialogsTest, EditWorksOnTheLastRightClickedPieceEvenWhenLocked) {
    CLayoutPageView& page = OpenView(Box("a", 10, 10) + Box("locked", 40, 10, kLocked));
    // With no piece right-clicked, a double click opens nothing.
    ui.forms = {Named("x")};
    page.OnLButtonDblClk({15, 15});
    EXPECT_EQ(ui.forms.size(), 1u);

    // The menu closed without a choice: the piece stays the one the commands act on, and a
    // double click elsewhere edits it, not the piece under the pointer.
    RightClick("locked");
    EXPECT_EQ(page.ContextPiece(), "locked");
    ui.forms = {[this](framework::Form& form) {
        EXPECT_TRUE(form.At(EditPieceForm::kLocked).checked);
        form.SetChecked(EditPieceForm::kLocked, false, ui);
        return true;
    }};
    page.OnLButtonDblClk({15, 15});
    EXPECT_FALSE(Piece("locked").locked) << "unlocked through the dialog";
    EXPECT_TRUE(ui.forms.empty());

    // Locking a selected piece takes it out of the selection.
    Select({"a"});
    ui.forms = {Named("", true)};
    RightClick("a");
    page.OnCommand(kEditSelectedPiece);
    EXPECT_TRUE(Piece("a").locked);
    EXPECT_TRUE(Selected().empty());
    EXPECT_FALSE(page.HasSelection());
}

TEST_F(PieceDialogsTest, CancelChangesNothingAndLeavesTheTypeUnused) {
    CLayoutPageView& page = OpenView(Box("a", 10, 10));
    ASSERT_TRUE(project->SetPieceTypesFile(dir.Write("types.txt", "art,piece,default\r\n")));
    ASSERT_TRUE(project->qlt_file().art_types[0].in_use);
    const size_t depth = UndoDepth();
    ui.forms = {Cancel()};
    RightClick("a", kEditPiece);
    EXPECT_FALSE(project->qlt_file().art_types[0].in_use);
    EXPECT_EQ(UndoDepth(), depth);
    EXPECT_EQ(page.ContextPiece(), "a") << "only an edit that went through clears it";
    EXPECT_TRUE(ui.boxes.empty());
}

TEST_F(PieceDialogsTest, CloneAsksEachSelectedPieceForANewName) {
    CLayoutPageView& page =
        OpenView(Box("a", 10, 10, "", EditGroup("e")) + Box("b", 40, 10) + Box("c", 70, 10));
    Select({"c", "a", "b"});
    const size_t depth = UndoDepth();
    ui.forms = {Named("b2"), Cancel(), Named(""), Named("a2")};
    page.OnCommand(kClonePiece);
    // "c" took "b2"; "a" was cancelled; "b" was offered its own name first.
    EXPECT_EQ(BoxTexts(), (Names{kUnique}));
    EXPECT_EQ(PageOrder(), (Names{"a", "b", "c", "b2", "a2"}));
    EXPECT_EQ(Corner("b2"), (Point{70, 10})) << "in its source's place";
    EXPECT_EQ(Corner("a2"), (Point{40, 10}));
    EXPECT_EQ(Selected(), (Names{"b2", "a2"}));
    EXPECT_TRUE(page.HasSelection());
    EXPECT_EQ(LastStatus(), "Multiple pieces selected");
    EXPECT_EQ(UndoDepth(), depth + 2);
    EXPECT_TRUE(document->IsModified());
}

TEST_F(PieceDialogsTest, PasteCopiesFromTheSourceAsItIsNow) {
    CLayoutPageView& page =
        OpenView(Box("a", 10, 10, "<tool_tip_id>tip</tool_tip_id>\n", EditGroup("e")) +
                 PieceText("b", "wide", 40, 10, 20, 10, "<tool_tip_id>old</tool_tip_id>\n") +
                 PieceText("s", "vslider", 100, 10, 16, 40));
    // Paste with an empty clipboard does nothing.
    RightClick("b", kPasteAttributes);
    EXPECT_EQ(page.ContextPiece(), "b");
    RightClick("a", kCopyAttributes);
    ASSERT_NE(page.AttributeClipboard(), nullptr);
    EXPECT_EQ(page.ContextPiece(), "");

    const size_t depth = UndoDepth();
    RightClick("s", kPasteAttributes);
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text,
              "Destination piece type (UI_V_Slider) does not match type copied in clipboard (art)");
    EXPECT_EQ(ui.boxes[0].caption, "Attribute Paste Failure");
    EXPECT_EQ(ui.boxes[0].icon, framework::MessageIcon::Warning);
    EXPECT_EQ(page.ContextPiece(), "s");
    EXPECT_EQ(UndoDepth(), depth);

    // The source changed after the copy: the paste takes it as it is now.
    UI_PIECE source = Piece("a");
    source.attributes.tool_tip_id = "newer";
    source.locked = true;
    document->ReplacePiece("a", source);
    RightClick("b", kPasteAttributes);
    EXPECT_EQ(Piece("b").attributes.tool_tip_id, "newer");
    EXPECT_EQ(Piece("b").edit_group_id, "e");
    EXPECT_TRUE(Piece("b").locked);
    EXPECT_EQ(Piece("b").object_id, "wide") << "name, object and place stay";
    EXPECT_EQ(Corner("b"), (Point{40, 10}));
    EXPECT_EQ(page.ContextPiece(), "");
    EXPECT_NE(page.AttributeClipboard(), nullptr) << "the clipboard outlives a paste";

    // The source gone: told, and nothing changes.
    document->DeletePiece("a", true);
    UI_PIECE before = Piece("b");
    const size_t steps = UndoDepth();
    ui.boxes.clear();
    RightClick("b", kPasteAttributes);
    EXPECT_EQ(BoxTexts(), (Names{"Piece not found | Error"}));
    EXPECT_EQ(Piece("b").attributes, before.attributes);
    EXPECT_EQ(UndoDepth(), steps);
}

TEST_F(PieceDialogsTest, ResetSizeActsOnTheFirstSelectedPieceOnly) {
    CLayoutPageView& page = OpenView(PieceText("s", "vslider", 10, 10, 16, 80) +
                                     PieceText("w", "wide", 60, 10, 40, 20));
    page.OnCommand(kResetScaling);
    EXPECT_EQ(RectOf("s"), (PageRect{10, 10, 26, 90})) << "needs a selection";

    Select({"s", "w"});
    const size_t depth = UndoDepth();
    page.OnCommand(kResetScaling);
    EXPECT_EQ(RectOf("s"), (PageRect{10, 10, 26, 50}));
    EXPECT_EQ(RectOf("w"), (PageRect{60, 10, 100, 30}));
    EXPECT_EQ(UndoDepth(), depth + 1);

    Click({70, 15});
    ASSERT_EQ(Selected(), Names{"w"});
    page.OnCommand(kUndoResize);
    EXPECT_EQ(RectOf("w"), (PageRect{60, 10, 80, 20}));
    EXPECT_EQ(LastStatus(), "\"w\": (60, 10) -> (80, 20) = (20 x 10)");
}

TEST_F(PieceDialogsTest, CreateEditGroupRefusesAGroupThePageHas) {
    CLayoutPageView& page = OpenView(Box("a", 10, 10, "", EditGroup("e")));
    ASSERT_EQ(page.EditGroupIds(), Names{"e"});
    const auto group = [this](const std::string& name) -> Person {
        return [this, name](framework::Form& form) {
            EXPECT_EQ(form.Caption(), "Create group");
            form.SetText(1049, name, ui);
            return true;
        };
    };
    ui.forms = {group("e"), group("f")};
    page.OnCommand(kCreateEditGroup);
    EXPECT_EQ(BoxTexts(), (Names{"This group already exists | Error"}));
    EXPECT_EQ(ui.boxes[0].icon, framework::MessageIcon::Warning);
    EXPECT_EQ(page.EditGroupIds(), (Names{"e", "f"}));
    EXPECT_TRUE(document->IsModified());

    ui.forms = {group("")};
    page.OnCommand(kCreateEditGroup);
    ui.forms = {Cancel()};
    page.OnCommand(kCreateEditGroup);
    EXPECT_EQ(page.EditGroupIds(), (Names{"e", "f"}));

    // Offered by Edit Piece until a rebuild, which forgets a group no piece carries.
    ui.forms = {[](framework::Form& form) {
        EXPECT_EQ(form.At(EditPieceForm::kEditGroup).rows, (Names{"<No Group>", "e", "f"}));
        return false;
    }};
    RightClick("a", kEditPiece);
    page.RebuildGroupLists();
    EXPECT_EQ(page.EditGroupIds(), Names{"e"});
}

TEST_F(PieceDialogsTest, InsertObjectListsWhatThePagesFoldersAllow) {
    OpenView(Box("a", 10, 10));
    const auto listing = [this] {
        const InsertObjectForm form(*project, *document->Page());
        return form.At(InsertObjectForm::kObjects).items;
    };
    using Tree = std::vector<framework::TreeItem>;
    const auto objects = [](Tree art, Tree sliders) {
        return Tree{
            {"Art", std::move(art)},
            {"Button",
             {{"Push", {{"empty_push_button", {}}}}, {"Toggle", {{"empty_toggle_button", {}}}}}},
            {"Slider", std::move(sliders)},
            {"Scroll Box", {}}};
    };
    EXPECT_EQ(listing(), objects({{"empty_art", {}}}, {})) << "a texture in no folder is closed";
    PutTextureInFolder(false);
    EXPECT_EQ(listing(), objects({{"empty_art", {}}}, {})) << "the folder must be open to the page";
    project->qlt_file().common_texture_paths = {"menus"};
    const Tree all = objects({{"empty_art", {}}, {"box", {}}, {"wide", {}}}, {{"vslider", {}}});
    EXPECT_EQ(listing(), all);
    project->qlt_file().common_texture_paths.clear();
    PutTextureInFolder(true);
    EXPECT_EQ(listing(), all) << "the page's own paths count as well";

    // A region on neither a texture nor a movie is told, and its object is not offered.
    auto ghost = std::make_unique<UI_ART>("ghost");
    ghost->regions.push_back({"art", dir.File("nowhere.tga"), "x"});
    project->AddObject(std::move(ghost));
    EXPECT_EQ(listing(), all);
    EXPECT_EQ(BoxTexts(), (Names{"Unknown region type | Error"}));
}

TEST_F(PieceDialogsTest, InsertObjectNeedsAPickAndAValidName) {
    OpenView("");
    PutTextureInFolder(true);
    ASSERT_TRUE(project->SetPieceTypesFile(
        dir.Write("types.txt", "art,plain,default\r\nart,backdrop,default\r\n")));
    InsertObjectForm form(*project, *document->Page());
    EXPECT_EQ(form.Caption(), "Insert Object");
    form.SelectItem(InsertObjectForm::kObjects, {"Button", "Push"}, ui);
    EXPECT_EQ(form.Picked(), "") << "a heading is no object";
    form.SelectItem(InsertObjectForm::kObjects, {"Art", "wide"}, ui);
    EXPECT_EQ(form.Picked(), "wide");
    form.SetText(InsertObjectForm::kPieceName, "title", ui);
    form.Press(InsertObjectForm::kTakePick, ui);
    EXPECT_EQ(form.Text(InsertObjectForm::kObjectName), "wide");
    EXPECT_EQ(form.Text(InsertObjectForm::kPieceName), "title") << "a typed name stays";

    form.SetText(InsertObjectForm::kPieceName, "", ui);
    EXPECT_FALSE(form.Accept(ui));
    EXPECT_EQ(BoxTexts(), (Names{std::string(kInvalidIdentifierText) + " | Bad Object Name"}));
    form.Press(InsertObjectForm::kObjects, ui);  // a double click on the pick
    EXPECT_EQ(form.Text(InsertObjectForm::kPieceName), "wide");

    form.SelectItem(InsertObjectForm::kObjects, {"Art"}, ui);
    EXPECT_FALSE(form.Accept(ui)) << "OK waits for a pick";
    EXPECT_EQ(ui.boxes.back().text, InsertObjectForm::kNoPickText);
    EXPECT_EQ(ui.boxes.back().caption, "quillet");

    form.SelectItem(InsertObjectForm::kObjects, {"Art", "box"}, ui);
    ASSERT_TRUE(form.Accept(ui));
    const UI_PIECE& piece = form.Piece();
    EXPECT_EQ(piece.name, "wide");
    EXPECT_EQ(piece.object_id, "box") << "the pick, whatever the field shows";
    EXPECT_EQ(piece.piece_identifier, "backdrop") << "the first type of its kind";
    EXPECT_EQ(piece.attributes, PIECE_ATTRIBUTES());
    EXPECT_EQ(piece.scale_y, 1.0f);

    // A kind without types: told, and the piece has none.
    ui.boxes.clear();
    form.SelectItem(InsertObjectForm::kObjects, {"Slider", "vslider"}, ui);
    ASSERT_TRUE(form.Accept(ui));
    EXPECT_EQ(BoxTexts(), (Names{"Piece type not found | Error"}));
    EXPECT_EQ(form.Piece().piece_identifier, "");
}

TEST_F(PieceDialogsTest, InsertObjectRefusesANameAnyPageUsesAndPlacesThePieceAtTheCentre) {
    CLayoutPageView& page = OpenView(Box("a", 10, 10) + Box("b", 40, 10));
    PutTextureInFolder(true);
    ASSERT_TRUE(project->SetPieceTypesFile(dir.Write("types.txt", "art,plain,default\r\n")));
    project->CreateLayout("Other");
    UI_PIECE elsewhere;
    elsewhere.name = "elsewhere";
    elsewhere.object_id = "empty_art";
    project->AddPiece("Other", elsewhere, true);
    Select({"a"});
    const size_t depth = UndoDepth();
    const auto insert = [this](const std::string& name) -> Person {
        return [this, name](framework::Form& form) {
            form.SelectItem(InsertObjectForm::kObjects, {"Art", "wide"}, ui);
            form.SetText(InsertObjectForm::kPieceName, name, ui);
            return true;
        };
    };
    ui.forms = {insert("elsewhere"), insert("b"), insert("fresh")};
    page.OnCommand(kInsertObject);
    EXPECT_EQ(BoxTexts(), (Names{"Identifier is already in use | quillet",
                                 "Identifier is already in use | quillet"}));
    EXPECT_EQ(ui.boxes[0].icon, framework::MessageIcon::Stop);
    EXPECT_EQ(PageOrder(), (Names{"a", "b", "fresh"}));
    EXPECT_EQ(RectOf("fresh"), (PageRect{100, 50, 120, 60})) << "its corner on the centre";
    EXPECT_EQ(Selected(), Names{"fresh"});
    EXPECT_TRUE(page.HasSelection());
    EXPECT_EQ(LastStatus(), "\"fresh\": (100, 50) -> (120, 60) = (20 x 10)");
    EXPECT_EQ(UndoDepth(), depth + 1);
    EXPECT_EQ(Piece("fresh").piece_identifier, "plain");

    ui.forms = {Cancel()};
    page.OnCommand(kInsertObject);
    EXPECT_EQ(PageOrder(), (Names{"a", "b", "fresh"}));
}

}  // namespace
