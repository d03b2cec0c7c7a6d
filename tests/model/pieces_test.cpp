#include "ProjectFixture.h"
#include "model/piece_geometry.h"

namespace {

// An 8 x 100 region, an art object over it, a layout page with pieces.
const std::string kPage =
    "<texture>parts.tga\n"
    "<region>bar\n<left>16</left>\n<top>0</top>\n<right>24</right>\n<bottom>100</bottom>\n</"
    "region>\n"
    "<region>flat\n<left>0</left>\n<top>0</top>\n<right>0</right>\n<bottom>10</bottom>\n</region>\n"
    "<region>vast\n<left>-2147483648</left>\n<top>0</top>\n<right>2147483647</right>\n"
    "<bottom>10</bottom>\n</region>\n"
    "</texture>\n"
    "<UI object>bar_art\n<type>art</type>\n<UI region>art\n<page>parts.tga</page>\n"
    "<region>bar</region>\n</UI region>\n</UI object>\n"
    "<UI object>flat_art\n<type>art</type>\n<UI region>art\n<page>parts.tga</page>\n"
    "<region>flat</region>\n</UI region>\n</UI object>\n"
    "<UI object>vast_art\n<type>art</type>\n<UI region>art\n<page>parts.tga</page>\n"
    "<region>vast</region>\n</UI region>\n</UI object>\n";

std::string Layout(const std::string& pieces) {
    return "<layout>\n<layout_width>800</layout_width>\n<layout_height>600</layout_height>\n"
           "<piece_types_fname></piece_types_fname>\n<piece_texts_fname></piece_texts_fname>\n"
           "<lpage>Main\n" +
           pieces + "</lpage>\n</layout>\n";
}

std::string Piece(const std::string& name, const std::string& parameters,
                  const std::string& tail = "",
                  const std::string& size = "<width>16</width>\n<height>50</height>\n") {
    return "<UI piece>" + name +
           "\n<identifier>button</identifier>\n<Parameters>\n<x>10</x>\n<y>20</y>\n" + size +
           parameters +
           "</Parameters>\n<object_data>data</object_data>\n"
           "<object_id>bar_art</object_id>\n" +
           tail + "</UI piece>\n";
}

class PiecesTest : public ProjectFixture {
protected:
    CQuilletDoc* project = nullptr;
    void Load(const std::string& pieces) {
        Start();
        project = Open("ui.qlt", kPage + Layout(pieces));
        ASSERT_NE(project, nullptr);
    }
    LPAGE& Main() { return project->qlt_file().FindPage("Main"); }
    std::string Saved() {
        EXPECT_TRUE(project->DoFileSave());
        const std::string file = ReadFile(dir.File("ui.qlt"));
        return file.substr(file.find("<lpage>"));
    }
};

TEST_F(PiecesTest, AFullPieceRoundTripsInItsOrder) {
    const std::string parameters =
        "<menu_id>next</menu_id>\n<group_id>g</group_id>\n<hot_spot>spots\\hot.tga</hot_spot>\n"
        "<delta>-3</delta>\n<hz_slider>h</hz_slider>\n<vt_slider>v</vt_slider>\n"
        "<menu_id>scroll</menu_id>\n<UI text>title\n<font_id>big</font_id>\n<align>centre</align>\n"
        "</UI text>\n<tool_tip_id>tip</tool_tip_id>\n<locked>true</locked>\n";
    Load(Piece("ok", parameters, "<edit_group_id>set</edit_group_id>\n"));
    const UI_PIECE& piece = Main().FindPiece("ok");
    EXPECT_FLOAT_EQ(piece.scale_x, 2.0f);
    EXPECT_FLOAT_EQ(piece.scale_y, 0.5f);
    EXPECT_EQ(piece.attributes.hot_spot, dir.File("spots/hot.tga"));
    EXPECT_EQ(piece.attributes.scroll_menu_id, "scroll");
    EXPECT_EQ(piece.attributes.align, 1);
    EXPECT_EQ(PieceRect(piece), (PageRect{10, 20, 26, 70}));
    EXPECT_EQ(Saved(),
              "<lpage>Main\r\n    <UI piece>ok\r\n      <identifier>button</identifier>\r\n"
              "      <Parameters>\r\n        <x>10</x>\r\n        <y>20</y>\r\n"
              "        <width>16</width>\r\n        <height>50</height>\r\n"
              "        <menu_id>next</menu_id>\r\n        <group_id>g</group_id>\r\n"
              "        <hot_spot>spots\\hot.tga</hot_spot>\r\n        <delta>-3</delta>\r\n"
              "        <hz_slider>h</hz_slider>\r\n        <vt_slider>v</vt_slider>\r\n"
              "        <menu_id>scroll</menu_id>\r\n        <UI text>title\r\n"
              "          <font_id>big</font_id>\r\n          <align>centre</align>\r\n"
              "        </UI text>\r\n        <tool_tip_id>tip</tool_tip_id>\r\n"
              "        <locked>true</locked>\r\n      </Parameters>\r\n"
              "      <object_data>data</object_data>\r\n      <object_id>bar_art</object_id>\r\n"
              "      <edit_group_id>set</edit_group_id>\r\n    </UI piece>\r\n  "
              "</lpage>\r\n</layout>\r\n");
}

TEST_F(PiecesTest, ReaderAndWriterAsymmetries) {
    Load(Piece("toggle", "<toggle_group_id>x</toggle_group_id>\n<locked>no</locked>\n") +
         Piece("scrolling", "<menu_id>only</menu_id>\n") +
         Piece("aligned",
               "<UI text>t\n<font_id>f</font_id>\n<align>justified</align>\n</UI text>\n") +
         Piece("fontless", "<UI text>\n<font_id>f</font_id>\n<align>left</align>\n</UI text>\n") +
         Piece("working", "", "<strange>line</strange>\n",
               "<width></width>\n<height>100</height>\n"));
    LPAGE& page = Main();
    EXPECT_EQ(page.FindPiece("toggle").attributes.group_id, "x");
    // A scroll box's menu alone reads back as the first <menu_id>.
    EXPECT_EQ(page.FindPiece("scrolling").attributes.menu_id, "only");
    EXPECT_TRUE(page.FindPiece("toggle").locked);
    EXPECT_EQ(page.FindPiece("aligned").attributes.align, 2);
    EXPECT_FLOAT_EQ(page.FindPiece("working").scale_x, 10.0f / 8.0f);  // the working width stays 10
    const std::string saved = Saved();
    EXPECT_NE(saved.find("<group_id>x</group_id>"), std::string::npos);
    EXPECT_NE(saved.find("<align>right</align>"), std::string::npos);
    EXPECT_EQ(saved.find("<font_id>f</font_id>\r\n          <align>left"), std::string::npos);
    EXPECT_EQ(saved.find("<range>"), std::string::npos);  // an art object has no range
}

TEST_F(PiecesTest, BrokenPiecesAreDroppedAndOddObjectsStaySafe) {
    const std::string flat =
        "<UI piece>flat\n<identifier>i</identifier>\n<Parameters>\n<x>0</x>\n<y>0</y>\n"
        "<width>5</width>\n<height>5</height>\n</Parameters>\n<object_id>flat_art</object_id>\n"
        "</UI piece>\n";
    std::string vast = flat;
    vast.replace(vast.find("flat"), 4, "vast");
    vast.replace(vast.find("flat_art"), 8, "vast_art");
    Load(Piece("bad", "<unknown>1</unknown>\n") + flat + vast);
    EXPECT_FALSE(Main().PieceExists("bad"));
    const UI_PIECE& piece = Main().FindPiece("flat");
    EXPECT_TRUE(std::isinf(piece.scale_x));  // a natural width of 0
    EXPECT_FLOAT_EQ(piece.scale_y, 0.5f);
    EXPECT_EQ(PieceRect(piece).right, INT32_MIN);
    // Edges a whole int32 apart: the width wraps to -1 rather than overflowing.
    EXPECT_EQ(project->FindObject("vast_art").NaturalBounds(), (PageRect{0, 0, -1, 10}));
    EXPECT_NO_THROW(Saved());
}

TEST_F(PiecesTest, PageOperations) {
    Load(Piece("a", "") + Piece("b", ""));
    LPAGE& page = Main();
    EXPECT_EQ(page.width, 800);
    EXPECT_EQ(page.PieceIndex("b"), 1);
    EXPECT_EQ(page.PieceIndex("none"), -1);
    page.MovePiece("a", 5, 6);
    EXPECT_EQ(page.FindPiece("a").x, 5);
    page.FindPiece("a").attributes.text_id = "t";
    page.FindPiece("a").attributes.font_id = "f";
    page.ClearText("a");
    EXPECT_EQ(page.FindPiece("a").attributes, PIECE_ATTRIBUTES{});
    page.RemovePiece("a");
    EXPECT_EQ(page.pieces.size(), 1u);
    page.AddTexturePath("menus");
    page.AddTexturePath("menus");
    page.RemoveTexturePath("menus");
    EXPECT_TRUE(page.texture_paths.empty());
    EXPECT_EQ(page.FindPiece("gone").name, "");
    EXPECT_EQ(ui.boxes.back().text, "Piece not found");
    EXPECT_EQ(project->qlt_file().FindPage("nowhere").name, "");
    EXPECT_EQ(ui.boxes.back().text, "Layout page not found");
}

// The project's own piece lookups answer softly for a page that is not there.
TEST_F(PiecesTest, ProjectPieceLookupsAnswerNullForAMissingPage) {
    Load(Piece("a", "") + Piece("b", ""));
    QLT_FILE& layout = project->qlt_file();
    EXPECT_EQ(layout.FindPiece("Main", "b"), &Main().pieces[1]);
    EXPECT_EQ(layout.PieceIndex("Main", "b"), 1);
    EXPECT_EQ(layout.FindPiece("Nowhere", "b"), nullptr);
    EXPECT_EQ(layout.PieceIndex("Nowhere", "b"), -1);
    EXPECT_TRUE(ui.boxes.empty());
    EXPECT_EQ(layout.FindPiece("Main", "gone"), nullptr);
    EXPECT_EQ(layout.PieceIndex("Main", "gone"), -1);
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, "Piece not found");
}

TEST_F(PiecesTest, DocumentOperationsEndAsTheTableSays) {
    Load(Piece("a", "<UI text>t\n<font_id>big</font_id>\n<align>left</align>\n</UI text>\n"));
    EXPECT_TRUE(project->CreateLayout("Options"));
    EXPECT_EQ(app.GetActiveDocument()->GetTitle(), "Options");
    EXPECT_EQ(project->FindLayout("Options").width, 800);
    EXPECT_FALSE(project->CreateLayout("Options"));
    const size_t snapshots = project->undo_list.size();

    UI_PIECE piece = Main().FindPiece("a");
    piece.name = "b";
    project->AddPiece("Options", piece, false);
    project->MovePiece("Options", "b", 1, 2, false);
    EXPECT_EQ(project->undo_list.size(), snapshots);  // a drag snapshots once, at its end
    project->MovePiece("Options", "b", 3, 4, true);
    EXPECT_EQ(project->undo_list.size(), snapshots + 1);

    project->RescalePiece("Options", "b", 0.01f, 1.0f, false);
    EXPECT_FLOAT_EQ(project->FindLayout("Options").FindPiece("b").scale_x, 4.0f / 8.0f);
    project->RescalePiece("Options", "b", 0.0f, 1.0f, false);
    EXPECT_EQ(ui.boxes.back().text, "Invalid rescale width");

    EXPECT_TRUE(project->ObjectUsedByPiece("bar_art"));
    EXPECT_FALSE(project->ObjectUsedByPiece("flat_art"));
    EXPECT_TRUE(project->FontInUse("big"));

    project->CopyLayout("Main", "Options");
    EXPECT_TRUE(project->FindLayout("Options").PieceExists("a"));
    EXPECT_EQ(project->FindLayout("Options").name, "Options");
    project->DeletePiece("Options", "a", true);
    EXPECT_FALSE(project->FindLayout("Options").PieceExists("a"));
    EXPECT_TRUE(project->IsModified());
}

}  // namespace
