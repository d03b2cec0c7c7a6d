#include "ProjectFixture.h"
#include "core_io.h"

namespace {

using ApplicationTest = ProjectFixture;

void SetRecent(framework::ProfileStore& profile, std::vector<std::string> entries) {
    for (size_t index = 0; index < entries.size(); ++index)
        profile.WriteString("Recent File List", "File" + std::to_string(index + 1), entries[index]);
}

TEST_F(ApplicationTest, ReopenScanStopsOnlyAtAProjectOrAnEmptyEntry) {
    SetRecent(profile, {"/p/page.tga", "/p/UI.QLT", "/p/ui.qlt", "/p/later.qlt"});
    EXPECT_EQ(app.FindFileToReopen(), "/p/ui.qlt");
    SetRecent(profile, {"/p/page.tga", "", "/p/ui.qlt"});
    EXPECT_EQ(app.FindFileToReopen(), "");
}

TEST_F(ApplicationTest, OnlyProjectFilesEnterTheRecentList) {
    for (const char* name : {"/p/page.tga", "/p/UI.QLT", "", "/p/x.qlt.bak", "qlt"})
        app.AddToRecentFileList(name);
    EXPECT_TRUE(app.RecentFiles().Entries().empty());
    app.AddToRecentFileList("/p/ui.qlt");
    EXPECT_EQ(app.RecentFiles().Entries(), std::vector<std::string>{"/p/ui.qlt"});
}

TEST_F(ApplicationTest, RecentProjectStandsOverTheCommandLine) {
    const std::string recent = dir.Write("recent.qlt", ProjectOfWidth(640));
    const std::string named = dir.Write("named.qlt", ProjectOfWidth(1024));
    SetRecent(profile, {recent});
    Start({named});
    ASSERT_NE(GetProjectDoc(), nullptr);
    EXPECT_EQ(GetProjectDoc()->GetPathName(), recent);
    EXPECT_EQ(GetProjectDoc()->qlt_file().layout_width, 640);
}

TEST_F(ApplicationTest, CommandLineFileOpensWithoutARecentProject) {
    const std::string named = dir.Write("named.qlt", ProjectOfWidth(1024));
    Start({"-psn", named});
    ASSERT_NE(GetProjectDoc(), nullptr);
    EXPECT_EQ(GetProjectDoc()->qlt_file().layout_width, 1024);
    EXPECT_EQ(app.RecentFiles().Entries(), std::vector<std::string>{named});
}

TEST_F(ApplicationTest, NothingToOpenStartsANewProject) {
    Start();
    ASSERT_NE(GetProjectDoc(), nullptr);
    EXPECT_EQ(GetProjectDoc()->GetTitle(), "QlT1");
    EXPECT_TRUE(GetProjectDoc()->undo_list.empty());
}

TEST_F(ApplicationTest, ARecentProjectThatIsGoneLeavesNoProjectAndSaysSo) {
    SetRecent(profile, {dir.File("gone.qlt")});
    Start();
    EXPECT_EQ(GetProjectDoc(), nullptr);
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].caption, "Error");
}

TEST_F(ApplicationTest, TheRecentListIsStoredAndTheCoreServicesStopAtExit) {
    Start();
    ASSERT_NE(Core::IOManager::get(), nullptr);
    Open("a.qlt", kEmptyProjectFile);
    Open("b.qlt", kEmptyProjectFile);
    app.ExitInstance();
    EXPECT_EQ(profile.GetString("Recent File List", "File1", ""), dir.File("b.qlt"));
    EXPECT_EQ(profile.GetString("Recent File List", "File2", ""), dir.File("a.qlt"));
    EXPECT_EQ(Core::IOManager::get(), nullptr);
}

TEST_F(ApplicationTest, StatusTextReachesThePaneOnceThereIsOne) {
    struct Pane : framework::StatusPane {
        std::string text;
        void SetText(const std::string& value) override { text = value; }
    } pane;
    Start();
    GetProjectDoc()->SetStatusText("before");
    app.SetStatusPane(&pane);
    GetProjectDoc()->SetStatusText("Fit ratio = 0.50");
    EXPECT_EQ(pane.text, "Fit ratio = 0.50");
}

}  // namespace
