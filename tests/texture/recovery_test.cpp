// The recovery copy of unsaved work: kept while there is any, offered when its editor is gone.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <filesystem>

#include "ChildLockHolder.h"
#include "TexturePageFixture.h"
#include "shell/ProjectRecovery.h"

namespace {

namespace fs = std::filesystem;

constexpr size_t kRecover = 0;
constexpr size_t kDiscard = 1;
constexpr size_t kLater = 2;

std::string CopyBytes(CQuilletDoc& project) {
    std::string bytes;
    EXPECT_TRUE(EncodeRecoveryCopy(CaptureProject(project), bytes));
    return bytes;
}

class RecoveryTest : public TexturePageFixture {
protected:
    std::string Folder() const { return dir.File("recovery"); }

    std::vector<std::string> Copies() const {
        std::vector<std::string> files;
        for (const auto& entry : fs::directory_iterator(Folder()))
            if (entry.path().extension() == ProjectRecovery::kExtension)
                files.push_back(entry.path().string());
        return files;
    }

    // Two pages with a region each: the first moved and its window closed, the second moved,
    // given a region parked beside it, and left open; the project's page width changed too.
    CQuilletDoc* StartWithUnsavedWork() {
        const std::string first = WritePage("a.tga", 32, 32);
        const std::string second = WritePage("b.tga", 32, 32, Core::PIXEL_FORMAT_565, 0x80);
        const std::string parked = WritePage("parked.tga", 4, 4, Core::PIXEL_FORMAT_8888, 0x20);
        Start();
        CQuilletDoc* project =
            Open("project.qlt",
                 ProjectText({{"a.tga", {{"a", {0, 0, 8, 8}}}}, {"b.tga", {{"b", {0, 0, 8, 8}}}}}));
        CTexturePageDoc* page = project->OpenTexture(first);
        page->CutRegions();
        page->SetRegionPosition("a", 16, 16);
        page->OnCloseDocument();
        page = project->OpenTexture(second);
        page->CutRegions();
        page->SetRegionPosition("b", 20, 4);
        page->ImportRegion(parked, "parked");
        ChangeWidth(*project, 1024);
        return project;
    }

    // What an editor that is killed leaves: its copy on disk, its lock let go.
    void KillEditor(std::unique_ptr<ProjectRecovery>& recovery) {
        recovery->Update();
        recovery->WaitForDisk();
        recovery.reset();
        app.CloseAllDocuments();
    }
};

TEST_F(RecoveryTest, ACopyLeftByAGoneEditorBringsBackEveryUnsavedChange) {
    auto gone = std::make_unique<ProjectRecovery>(app, Folder());
    CQuilletDoc* project = StartWithUnsavedWork();
    const std::string path = project->GetPathName();
    const std::string unsaved = CopyBytes(*project);
    KillEditor(gone);
    ASSERT_EQ(Copies().size(), 1u);
    EXPECT_EQ(ReadFile(Copies()[0]), unsaved);

    ProjectRecovery recovery(app, Folder());
    ASSERT_TRUE(recovery.OfferRecovery());
    ASSERT_EQ(ui.choice_boxes.size(), 1u);
    EXPECT_EQ(ui.choice_boxes[0].caption, "Recover Unsaved Changes");
    EXPECT_EQ(ui.choice_boxes[0].text.rfind("Changes to " + path + " were not saved", 0), 0u)
        << ui.choice_boxes[0].text;
    project = GetProjectDoc();
    ASSERT_NE(project, nullptr);
    EXPECT_EQ(project->GetPathName(), path);
    EXPECT_TRUE(project->IsModified());
    EXPECT_EQ(CopyBytes(*project), unsaved) << "text, pages, region pictures and stamps";
    EXPECT_EQ(Copies(), std::vector<std::string>{recovery.OwnFile()}) << "the copy is ours now";

    // The files on disk were never touched; a save writes the recovered work.
    EXPECT_EQ(LoadPage(dir.File("a.tga"))->get_pixel(16, 16), SourceColour(16, 16));
    const Core::Colour b_corner = LoadPage(dir.File("b.tga"))->get_pixel(1, 1);  // as 565 has it
    ui.choices = {0};  // the parked region is lost: Save anyway
    ASSERT_TRUE(project->DoFileSave());
    EXPECT_EQ(LoadPage(dir.File("a.tga"))->get_pixel(16, 16), SourceColour(0, 0));
    EXPECT_EQ(LoadPage(dir.File("b.tga"))->get_pixel(21, 5), b_corner);
    EXPECT_NE(ReadFile(path).find("<layout_width>1024</layout_width>"), std::string::npos);
    recovery.Update();
    recovery.WaitForDisk();
    EXPECT_TRUE(Copies().empty()) << "nothing is left unsaved";
}

TEST_F(RecoveryTest, LaterKeepsTheCopyForTheNextStartAndDiscardRemovesIt) {
    auto gone = std::make_unique<ProjectRecovery>(app, Folder());
    StartWithUnsavedWork();
    KillEditor(gone);

    ui.choices = {kLater};
    EXPECT_FALSE(ProjectRecovery(app, Folder()).OfferRecovery());
    EXPECT_EQ(GetProjectDoc(), nullptr);
    ASSERT_EQ(Copies().size(), 1u);

    ui.choices = {kDiscard};
    EXPECT_FALSE(ProjectRecovery(app, Folder()).OfferRecovery());
    EXPECT_TRUE(Copies().empty());
    EXPECT_EQ(ui.choice_boxes.size(), 2u);
    EXPECT_FALSE(ProjectRecovery(app, Folder()).OfferRecovery());
    EXPECT_EQ(ui.choice_boxes.size(), 2u);
}

TEST_F(RecoveryTest, TheCopyFollowsUnsavedWorkAndGoesWithASaveOrAClose) {
    ProjectRecovery recovery(app, Folder());
    const auto write = [&recovery] {
        recovery.Update();
        recovery.WaitForDisk();
    };
    CQuilletDoc* project = StartWithPage({{"a", {0, 0, 8, 8}}});
    write();
    EXPECT_TRUE(Copies().empty()) << "an unchanged project has nothing to keep";

    OpenPage(*project)->SetRegionPosition("a", 8, 8);
    write();
    ASSERT_EQ(Copies().size(), 1u);
    std::string reason;
    std::optional<RecoveryCopy> copy = ReadRecoveryCopy(recovery.OwnFile(), reason);
    ASSERT_TRUE(copy) << reason;
    ASSERT_EQ(copy->pages.size(), 1u) << "the changed page alone";
    EXPECT_EQ(copy->pages[0].output.path, page_path);

    ASSERT_TRUE(project->DoFileSave());
    write();
    EXPECT_TRUE(Copies().empty());

    ChangeWidth(*project, 640);
    write();
    EXPECT_EQ(Copies().size(), 1u);
    ui.answers = {framework::Answer::No};  // closed without saving: the person chose
    EXPECT_TRUE(CloseCurrentProject());
    recovery.Finish();
    EXPECT_TRUE(Copies().empty());
}

TEST_F(RecoveryTest, WritesComeAShortWhileAfterAChangeAndAtMostEveryInterval) {
    ProjectRecovery recovery(app, Folder());
    const auto now = ProjectRecovery::Clock::now();
    EXPECT_EQ(recovery.DelayBeforeUpdate(now), ProjectRecovery::kSettle);
    Start();
    ChangeWidth(*GetProjectDoc(), 640);
    recovery.Update();
    const auto written = ProjectRecovery::Clock::now();
    EXPECT_GT(recovery.DelayBeforeUpdate(written), ProjectRecovery::kInterval / 2);
    EXPECT_EQ(recovery.DelayBeforeUpdate(written + ProjectRecovery::kInterval),
              ProjectRecovery::kSettle);
}

TEST_F(RecoveryTest, CopiesOfRunningEditorsAndDamagedCopiesAreNotOffered) {
    auto gone = std::make_unique<ProjectRecovery>(app, Folder());
    StartWithUnsavedWork();
    KillEditor(gone);
    const std::string copy = Copies().at(0);
    const std::string damaged = (fs::path(Folder()) / "damaged.qrc").string();
    const std::string bytes = ReadFile(copy);
    std::ofstream(damaged, std::ios::binary) << bytes.substr(0, bytes.size() - 3);
    fs::last_write_time(damaged, fs::last_write_time(copy) + std::chrono::hours(1));

    // Another editor runs and holds the lock of `copy`.
    const pid_t holder = ChildHolding(copy, std::chrono::seconds(30));
    EXPECT_FALSE(ProjectRecovery(app, Folder()).OfferRecovery());
    EXPECT_TRUE(ui.choice_boxes.empty());
    kill(holder, SIGKILL);
    waitpid(holder, nullptr, 0);

    ui.choices = {kLater};
    EXPECT_FALSE(ProjectRecovery(app, Folder()).OfferRecovery());
    EXPECT_EQ(ui.choice_boxes.size(), 1u) << "the whole copy, once its editor is gone";
    EXPECT_TRUE(fs::exists(damaged)) << "a damaged copy is left for the person to look at";
}

}  // namespace
