#include "model/piece_files.h"
#include "ProjectFixture.h"

namespace {

std::vector<std::string> Names(const std::vector<PIECE_TYPE>& list) {
    std::vector<std::string> names;
    for (const PIECE_TYPE& entry : list)
        names.push_back(entry.name);
    return names;
}

using Names_ = std::vector<std::string>;

class PieceFilesTest : public ProjectFixture {
protected:
    QLT_FILE qlt_file;
    void SetUp() override { Start(); }
    bool LoadTypes(const std::string& text) {
        return LoadPieceTypesFile(qlt_file, dir.Write("types.txt", text));
    }
};

TEST_F(PieceFilesTest, TypesAreSortedAfterNeighbouringDuplicatesGo) {
    ASSERT_TRUE(
        LoadTypes("TYPE,name,arguments\r\nart,zeta,default\r\nart,alpha,x\r\nart,alpha,y\r\n"
                  "push_btn,ok,default\r\nart,zeta,again\r\nslider,bar,default\r\n"
                  "Type,heading,again\r\n"));
    EXPECT_EQ(Names(qlt_file.art_types), (Names_{"alpha", "zeta", "zeta"}));
    EXPECT_EQ(qlt_file.art_types[0].arguments, "x");
    EXPECT_EQ(Names(qlt_file.push_button_types), Names_{"ok"});
    EXPECT_EQ(Names(qlt_file.slider_types), Names_{"bar"});
    EXPECT_TRUE(ui.boxes.empty());
    EXPECT_EQ(qlt_file.piece_types_fname, dir.File("types.txt"));
    EXPECT_EQ(PieceTypeList(qlt_file, "UI_H_Slider"), &qlt_file.slider_types);
    EXPECT_EQ(PieceTypeList(qlt_file, "Art"), nullptr);
    EXPECT_EQ(ui.boxes.back().text, "Unknown object type");
}

TEST_F(PieceFilesTest, FieldQuirksOfTheReader) {
    // Two line feeds at the end give a last entry with an empty first column.
    ASSERT_TRUE(LoadTypes("art,a,default\n\nbutton,b,default\n\n"));
    ASSERT_EQ(ui.boxes.size(), 2u);
    EXPECT_EQ(ui.boxes[0].text, "Unrecognised piece type ( button) for piece b");
    EXPECT_EQ(ui.boxes[0].caption, "quillet");
    EXPECT_EQ(ui.boxes[1].text, "Unrecognised piece type ( ) for piece ");
    // A field stops at 256 characters; the rest of the line is the next field.
    ASSERT_TRUE(LoadTypes("art," + std::string(256, 'n') + "tail,default\n"));
    EXPECT_EQ(qlt_file.art_types.at(0).name, std::string(256, 'n'));
    EXPECT_FALSE(LoadPieceTypesFile(qlt_file, dir.File("missing.txt")));
    EXPECT_EQ(qlt_file.art_types.size(), 1u);  // a file that does not read changes nothing
}

TEST_F(PieceFilesTest, AppendedTypesAreWrittenLiterallyAndReadBack) {
    ASSERT_TRUE(LoadTypes("type,name,arguments\r\nart,a,default"));
    EXPECT_TRUE(AppendPieceType(qlt_file, "push_button", "100%_done"));
    EXPECT_EQ(ReadFile(dir.File("types.txt")),
              "type,name,arguments\r\nart,a,default\r\npush_btn,100%_done,default\r\n");
    EXPECT_EQ(Names(qlt_file.push_button_types), Names_{"100%_done"});
    ASSERT_TRUE(ReloadPieceTypes(qlt_file));
    EXPECT_EQ(Names(qlt_file.push_button_types), Names_{"100%_done"});
    EXPECT_EQ(Names(qlt_file.art_types), Names_{"a"});
    EXPECT_TRUE(ui.boxes.empty());
    QLT_FILE unnamed;
    EXPECT_FALSE(AppendPieceType(unnamed, "art", "x"));
}

TEST_F(PieceFilesTest, TextsKeepDuplicatesAndEmptyLines) {
    ASSERT_TRUE(
        LoadPieceTextsFile(qlt_file, dir.Write("texts.txt", "zeta\r\nalpha\r\n\r\nalpha\r\n")));
    EXPECT_EQ(qlt_file.piece_texts, (Names_{"", "alpha", "alpha", "zeta"}));
}

TEST_F(PieceFilesTest, ProjectsFlagTheTypesTheirPiecesUse) {
    dir.Write("types.txt", "art,shared,default\nslider,shared,default\nart,spare,default\n");
    CQuilletDoc* project =
        Open("ui.qlt",
             "<layout>\n<layout_width>800</layout_width>\n<layout_height>600</layout_height>\n"
             "<piece_types_fname>types.txt</piece_types_fname>\n<piece_texts_fname></"
             "piece_texts_fname>\n"
             "<lpage>Main\n<UI piece>p\n<identifier>shared</identifier>\n<Parameters>\n<x>0</x>\n"
             "<y>0</y>\n<width>64</width>\n<height>64</height>\n</Parameters>\n"
             "<object_id>empty_art</object_id>\n</UI piece>\n</lpage>\n</layout>\n");
    ASSERT_NE(project, nullptr);
    const QLT_FILE& loaded = project->qlt_file();
    EXPECT_TRUE(loaded.art_types[0].in_use);
    EXPECT_FALSE(loaded.slider_types[0].in_use);  // only the first list with the name
    EXPECT_FALSE(loaded.art_types[1].in_use);

    EXPECT_FALSE(project->SetPieceTextsFile(dir.File("none.txt")));
    EXPECT_EQ(ui.boxes.back().text, "Error in reading piece texts file: " + dir.File("none.txt"));
    EXPECT_EQ(ui.boxes.back().caption, "File error");
    const size_t before = ui.boxes.size();
    EXPECT_FALSE(project->ReloadPieceFiles());  // no texts file: one box, and types still read
    EXPECT_EQ(ui.boxes.size(), before + 1);
    EXPECT_EQ(ui.boxes.back().text, "Invalid piece texts description file");
}

}  // namespace
