#include <gtest/gtest.h>

#include "TempDir.h"
#include "core.h"
#include "model/ProjectFile.h"
#include "model/qlt_errors.h"
#include "model/qlt_paths.h"

namespace {

const std::string kEmptyProject =
    "<version>1.01</version>\r\n"
    "<layout>\r\n"
    "  <layout_width>800</layout_width>\r\n"
    "  <layout_height>600</layout_height>\r\n"
    "  <piece_types_fname></piece_types_fname>\r\n"
    "  <piece_texts_fname></piece_texts_fname>\r\n"
    "</layout>\r\n";

ProjectRecords Read(const std::string& bytes, const std::string& path = {}) {
    SetProjectBaseDir(path);
    framework::Archive archive = framework::Archive::ForLoading(bytes, path);
    ProjectRecords records;
    ReadProject(archive, records);
    return records;
}

std::string Write(const ProjectRecords& records, const std::string& path = {}) {
    SetProjectBaseDir(path);
    framework::Archive archive = framework::Archive::ForStoring(path);
    WriteProject(archive, records);
    return archive.TakeBytes();
}

std::string Layout(const std::string& body) {
    return "<layout>\n" + body + "</layout>\n";
}

const std::string kHeader =
    "<layout_width>1024</layout_width>\n<layout_height>768</layout_height>\n"
    "<piece_types_fname></piece_types_fname>\n<piece_texts_fname></piece_texts_fname>\n";

TEST(ProjectFileTest, EmptyProjectIsExactlySevenLines) {
    EXPECT_EQ(Write(ProjectRecords{}), kEmptyProject);
    EXPECT_EQ(Write(Read("")), kEmptyProject);
    EXPECT_EQ(Write(Read(kEmptyProject)), kEmptyProject);
}

TEST(ProjectFileTest, VersionIsReadAndIgnored) {
    const ProjectRecords records = Read("<version>2.50</version>\n" + Layout(kHeader));
    EXPECT_EQ(records.qlt_file.layout_width, 1024);
    EXPECT_EQ(Write(records).substr(0, 25), "<version>1.01</version>\r\n");
    EXPECT_EQ(Read("<version>banana</version>\n").qlt_file.layout_width, 800);
}

TEST(ProjectFileTest, LayoutSectionRoundTrips) {
    const std::string file = Layout(kHeader +
                                    "  <texture_path>menus</texture_path>\n"
                                    "<texture_path>icons</texture_path>\n"
                                    "<fmv_path>movies</fmv_path>\n\n"
                                    "<lpage>Main\n<texture_path>x</texture_path>\n</lpage>\n");
    const ProjectRecords records = Read(file);
    EXPECT_EQ(records.qlt_file.layout_height, 768);
    EXPECT_EQ(records.qlt_file.common_texture_paths, (std::vector<std::string>{"menus", "icons"}));
    EXPECT_EQ(records.qlt_file.common_fmv_paths, std::vector<std::string>{"movies"});
    EXPECT_EQ(Write(records),
              "<version>1.01</version>\r\n<layout>\r\n"
              "  <layout_width>1024</layout_width>\r\n  <layout_height>768</layout_height>\r\n"
              "  <piece_types_fname></piece_types_fname>\r\n"
              "  <piece_texts_fname></piece_texts_fname>\r\n"
              "  <texture_path>menus</texture_path>\r\n  <texture_path>icons</texture_path>\r\n"
              "  <fmv_path>movies</fmv_path>\r\n"
              "  <lpage>Main\r\n    <texture_path>x</texture_path>\r\n  </lpage>\r\n</layout>\r\n");
}

TEST(ProjectFileTest, TwoLayoutSectionsAddUp) {
    const std::string section = Layout(kHeader + "<texture_path>menus</texture_path>\n");
    EXPECT_EQ(Read(section + section).qlt_file.common_texture_paths.size(), 2u);
}

TEST(ProjectFileTest, NumbersKeepTheirValueWhenEmptyAndThrowWhenNotNumbers) {
    const std::string empty_width = Layout(
        "<layout_width></layout_width>\n<layout_height>768</layout_height>\n"
        "<piece_types_fname></piece_types_fname>\n<piece_texts_fname></piece_texts_fname>\n");
    EXPECT_EQ(Read(empty_width).qlt_file.layout_width, 800);
    const std::string bad_width = Layout("<layout_width>abc</layout_width>\n");
    EXPECT_THROW(Read(bad_width), BAD_TAG);
}

TEST(ProjectFileTest, UnknownTopLevelLinesAreNotAProject) {
    EXPECT_THROW(Read("hello\n"), NOT_A_QLT_FILE);
    EXPECT_THROW(Read("  <texture>x.tga\n</texture>\n"), NOT_A_QLT_FILE);
    // Blank lines at the top level are skipped.
    EXPECT_NO_THROW(Read(" \t\n\n" + kEmptyProject));
}

TEST(ProjectFileTest, WrongLineInTheSectionDropsItAndTheRestIsTopLevel) {
    // The section is dropped at its first line; the next line is read as a top-level line.
    EXPECT_THROW(Read("<layout>\n<width>1</width>\n<layout_height>2</layout_height>\n"),
                 NOT_A_QLT_FILE);
    const ProjectRecords records = Read("<layout>\n<width>1</width>\n");
    EXPECT_EQ(records.qlt_file.layout_width, 800);
}

TEST(ProjectFileTest, RecordsBeforeTheLayoutSectionAreRead) {
    const std::string file =
        "<texture>pages\\ui.tga\n  <region>a\n<left>0</left>\n<top>0</top>\n<right>1</right>\n"
        "<bottom>1</bottom>\n  </region>\n</texture>\n"
        "<font>f.bgf\n</font>\n<fmv>m.mpg\n</fmv>\n" +
        Layout(kHeader);
    EXPECT_EQ(Read(file).qlt_file.layout_width, 1024);
}

TEST(ProjectFileTest, FileEndingInsideARecordIsReported) {
    EXPECT_THROW(Read("<texture>ui.tga\n<region>a\n"), UNEXPECTED_END_OF_FILE);
    EXPECT_THROW(Read(Layout(kHeader).substr(0, Layout(kHeader).size() - 10)),
                 UNEXPECTED_END_OF_FILE);
    EXPECT_THROW(Read(Layout(kHeader + "<lpage>Main\n\n")), UNEXPECTED_END_OF_FILE);
    EXPECT_THROW(
        Read(Layout(kHeader + "<lpage>Main\n<UI piece>p\n<identifier>i</identifier>\n"
                              "<Parameters>\n<x>1</x>\n<y>1</y>\n<width>1</width>\n"
                              "<height>1</height>\n</Parameters>\n<object_id>o</object_id>\n")),
        UNEXPECTED_END_OF_FILE);
    // A section header with nothing behind it reads like a wrong line: no wait, no error.
    EXPECT_EQ(Read("<layout>\n").qlt_file.layout_width, 800);
}

// "RECORD at line N" for the reader record that stops the file, or "reads".
std::string WhereReadingStops(const std::string& bytes) {
    framework::Archive archive = framework::Archive::ForLoading(bytes, {});
    ProjectRecords records;
    try {
        ReadProject(archive, records);
    } catch (const QLT_READ_ERROR&) {
        return std::string(ReadErrorName(std::current_exception())) + " at line " +
               std::to_string(archive.LineNumber());
    }
    return "reads";
}

TEST(ProjectFileTest, AnythingButARegionInsideATexturePageStopsTheFile) {
    const std::string region =
        "<region>a\n<left>0</left>\n<top>0</top>\n<right>1</right>\n<bottom>1</bottom>\n"
        "</region>\n";
    const std::string next_page = "<texture>b.tga\n" + region + "</texture>\n";
    // A stray line used to be read as a region, which took the lines behind it along.
    EXPECT_EQ(
        WhereReadingStops("<texture>a.tga\n" + region + "button_down\n</texture>\n" + next_page),
        "NOT_A_TREGION at line 8");
    EXPECT_EQ(WhereReadingStops("<texture>a.tga\n\n</texture>\n"), "NOT_A_TREGION at line 2");
    EXPECT_EQ(WhereReadingStops("<texture>a.tga\n" + region + "<path>late</path>\n</texture>\n"),
              "NOT_A_TREGION at line 8");
    // A region that does not read stops the file with its own record.
    EXPECT_EQ(WhereReadingStops("<texture>a.tga\n<region>a\n<left>0</left>\n<right>1</right>\n"),
              "NOT_A_TREGION at line 4");
    EXPECT_EQ(
        WhereReadingStops("<texture>a.tga\n<region>a\n<left>x</left>\n</texture>\n" + next_page),
        "BAD_TAG at line 3");
    EXPECT_EQ(WhereReadingStops("<texture>a.tga\n" + region.substr(0, region.size() - 10) +
                                "</texture>\n" + next_page),
              "BAD_TAG at line 7");
    // A file that ends inside the page is still a truncated file, wherever it ends.
    for (const std::string& cut :
         {std::string("<texture>a.tga\n"), std::string("<texture>a.tga\n<path>f</path>\n"),
          "<texture>a.tga\n" + region.substr(0, 25), "<texture>a.tga\n" + region})
        EXPECT_EQ(WhereReadingStops(cut).substr(0, 22), "UNEXPECTED_END_OF_FILE") << cut;
}

TEST(ProjectFileTest, PieceFilesAreRelativeInTheFileAndForgottenWhenMissing) {
    Core::init();  // piece files are read through the IO manager
    TempDir dir;
    const std::string project = dir.File("proj/ui.qlt");
    dir.Write("proj/data/types.txt", "");
    const std::string file = Layout(
        "<layout_width>800</layout_width>\n<layout_height>600</layout_height>\n"
        "<piece_types_fname>data\\types.txt</piece_types_fname>\n"
        "<piece_texts_fname>data\\texts.txt</piece_texts_fname>\n");
    const ProjectRecords records = Read(file, project);
    EXPECT_EQ(records.qlt_file.piece_types_fname, dir.File("proj/data/types.txt"));
    EXPECT_EQ(records.qlt_file.piece_texts_fname, "");
    EXPECT_NE(Write(records, project).find("<piece_types_fname>data\\types.txt<"),
              std::string::npos);
    // Saved elsewhere, the path is written against the new base.
    EXPECT_NE(Write(records, dir.File("other/ui.qlt")).find("..\\..\\proj\\data\\types.txt"),
              std::string::npos);
}

}  // namespace
