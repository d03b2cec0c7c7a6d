#include <gtest/gtest.h>

#include "ProjectFixture.h"
#include "model/ProjectFile.h"
#include "model/RecordIndex.h"
#include "model/qlt_paths.h"

namespace {

// Reads `bytes` as a project of its own and writes it again.
std::string Resave(const std::string& bytes) {
    ProjectRecords records;
    const RecordIndex index{&records};
    const ScopedRecordLookup scope(index);
    SetProjectBaseDir("/p/ui.qlt");
    framework::Archive in = framework::Archive::ForLoading(bytes, "/p/ui.qlt");
    ReadProject(in, records);
    framework::Archive out = framework::Archive::ForStoring("/p/ui.qlt");
    WriteProject(out, records);
    return out.TakeBytes();
}

// One art piece at `x`, `y` over a region of `natural_width` by 10 pixels.
std::string ArtPiece(const std::string& x, const std::string& y, int natural_width,
                     const std::string& width, const std::string& height = "10") {
    return "<texture>parts.tga\n<region>bar\n<left>0</left>\n<top>0</top>\n<right>" +
           std::to_string(natural_width) +
           "</right>\n<bottom>10</bottom>\n</region>\n</texture>\n"
           "<UI object>bar_art\n<type>art</type>\n<UI region>art\n<page>parts.tga</page>\n"
           "<region>bar</region>\n</UI region>\n</UI object>\n"
           "<layout>\n<layout_width>800</layout_width>\n<layout_height>600</layout_height>\n"
           "<piece_types_fname></piece_types_fname>\n<piece_texts_fname></piece_texts_fname>\n"
           "<lpage>Main\n<UI piece>p\n<identifier>art</identifier>\n<Parameters>\n<x>" +
           x + "</x>\n<y>" + y + "</y>\n<width>" + width + "</width>\n<height>" + height +
           "</height>\n</Parameters>\n<object_id>bar_art</object_id>\n</UI piece>\n</lpage>\n"
           "</layout>\n";
}

std::string SizeLines(const std::string& file) {
    const size_t from = file.find("<width>");
    return file.substr(from, file.find("<locked>") - from);
}

TEST(SaveIdempotenceTest, APieceNearTheEndsOfTheRangeKeepsItsSizeFromTheSecondSaveOn) {
    // Floats there are 128 apart: the size at scale 1 is not the natural size, and each
    // save used to shrink, grow or multiply the width.
    const std::string cases[][5] = {
        {"2147483000", "0", "100", "5000", "10"},
        {"-2147483000", "-2147483600", "3", "400", "2000"},
        {"2147483647", "-2147483648", "1", "1", "1"},
        {"-16777300", "16777217", "7", "-900", "-3"},
        {"2000000000", "0", "64", "64", "2147483647"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c[0] + " " + c[1] + " " + c[2] + " " + c[3] + " " + c[4]);
        const std::string once = Resave(ArtPiece(c[0], c[1], std::stoi(c[2]), c[3], c[4]));
        EXPECT_EQ(SizeLines(Resave(once)), SizeLines(once));
        EXPECT_EQ(Resave(once), once);
    }
}

TEST(SaveIdempotenceTest, AWidthThatAScaleCanGiveIsWrittenAsRead) {
    // 424 / 13 * 13 in float truncates to 423: the width lost a pixel at every save.
    EXPECT_EQ(SizeLines(Resave(ArtPiece("0", "0", 13, "424"))),
              "<width>424</width>\r\n        <height>10</height>\r\n        ");
    // Near the end of the range only every 128th edge exists: the nearest one is kept.
    EXPECT_EQ(SizeLines(Resave(ArtPiece("2147483000", "0", 100, "100"))),
              "<width>136</width>\r\n        <height>10</height>\r\n        ");
}

// A vertical slider 16 by 40 long, its range a function of its scale, with one piece.
std::string SliderPiece(const std::string& x, const std::string& y, const std::string& width,
                        const std::string& height, bool object_after_layout) {
    const std::string region = "<left>0</left>\n<top>0</top>\n<right>16</right>\n";
    const std::string page = "<texture>parts.tga\n<region>dec\n" + region +
                             "<bottom>10</bottom>\n</region>\n" + "<region>bar\n" + region +
                             "<bottom>100</bottom>\n</region>\n<region>knob\n" + region +
                             "<bottom>20</bottom>\n</region>\n</texture>\n";
    const auto part = [](const std::string& name, const std::string& type,
                         const std::string& body) {
        return "<UI object>" + name + "\n<type>" + type + "</type>\n" + body + "</UI object>\n";
    };
    const auto art = [](const std::string& slot, const std::string& name) {
        return "<UI region>" + slot + "\n<page>parts.tga</page>\n<region>" + name +
               "</region>\n</UI region>\n";
    };
    const std::string slider = part("scroller", "UI_V_Slider",
                                    part("Art", "art", art("art", "bar")) +
                                        part("Thumb", "push_button", art("enabled", "knob")) +
                                        part("Decrease", "push_button", art("enabled", "dec")) +
                                        part("Increase", "push_button", art("enabled", "dec")));
    const std::string layout =
        "<layout>\n<layout_width>800</layout_width>\n<layout_height>600</layout_height>\n"
        "<piece_types_fname></piece_types_fname>\n<piece_texts_fname></piece_texts_fname>\n"
        "<lpage>Main\n<UI piece>p\n<identifier>art</identifier>\n<Parameters>\n<x>" +
        x + "</x>\n<y>" + y + "</y>\n<width>" + width + "</width>\n<height>" + height +
        "</height>\n</Parameters>\n<object_id>scroller</object_id>\n</UI piece>\n</lpage>\n"
        "</layout>\n";
    return object_after_layout ? page + layout + slider : page + slider + layout;
}

TEST(SaveIdempotenceTest, EveryPlaceAndSizeOfASliderSavesTheSameTwice) {
    const std::vector<std::string> places = {"0",           "-10",        "10",
                                             "16777217",    "-16777217",  "2147483000",
                                             "-2147483000", "2147483647", "-2147483648"};
    const std::vector<std::string> sizes = {"0",   "1",     "-1",         "41",
                                            "424", "-5000", "2147483647", "-2147483648"};
    // The range, written and never read, follows the scale: it must settle with the size.
    ASSERT_NE(Resave(SliderPiece("0", "0", "16", "80", false)).find("<range>40</range>"),
              std::string::npos);
    for (const bool after : {false, true})
        for (const std::string& x : places)
            for (const std::string& y : places)
                for (const std::string& size : sizes) {
                    const std::string once = Resave(SliderPiece(x, y, "16", size, after));
                    ASSERT_EQ(Resave(once), once) << x << " " << y << " " << size << " " << after;
                }
}

// The reader takes a file whose objects and pages stand after its layouts: pieces are
// measured once everything is read, so they keep the sizes written.
TEST(SaveIdempotenceTest, APieceReadBeforeItsObjectKeepsItsSize) {
    const std::string usual = ArtPiece("5", "6", 20, "40");
    const size_t layout = usual.find("<layout>");
    const std::string layout_first = usual.substr(layout) + usual.substr(0, layout);
    const std::string once = Resave(layout_first);
    EXPECT_EQ(SizeLines(once), SizeLines(Resave(usual)));
    EXPECT_NE(once.find("<width>40</width>"), std::string::npos);
    EXPECT_EQ(Resave(once), once);

    // Found by the fuzzer: a slider after the layout, over a region read before it.
    const std::string slider =
        "<texture>parts.tga\n<region>knob\n<left></left>\n<top></top>\n<right>1</right>\n"
        "<bottom>2</bottom>\n</region>\n</texture>\n<layout>\n<layout_width></layout_width>\n"
        "<layout_height></layout_height>\n<piece_types_fname></piece_types_fname>\n"
        "<piece_texts_fname></piece_texts_fname>\n<\n<\n<identifier></identifier>\n"
        "<Parameters>\n<x></x>\n<y>140</y>\n<width></width>\n<height></height>\n"
        "</Parameters>\n<object_id>scroller</object_id>\n</UI piece>\n</lpage>\n</layout>\n"
        "<UI object>scroller\n<type>UI_V_Slider</type>\n\n<type>art</type>\n\n\n</UI object>\n"
        "\n<type>push_button</type>\n\n<page>parts.tga</page>\n<region>knob</region>\n"
        "</UI region>\n</UI object>\n</UI object>";
    const std::string settled = Resave(slider);
    EXPECT_EQ(Resave(settled), settled);
}

// A project with texture pages and a piece is open; a file whose page holds a line that is
// not a region does not read, and the open project keeps everything.
class StrayLineTest : public ProjectFixture {};

TEST_F(StrayLineTest, AFileThatDoesNotReadLeavesTheOpenProjectAsItWas) {
    Start();
    CQuilletDoc* present = Open("ui.qlt", ArtPiece("5", "6", 8, "16", "20"));
    ASSERT_NE(present, nullptr);
    present->TakeSnapshot();
    const std::string before = present->undo_list.front();
    EXPECT_EQ(Open("bad.qlt",
                   "<texture>a.tga\n<region>one\n<left>0</left>\n<top>0</top>\n<right>1</right>\n"
                   "<bottom>1</bottom>\n</region>\nbutton_down\n</texture>\n"),
              nullptr);
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, "Cannot read project file: NOT_A_TREGION at line 8");
    EXPECT_EQ(GetProjectDoc(), present);
    present->TakeSnapshot();
    EXPECT_EQ(present->undo_list.front(), before);
}

}  // namespace
