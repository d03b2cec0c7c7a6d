// The dialogs' logic: what their fields hold and what OK lets through.
#include <gtest/gtest.h>

#include "forms/ImportRegionForm.h"
#include "forms/TextureForm.h"
#include "framework/ScriptedUserInterface.h"

namespace {

TEST(ImportRegionFormTest, ChosenFilesBecomeQuotedListsOfPathsAndIdentifiers) {
    ImportRegionForm form;
    form.ChooseFiles({"/art/fire_icon.tga", "/art/ui/frame.tga.tga", "/art/plain"});
    EXPECT_EQ(form.count, 3u);
    EXPECT_EQ(form.paths, "\"/art/fire_icon.tga\", \"/art/ui/frame.tga.tga\", \"/art/plain\", ");
    EXPECT_EQ(form.file_names, "\"fire_icon.tga\", \"frame.tga.tga\", \"plain\", ");
    EXPECT_EQ(form.identifiers, "\"fire_icon\", \"frame\", \"plain\", ");
    EXPECT_EQ(QuotedEntry(form.identifiers, 1), "frame");
    EXPECT_EQ(QuotedEntry(form.identifiers, 3), std::nullopt);
    EXPECT_EQ(QuotedEntry("\"open", 0), std::nullopt);
    EXPECT_EQ(QuotedEntry("\"\"", 0), "");
}

TEST(ImportRegionFormTest, OkTellsOfEveryBadIdentifierAndStaysOpen) {
    framework::ScriptedUserInterface ui;
    ImportRegionForm form;
    form.ChooseFiles({"/a.tga", "/b.tga", "/c.tga", "/d.tga"});
    form.identifiers =
        "\"" + std::string(33, 'x') + "\", \"9lives\", \"" + std::string(32, 'y') + "\", ";
    EXPECT_FALSE(form.OnOk(ui));
    ASSERT_EQ(ui.boxes.size(), 3u);
    EXPECT_EQ(ui.boxes[0].text, "More than 32 characters in region:\n\n" + std::string(33, 'x'));
    EXPECT_EQ(ui.boxes[0].caption, "Region name too long");
    EXPECT_EQ(ui.boxes[1].caption, "Bad Region Name:9lives");
    EXPECT_EQ(ui.boxes[2].text, "Region index out of range - See Tobin");
    EXPECT_EQ(ui.boxes[2].caption, "Invalid request");

    ui.boxes.clear();
    form.identifiers = "\"a\", \"_b\", \"c1\", \"d\", \"extra\", ";
    EXPECT_TRUE(form.OnOk(ui));
    EXPECT_TRUE(ui.boxes.empty());
}

TEST(TextureFormTest, SizesComeFromTheSquaresOrThePersonsOwn) {
    framework::ScriptedUserInterface ui;
    TextureForm form;
    EXPECT_EQ(form.Title(), "Create Texture");
    form.SetCurrentSize(128, 128);
    EXPECT_EQ(form.data.size_choice, 1007u);
    EXPECT_EQ(form.Title(), "Edit Texture");
    form.SetCurrentSize(128, 64);
    EXPECT_EQ(form.data.size_choice, TextureDialogData::kUserSize);
    form.SelectSize(1004);
    EXPECT_EQ(form.data.width, 16);
    EXPECT_EQ(form.data.height, 16);
    form.SelectSize(TextureDialogData::kUserSize);
    EXPECT_EQ(form.data.width, 16) << "User keeps the size as it stands";
    form.data.bit_depth = 16;
    form.data.alpha = false;
    form.data.height = 0;
    EXPECT_FALSE(form.OnOk(ui)) << "a page without pixels could not be opened again";
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].caption, "Bad Texture Size");
    EXPECT_EQ(TextureForm().data.bit_depth, 32u) << "a refused OK keeps nothing";
    form.data.height = 16;
    EXPECT_TRUE(form.OnOk(ui));

    const TextureForm next;
    EXPECT_EQ(next.data.bit_depth, 16u);
    EXPECT_FALSE(next.data.alpha);
    EXPECT_EQ(next.data.SaveFormat(), Core::PIXEL_FORMAT_555);
    EXPECT_EQ(next.Title(), "Create Texture");
}

}  // namespace
