// The dialogs of a few fields: Add Font, Create Layout, Edit Dimensions, New Folder and
// Identify the region.
#include <gtest/gtest.h>

#include "forms/AddFontForm.h"
#include "forms/SmallForms.h"
#include "framework/ScriptedUserInterface.h"
#include "model/identifier.h"

namespace {

TEST(AddFontFormTest, BrowseSetsTheFileAndProposesAnIdFromItsName) {
    framework::ScriptedUserInterface ui;
    AddFontForm form("/project");
    form.SetText(AddFontForm::kId, "typed", ui);
    form.Press(AddFontForm::kBrowse, ui);
    EXPECT_EQ(form.FontId(), "typed") << "a cancelled picker changes nothing";
    ASSERT_EQ(ui.file_requests.size(), 1u);
    EXPECT_EQ(ui.file_requests[0].filter, "font files (*.bgf *.ugf)");
    EXPECT_EQ(ui.file_requests[0].initial_path, "/project");

    ui.file_names = {"/fonts/ui.small.bgf", "C:\\fonts\\menu.v2.ugf"};
    form.Press(AddFontForm::kBrowse, ui);
    EXPECT_EQ(form.FontFile(), "/fonts/ui.small.bgf");
    EXPECT_EQ(form.FontId(), "ui_small_bgf");
    form.Press(AddFontForm::kBrowse, ui);
    EXPECT_EQ(form.FontId(), "menu_v2_ugf") << "behind the last backslash too";

    const std::string long_path = "/" + std::string(300, 'd') + "/f.bgf";
    ui.file_names = {long_path};
    form.Press(AddFontForm::kBrowse, ui);
    EXPECT_EQ(form.FontFile(), long_path) << "a chosen path is never cut";
    form.SetText(AddFontForm::kFile, std::string(300, 'x'), ui);
    EXPECT_EQ(form.FontFile().size(), 256u) << "what is typed is";
}

TEST(AddFontFormTest, OkChecksTheLineFeedThenTheIdThenTheFile) {
    framework::ScriptedUserInterface ui;
    AddFontForm form;
    form.SetText(AddFontForm::kId, "menu_font", ui);
    for (const char* refused : {"", "0", "1001", "12px"}) {
        form.SetText(AddFontForm::kLineFeedHeight, refused, ui);
        EXPECT_FALSE(form.Accept(ui)) << refused;
    }
    EXPECT_EQ(ui.boxes.back().text, "Please enter an integer between 1 and 1000.");

    form.SetText(AddFontForm::kLineFeedHeight, "1000", ui);
    ui.boxes.clear();
    const std::string long_id(33, 'i');
    form.SetText(AddFontForm::kId, long_id, ui);
    EXPECT_FALSE(form.Accept(ui));
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, "More than 32 characters in font id:\n\n" + long_id);
    EXPECT_EQ(ui.boxes[0].caption, "font id is too long");

    form.SetText(AddFontForm::kId, "2x", ui);
    EXPECT_FALSE(form.Accept(ui));
    EXPECT_EQ(ui.boxes[1].text, kInvalidIdentifierText);
    EXPECT_EQ(ui.boxes[1].caption, "Bad font id:2x");

    form.SetText(AddFontForm::kId, std::string(32, 'i'), ui);
    EXPECT_FALSE(form.Accept(ui)) << "no file yet";
    EXPECT_EQ(ui.boxes[2].text, AddFontForm::kNoFileText);
    form.SetText(AddFontForm::kFile, "/fonts/a.bgf", ui);
    EXPECT_TRUE(form.Accept(ui));
    EXPECT_EQ(form.LineFeedHeight(), 1000);
}

TEST(CreateLayoutFormTest, StartsFromTheProjectsSizeAndHoldsTheLimits) {
    framework::ScriptedUserInterface ui;
    CreateLayoutForm form(800, 600);
    EXPECT_EQ(form.Caption(), "Create Layout");
    EXPECT_EQ(form.Text(CreateLayoutForm::kWidth), "800");
    EXPECT_EQ(form.Text(CreateLayoutForm::kHeight), "600");
    form.SetText(CreateLayoutForm::kName, "main_menu", ui);
    struct Case {
        int id;
        const char* text;
        bool accepted;
    };
    for (const Case& each : {Case{CreateLayoutForm::kWidth, "639", false},
                             Case{CreateLayoutForm::kWidth, "1921", false},
                             Case{CreateLayoutForm::kWidth, "1920", true},
                             Case{CreateLayoutForm::kHeight, "447", false},
                             Case{CreateLayoutForm::kHeight, "1441", false},
                             Case{CreateLayoutForm::kHeight, "448", true}}) {
        form.SetText(each.id, each.text, ui);
        EXPECT_EQ(form.Accept(ui), each.accepted) << each.id << " " << each.text;
        if (!each.accepted)
            form.SetText(each.id, each.id == CreateLayoutForm::kWidth ? "640" : "1440", ui);
    }
    EXPECT_EQ(ui.boxes.at(0).text, "Please enter an integer between 640 and 1920.");
    EXPECT_EQ(ui.boxes.at(2).text, "Please enter an integer between 448 and 1440.");
    EXPECT_EQ(form.Width(), 1920);
    EXPECT_EQ(form.Height(), 448);

    ui.boxes.clear();
    form.SetText(CreateLayoutForm::kName, "main menu", ui);
    EXPECT_FALSE(form.Accept(ui));
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].caption, "Bad Layout Name");
    form.SetText(CreateLayoutForm::kName, std::string(40, 'm'), ui);
    EXPECT_EQ(form.Name(), std::string(32, 'm'));
    EXPECT_TRUE(form.Accept(ui));
}

TEST(SmallFormsTest, EditDimensionsNewFolderAndIdentifyRegion) {
    framework::ScriptedUserInterface ui;
    EditDimensionsForm dimensions(2000, 600);
    EXPECT_EQ(dimensions.Caption(), "Edit Dimensions");
    EXPECT_FALSE(dimensions.Accept(ui)) << "a size from the file is held to the limits too";
    dimensions.SetText(EditDimensionsForm::kWidth, "+1024", ui);
    EXPECT_TRUE(dimensions.Accept(ui));
    EXPECT_EQ(dimensions.Width(), 1024);
    EXPECT_EQ(dimensions.Height(), 600);

    ui.boxes.clear();
    NewFolderForm folder;
    EXPECT_EQ(folder.Caption(), "New Folder");
    folder.SetText(NewFolderForm::kName, std::string(40, ' '), ui);
    EXPECT_TRUE(folder.Accept(ui)) << "its caller checks the name";
    EXPECT_EQ(folder.Name().size(), 40u);

    IdentifyRegionForm region("start");
    EXPECT_EQ(region.Caption(), "Identify the region");
    EXPECT_EQ(region.Name(), "start");
    region.SetText(IdentifyRegionForm::kName, "", ui);
    EXPECT_FALSE(region.Accept(ui));
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].caption, "Bad Region Name");
    region.SetText(IdentifyRegionForm::kName, "_ok", ui);
    EXPECT_TRUE(region.Accept(ui));
}

}  // namespace
