// A project save puts its pages and its project file in place together, or none of them.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>

#include "TexturePageFixture.h"
#include "core_file_transaction.h"

namespace {

// Every file of a folder with its bytes.
std::map<std::string, std::string> FilesIn(const std::filesystem::path& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        files[entry.path().filename().string()] = ReadFile(entry.path().string());
    return files;
}

class ProjectSaveTest : public TexturePageFixture {
protected:
    // Two pages with one region each, both moved: the first page's window closed (the project
    // keeps its output), the second's open.
    CQuilletDoc* StartWithTwoChangedPages() {
        first = WritePage("a.tga", 32, 32);
        second = WritePage("b.tga", 32, 32, Core::PIXEL_FORMAT_8888, 0x80);
        Start();
        CQuilletDoc* project =
            Open("project.qlt",
                 ProjectText({{"a.tga", {{"a", {0, 0, 8, 8}}}}, {"b.tga", {{"b", {0, 0, 8, 8}}}}}));
        for (const std::string& path : {first, second}) {
            CTexturePageDoc* page = project->OpenTexture(path);
            page->CutRegions();
            page->SetRegionPosition(path == first ? "a" : "b", 16, 16);
            if (path == first) page->OnCloseDocument();
        }
        return project;
    }

    std::string first;
    std::string second;
};

TEST_F(ProjectSaveTest, AFailureAtAnyStepOfASaveLeavesEveryFileAndTheEditorAsTheyWere) {
    CQuilletDoc* project = StartWithTwoChangedPages();
    const std::string project_path = project->GetPathName();
    const auto before = FilesIn(dir.Path());
    // Each page and then the project file are written and flushed, then renamed in that order.
    const std::vector<std::string> failing = {
        first, first, second, second, project_path, project_path, first, second, project_path};
    for (size_t step = 1; step <= failing.size(); ++step) {
        ui.boxes.clear();
        Core::Detail::fail_file_step(static_cast<int>(step));
        EXPECT_FALSE(project->DoFileSave()) << "step " << step;
        Core::Detail::fail_file_step(0);
        EXPECT_EQ(FilesIn(dir.Path()), before) << "step " << step;
        ASSERT_EQ(ui.boxes.size(), 1u) << "step " << step;
        EXPECT_EQ(ui.boxes[0].text,
                  "Cannot save " + failing[step - 1] + ": " + std::strerror(ENOSPC));
        EXPECT_TRUE(project->IsModified());
        EXPECT_TRUE(app.Templates()[1]->GetDocuments().front()->IsModified());
    }

    // The closed page's changes were kept through every failure.
    ui.boxes.clear();
    ASSERT_TRUE(project->DoFileSave());
    EXPECT_TRUE(ui.boxes.empty());
    EXPECT_FALSE(project->IsModified());
    EXPECT_EQ(LoadPage(first)->get_pixel(16, 16), SourceColour(0, 0));
    EXPECT_EQ(LoadPage(second)->get_pixel(16, 16), SourceColour(0, 0, 0x80));
    EXPECT_NE(ReadFile(project_path), before.at("project.qlt"));
    EXPECT_EQ(FilesIn(dir.Path()).size(), before.size()) << "no temporary is left";
}

TEST_F(ProjectSaveTest, AReadOnlyPageStopsTheSaveBeforeAnythingIsWritten) {
    CQuilletDoc* project = StartWithTwoChangedPages();
    std::filesystem::permissions(second, std::filesystem::perms(0444));
    const auto before = FilesIn(dir.Path());
    ui.boxes.clear();
    EXPECT_FALSE(project->DoFileSave());
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, second + " is read-only");
    EXPECT_EQ(FilesIn(dir.Path()), before);
    EXPECT_TRUE(project->IsModified());
}

// Save As writes the pages where they are, since the new project refers to them there: pages
// without changes are not written, so a read-only page folder does not stop it.
TEST_F(ProjectSaveTest, SaveAsElsewhereWritesOnlyTheChangedPagesInPlace) {
    CQuilletDoc* project = StartWithPage({{"a", {0, 0, 8, 8}}});
    std::filesystem::permissions(page_path, std::filesystem::perms(0444));
    const std::string page_bytes = ReadFile(page_path);
    TempDir elsewhere;
    ASSERT_TRUE(project->DoSave(elsewhere.File("copy.qlt")));
    EXPECT_EQ(ReadFile(page_path), page_bytes);
    EXPECT_NE(ReadFile(elsewhere.File("copy.qlt")).find("a"), std::string::npos);

    CTexturePageDoc* page = OpenPage(*project);
    page->CutRegions();
    page->SetRegionPosition("a", 4, 4);
    ui.boxes.clear();
    EXPECT_FALSE(project->DoSave(elsewhere.File("other.qlt")));
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, page_path + " is read-only");
    EXPECT_FALSE(std::filesystem::exists(elsewhere.File("other.qlt")));
    EXPECT_EQ(project->GetPathName(), elsewhere.File("copy.qlt"));
}

}  // namespace
