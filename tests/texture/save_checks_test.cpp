// What a project save asks and holds before it writes: regions that would be cut off a page,
// files someone else changed since the editor read or wrote them, and other writers.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <filesystem>

#include "ChildLockHolder.h"
#include "TexturePageFixture.h"
#include "model/SaveGuard.h"

namespace {

using framework::Answer;

constexpr size_t kSaveAnyway = 0;
constexpr size_t kCancel = 1;

class SaveChecksTest : public TexturePageFixture {
protected:
    // A project whose open page has "inside" on it, "across" over its right edge and
    // "parked" beside it, and has changed.
    CTexturePageDoc* StartWithRegionsOutside() {
        project = StartWithPage(
            {{"inside", {0, 0, 8, 8}}, {"across", {60, 10, 70, 14}}, {"parked", {72, 0, 76, 4}}});
        CTexturePageDoc* page = OpenPage(*project);
        page->CutRegions();
        page->SetRegionPosition("inside", 4, 4);
        return page;
    }

    std::string LastBox() const { return ui.boxes.empty() ? "" : ui.boxes.back().text; }
    std::string LastChoice() const {
        return ui.choice_boxes.empty() ? "" : ui.choice_boxes.back().text;
    }

    CQuilletDoc* project = nullptr;
};

TEST_F(SaveChecksTest, RegionsOutsideAPageAreNamedAndCancelKeepsEverything) {
    CTexturePageDoc* page = StartWithRegionsOutside();
    const std::string page_before = ReadFile(page_path);
    const std::string project_before = ReadFile(dir.File("project.qlt"));

    ui.choices = {kCancel};
    EXPECT_FALSE(project->DoFileSave());
    EXPECT_EQ(LastChoice(), "2 regions lie outside " + page_path +
                                " and will be lost: across, parked. Save anyway?");
    EXPECT_EQ(ui.choice_boxes.back().caption, "Regions Outside the Page");
    EXPECT_EQ(ui.choice_boxes.back().choices, (std::vector<std::string>{"Save anyway", "Cancel"}));
    EXPECT_EQ(ReadFile(page_path), page_before);
    EXPECT_EQ(ReadFile(dir.File("project.qlt")), project_before);
    EXPECT_TRUE(page->IsModified());
    EXPECT_TRUE(project->IsModified());

    ui.choices = {kSaveAnyway};
    EXPECT_TRUE(project->DoFileSave());
    EXPECT_NE(ReadFile(page_path), page_before);
    EXPECT_FALSE(page->IsModified());

    // A page with nothing outside it saves without a word.
    page->SetRegionPosition("across", 40, 40);
    page->DeleteRegion("parked", false);
    ui.choice_boxes.clear();
    EXPECT_TRUE(project->DoFileSave());
    EXPECT_TRUE(ui.choice_boxes.empty()) << LastChoice();
}

TEST_F(SaveChecksTest, APageKeptFromAClosedWindowIsAskedAboutToo) {
    CTexturePageDoc* page = StartWithRegionsOutside();
    page->OnCloseDocument();
    ui.choices = {kCancel};
    EXPECT_FALSE(project->DoFileSave());
    EXPECT_EQ(LastChoice(), "2 regions lie outside " + page_path +
                                " and will be lost: across, parked. Save anyway?");
}

TEST_F(SaveChecksTest, AFileChangedOnDiskIsOverwrittenOnlyOnYes) {
    project = StartWithPage({{"inside", {0, 0, 8, 8}}});
    CTexturePageDoc* page = OpenPage(*project);
    page->CutRegions();
    page->SetRegionPosition("inside", 2, 2);
    ASSERT_TRUE(project->DoFileSave());
    const std::string project_path = dir.File("project.qlt");

    // Someone else writes the project file.
    const std::string theirs = ReadFile(project_path) + "\r\n";
    std::filesystem::remove(project_path);
    dir.Write("project.qlt", theirs);
    ChangeWidth(*project, 640);
    ui.answers = {Answer::No};
    EXPECT_FALSE(project->DoFileSave());
    EXPECT_EQ(LastBox(),
              project_path + " has changed on disk since it was read or last saved. Overwrite it?");
    EXPECT_EQ(ReadFile(project_path), theirs);
    EXPECT_TRUE(project->IsModified());

    ui.answers = {Answer::Yes};
    EXPECT_TRUE(project->DoFileSave());
    EXPECT_NE(ReadFile(project_path), theirs);
    // What this save wrote is what the next one expects.
    ChangeWidth(*project, 800);
    ui.choice_boxes.clear();
    EXPECT_TRUE(project->DoFileSave());
    EXPECT_TRUE(ui.choice_boxes.empty()) << LastChoice();

    // The same for a page.
    const std::string their_page = ReadFile(page_path);
    std::filesystem::remove(page_path);
    dir.Write("page.tga", their_page);
    page->SetRegionPosition("inside", 6, 6);
    ui.answers = {Answer::No};
    EXPECT_FALSE(project->DoFileSave());
    EXPECT_EQ(LastBox(),
              page_path + " has changed on disk since it was read or last saved. Overwrite it?");
    EXPECT_TRUE(page->IsModified());
}

// The files as they were read count too: a change on disk before the first save is noticed.
TEST_F(SaveChecksTest, AFileChangedSinceItWasReadIsNoticedAtTheFirstSave) {
    project = StartWithPage({{"inside", {0, 0, 8, 8}}});
    CTexturePageDoc* page = OpenPage(*project);
    page->CutRegions();
    const std::string project_path = dir.File("project.qlt");
    const std::string theirs = ReadFile(project_path) + "\r\n";
    std::filesystem::remove(project_path);
    dir.Write("project.qlt", theirs);
    const std::string their_page = ReadFile(page_path) + "x";
    std::filesystem::remove(page_path);
    dir.Write("page.tga", their_page);

    page->SetRegionPosition("inside", 2, 2);
    ui.answers = {Answer::No};
    EXPECT_FALSE(project->DoFileSave());
    EXPECT_EQ(ReadFile(project_path), theirs);
    EXPECT_EQ(ReadFile(page_path), their_page);
    ASSERT_FALSE(ui.boxes.empty());
    EXPECT_NE(ui.boxes.back().text.find("has changed on disk"), std::string::npos);
}

TEST_F(SaveChecksTest, ASaveWaitsForAnotherWriterThenGivesUp) {
    project = StartWithPage({{"inside", {0, 0, 8, 8}}});
    ChangeWidth(*project, 640);
    const std::string project_path = dir.File("project.qlt");
    const std::string before = ReadFile(project_path);
    const pid_t holder = ChildHolding(project_path, std::chrono::seconds(60));

    EXPECT_FALSE(project->DoFileSave());
    ::kill(holder, SIGKILL);
    ::waitpid(holder, nullptr, 0);
    EXPECT_EQ(LastBox(), project_path + " is being changed by another process");
    EXPECT_EQ(ReadFile(project_path), before);
    EXPECT_TRUE(project->IsModified());
    EXPECT_TRUE(project->DoFileSave()) << "a killed holder lets go";
}

}  // namespace
