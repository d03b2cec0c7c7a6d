// The dialogs' logic: what their controls hold, how they answer the person, and what OK
// lets through.
#include <gtest/gtest.h>

#include "forms/ImportRegionForm.h"
#include "forms/PageChooserForm.h"
#include "forms/TextureForm.h"
#include "framework/ScriptedUserInterface.h"

namespace {

using Id = TextureForm::Id;

TEST(FormTest, ControlsTakeInputAsTheirWidgetsWould) {
    framework::ScriptedUserInterface ui;
    TextureForm form;
    form.SetChecked(Id::kSize64, true, ui);
    EXPECT_FALSE(form.At(Id::kSize256).checked) << "a radio button clears its group";
    EXPECT_TRUE(form.At(Id::kDepth32).checked) << "and only its group";
    form.SetText(Id::kWidth, "999", ui);
    EXPECT_EQ(form.Text(Id::kWidth), "64") << "a disabled field takes no input";

    int value = 0;
    EXPECT_TRUE(framework::ParseDialogInt("+12", value));
    EXPECT_EQ(value, 12);
    EXPECT_TRUE(framework::ParseDialogInt("-2147483648", value));
    for (const char* bad : {"", "-", "12a", " 1", "2147483648", "0x10"})
        EXPECT_FALSE(framework::ParseDialogInt(bad, value)) << bad;
}

TEST(FormTest, OkRefusesANumberOutsideItsLimitsAndStaysOpen) {
    framework::ScriptedUserInterface ui;
    TextureForm form;
    form.SetChecked(Id::kUserSize, true, ui);
    form.SetText(Id::kHeight, "0", ui);
    EXPECT_FALSE(form.Accept(ui));
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, "Please enter an integer between 1 and 65535.");
    EXPECT_EQ(ui.boxes[0].caption, "quillet");
    form.SetText(Id::kHeight, "4096", ui);
    EXPECT_TRUE(form.Accept(ui));
    EXPECT_EQ(form.data.height, 4096);
}

TEST(ImportRegionFormTest, ChosenFilesAppendQuotedPathsAndIdentifiers) {
    framework::ScriptedUserInterface ui;
    ImportRegionForm form;
    form.SetText(ImportRegionForm::kIdentifiers, "\"typed\" ", ui);
    ui.file_lists = {{"/art/fire_icon.TGA", "C:\\art\\frame.tga.tga", "/art/plain"}};
    form.Press(ImportRegionForm::kSourceFile, ui);
    EXPECT_EQ(form.Count(), 3u);
    EXPECT_EQ(form.Text(ImportRegionForm::kPaths),
              "\"/art/fire_icon.TGA\" \"C:\\art\\frame.tga.tga\" \"/art/plain\" ");
    EXPECT_EQ(form.Text(ImportRegionForm::kIdentifiers),
              "\"typed\" \"fire_icon\" \"frame\" \"plain\" ")
        << "what was typed stays; \".tga\" goes in any case";
    EXPECT_EQ(ui.file_requests.back().filter, "TGA Files (*.tga)");

    ui.file_lists = {{"/art/ok.tga", "/art/say \"hi\".tga"}};
    form.Press(ImportRegionForm::kSourceFile, ui);
    EXPECT_EQ(form.Count(), 3u) << "a name with a double quote is refused, with its fellows";
    EXPECT_EQ(ui.boxes.back().caption, "Error");
    EXPECT_EQ(QuotedEntry("\"open", 0), std::nullopt);
    EXPECT_EQ(QuotedEntry("\"\"", 0), "");
}

TEST(ImportRegionFormTest, OkTellsOfEveryBadIdentifierAndStaysOpen) {
    framework::ScriptedUserInterface ui;
    ImportRegionForm form;
    EXPECT_FALSE(form.Accept(ui)) << "nothing chosen yet";
    EXPECT_EQ(ui.boxes.back().text, ImportRegionForm::kNothingChosenText);

    ui.boxes.clear();
    form.ChooseFiles({"/a.tga", "/b.tga", "/c.tga", "/d.tga"});
    form.SetText(ImportRegionForm::kIdentifiers,
                 "\"" + std::string(33, 'x') + "\" \"9lives\" \"" + std::string(32, 'y') + "\" ",
                 ui);
    EXPECT_FALSE(form.Accept(ui));
    ASSERT_EQ(ui.boxes.size(), 3u);
    EXPECT_EQ(ui.boxes[0].text, "More than 32 characters in region:\n\n" + std::string(33, 'x'));
    EXPECT_EQ(ui.boxes[0].caption, "Region name too long");
    EXPECT_EQ(ui.boxes[1].caption, "Bad Region Name:9lives");
    EXPECT_EQ(ui.boxes[2].text, "Region index out of range - See Tobin");
    EXPECT_EQ(ui.boxes[2].caption, "Invalid request");

    ui.boxes.clear();
    form.SetText(ImportRegionForm::kIdentifiers, "\"a\" \"_b\" \"c1\" \"d\" \"extra\" ", ui);
    EXPECT_TRUE(form.Accept(ui));
    EXPECT_TRUE(ui.boxes.empty());
}

TEST(TextureFormTest, SizesComeFromTheSquaresOrThePersonsOwn) {
    framework::ScriptedUserInterface ui;
    TextureForm form;
    EXPECT_EQ(form.Caption(), "Create Texture");
    form.SetCurrentSize(128, 128);
    EXPECT_TRUE(form.At(Id::kSize128).checked);
    EXPECT_EQ(form.Caption(), "Edit Texture");
    form.SetCurrentSize(128, 64);
    EXPECT_TRUE(form.At(Id::kUserSize).checked);
    EXPECT_TRUE(form.Enabled(Id::kWidth)) << "User shows its width and height";
    form.SetChecked(Id::kSize16, true, ui);
    EXPECT_EQ(form.Text(Id::kWidth), "16");
    EXPECT_FALSE(form.Enabled(Id::kHeight));
    form.SetChecked(Id::kUserSize, true, ui);
    EXPECT_EQ(form.Text(Id::kWidth), "16") << "User starts from the size shown";
    form.SetChecked(Id::kDepth16, true, ui);
    form.SetChecked(Id::kAlpha, false, ui);
    EXPECT_TRUE(form.Accept(ui));

    const TextureForm next;
    EXPECT_EQ(next.data.bit_depth, 16u) << "the last OK is the next default";
    EXPECT_FALSE(next.data.alpha);
    EXPECT_EQ(next.data.SaveFormat(), Core::PIXEL_FORMAT_555);
    EXPECT_TRUE(next.At(Id::kUserSize).checked);
    EXPECT_EQ(next.Caption(), "Create Texture");
}

TEST(PageChooserFormTest, OnlyAPageThePersonSelectedIsChosen) {
    framework::ScriptedUserInterface ui;
    PageChooserForm form({"/p/a.tga", "/p/b.tga"});
    EXPECT_EQ(form.Chosen(), "");
    EXPECT_FALSE(form.Press(PageChooserForm::kPages, ui)) << "a double click on nothing";
    form.SelectItem(PageChooserForm::kPages, {"/p/b.tga"}, ui);
    EXPECT_EQ(form.Chosen(), "/p/b.tga");
    EXPECT_TRUE(form.Press(PageChooserForm::kPages, ui)) << "a double click on a page is OK";
}

}  // namespace
