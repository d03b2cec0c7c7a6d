#include "ProjectFixture.h"

namespace {

using ProjectDocumentTest = ProjectFixture;

TEST_F(ProjectDocumentTest, SavesExactlyWhatItRead) {
    Start();
    CQuilletDoc* project = Open("ui.qlt", "<version>2.00</version>\n" + ProjectOfWidth(640));
    ASSERT_NE(project, nullptr);
    EXPECT_FALSE(project->IsModified());
    EXPECT_EQ(project->GetTitle(), "ui.qlt");
    ASSERT_TRUE(project->DoFileSave());
    EXPECT_EQ(ReadFile(dir.File("ui.qlt")), ProjectOfWidth(640));
    EXPECT_EQ(ui.wait_cursor_depth, 0);
}

TEST_F(ProjectDocumentTest, SnapshotsNeitherSaveNorClearTheModifiedFlag) {
    Start();
    CQuilletDoc* project = Open("ui.qlt", kEmptyProjectFile);
    ChangeWidth(*project, 1024);
    EXPECT_TRUE(project->IsModified());
    EXPECT_EQ(ReadFile(dir.File("ui.qlt")), kEmptyProjectFile);
    // A snapshot is the file's text with absolute paths.
    EXPECT_EQ(project->undo_list.front(), ProjectOfWidth(1024));
    ASSERT_TRUE(project->DoFileSave());
    EXPECT_FALSE(project->IsModified());
    EXPECT_EQ(ReadFile(dir.File("ui.qlt")), ProjectOfWidth(1024));
}

TEST_F(ProjectDocumentTest, UnreadableFileLeavesThePresentProjectOpen) {
    Start();
    CQuilletDoc* present = Open("ui.qlt", kEmptyProjectFile);
    ChangeWidth(*present, 1024);
    EXPECT_EQ(Open("bad.qlt", kEmptyProjectFile + "<bogus>\r\n"), nullptr);
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].caption, "Error");
    EXPECT_EQ(ui.boxes[0].text, "Cannot read project file: NOT_A_QLT_FILE at line 8");
    EXPECT_EQ(GetProjectDoc(), present);
    EXPECT_EQ(present->qlt_file().layout_width, 1024);
    EXPECT_TRUE(present->IsModified());

    EXPECT_EQ(Open("cut.qlt", kEmptyProjectFile.substr(0, kEmptyProjectFile.size() - 11) +
                                  "  <lpage>Main\r\n"),
              nullptr);
    EXPECT_EQ(ui.boxes.back().text, "Cannot read project file: UNEXPECTED_END_OF_FILE at line 7");
    EXPECT_EQ(app.OpenDocumentFile(dir.File("missing.qlt")), nullptr);
    EXPECT_EQ(ui.boxes.back().text, "Cannot open " + dir.File("missing.qlt") + ": No such file");
    EXPECT_EQ(GetProjectDoc(), present);
}

TEST_F(ProjectDocumentTest, FailedSaveSaysSoAndStaysModified) {
    Start();
    CQuilletDoc* project = Open("ui.qlt", kEmptyProjectFile);
    ChangeWidth(*project, 1024);
    dir.Write("taken/keep", "");
    EXPECT_FALSE(project->DoSave(dir.File("taken")));
    EXPECT_EQ(ui.boxes.back().caption, "Error");
    EXPECT_EQ(ui.boxes.back().text.rfind("Cannot save " + dir.File("taken") + ": ", 0), 0u);
    EXPECT_TRUE(project->IsModified());
    EXPECT_EQ(project->GetPathName(), dir.File("ui.qlt"));
}

TEST_F(ProjectDocumentTest, SaveAsAsksForANameAndTakesIt) {
    Start();
    CQuilletDoc* project = GetProjectDoc();
    ASSERT_NE(project, nullptr);
    EXPECT_EQ(project->GetTitle(), "QlT1");
    ui.file_names.push_back(dir.File("new.qlt"));
    ASSERT_TRUE(project->DoFileSave());
    EXPECT_EQ(ui.file_requests.back().filter, "QlT Files (*.qlt)");
    EXPECT_EQ(project->GetTitle(), "new.qlt");
    EXPECT_EQ(ReadFile(dir.File("new.qlt")), kEmptyProjectFile);
    EXPECT_EQ(app.RecentFiles().Entries().front(), dir.File("new.qlt"));
}

// --- Undo ------------------------------------------------------------------------------

TEST_F(ProjectDocumentTest, FirstChangeOfANewProjectCannotBeUndone) {
    Start();
    CQuilletDoc* project = GetProjectDoc();
    CountingView tree;
    project->AddView(tree);
    OpenLayoutPage("Main");  // the first change
    EXPECT_EQ(project->undo_list.size(), 1u);
    project->OnEditUndo();
    EXPECT_TRUE(project->LayoutExists("Main"));
    project->RemoveView(tree);
}

class UndoTest : public ProjectFixture {
protected:
    CQuilletDoc* project = nullptr;
    CountingView tree;

    void SetUp() override {
        Start();
        project = Open("ui.qlt", kEmptyProjectFile);
        ASSERT_NE(project, nullptr);
        project->AddView(tree);
    }
    void TearDown() override {
        if (tree.GetDocument() != nullptr) project->RemoveView(tree);
    }
};

TEST_F(UndoTest, OneChangeAfterOpeningUndoesAndRedoes) {
    OpenLayoutPage("Main");
    ChangeWidth(*project, 1024);
    ASSERT_TRUE(project->DoFileSave());
    const int updates = tree.updates;
    project->OnEditUndo();
    EXPECT_EQ(project->qlt_file().layout_width, 800);
    EXPECT_TRUE(project->IsModified());
    EXPECT_GT(tree.updates, updates);
    project->OnEditRedo();
    EXPECT_EQ(project->qlt_file().layout_width, 1024);
    EXPECT_TRUE(project->redo_list.empty());
}

TEST_F(UndoTest, AChangeAfterUndoEmptiesRedo) {
    OpenLayoutPage("Main");
    ChangeWidth(*project, 1024);
    project->OnEditUndo();
    EXPECT_EQ(project->redo_list.size(), 1u);
    ChangeWidth(*project, 640);
    EXPECT_TRUE(project->redo_list.empty());
    project->OnEditRedo();
    EXPECT_EQ(project->qlt_file().layout_width, 640);
}

TEST_F(UndoTest, WorksOnlyWithALayoutPageActive) {
    ChangeWidth(*project, 1024);
    app.SetActiveDocument(project);
    project->OnEditUndo();
    EXPECT_EQ(project->qlt_file().layout_width, 1024);
    // A texture page window is no better.
    app.SetActiveDocument(app.Templates()[1]->OpenDocumentFile(""));
    project->OnEditUndo();
    EXPECT_EQ(project->qlt_file().layout_width, 1024);

    OpenLayoutPage("Main");
    project->RemoveView(tree);  // without the project window there is nothing to act on
    project->OnEditUndo();
    EXPECT_EQ(project->qlt_file().layout_width, 1024);
}

TEST_F(UndoTest, KeepsFourStepsBehindThePresent) {
    OpenLayoutPage("Main");
    for (int width = 801; width <= 810; ++width)
        ChangeWidth(*project, width);
    EXPECT_EQ(project->undo_list.size(), 5u);
    for (int step = 0; step < 10; ++step)
        app.OnEditUndo();
    EXPECT_EQ(project->qlt_file().layout_width, 806);
    for (int step = 0; step < 10; ++step)
        app.OnEditRedo();
    EXPECT_EQ(project->qlt_file().layout_width, 810);
}

TEST_F(UndoTest, CheckpointLockStopsSnapshots) {
    project->checkpoint_lock = 1;
    ChangeWidth(*project, 1024);
    EXPECT_EQ(project->undo_list.size(), 1u);
}

// Every open page shows the restored pieces; a page that the snapshot does not have closes.
TEST_F(UndoTest, OpenLayoutPagesFollowTheRestoredProject) {
    CLayoutPageDoc* other = OpenLayoutPage("Other");
    CountingView other_view;
    other->AddView(other_view);
    CLayoutPageDoc* main = OpenLayoutPage("Main");
    CountingView main_view;
    main->AddView(main_view);
    ChangeWidth(*project, 1024);
    OpenLayoutPage("Late");
    app.SetActiveDocument(main);
    project->OnEditUndo();
    EXPECT_FALSE(project->LayoutExists("Late"));
    EXPECT_EQ(app.Templates()[2]->GetDocuments().size(), 2u);
    EXPECT_GE(main_view.updates, 1);
    EXPECT_GE(other_view.updates, 1);
    main->RemoveView(main_view);
    other->RemoveView(other_view);
}

// --- One project at a time ---------------------------------------------------------------

TEST_F(ProjectDocumentTest, CancelInTheSavePromptKeepsThePresentProject) {
    Start();
    CQuilletDoc* present = Open("ui.qlt", kEmptyProjectFile);
    ChangeWidth(*present, 1024);
    ui.answers.push_back(framework::Answer::Cancel);
    EXPECT_EQ(Open("other.qlt", ProjectOfWidth(640)), nullptr);
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, "Save changes to ui.qlt?");
    EXPECT_EQ(ui.boxes[0].caption, "quillet");
    EXPECT_EQ(ui.boxes[0].buttons, framework::MessageButtons::YesNoCancel);
    EXPECT_EQ(GetProjectDoc(), present);
}

TEST_F(ProjectDocumentTest, NoInTheSavePromptWritesNothing) {
    Start();
    CQuilletDoc* present = Open("ui.qlt", kEmptyProjectFile);
    ChangeWidth(*present, 1024);
    ui.answers.push_back(framework::Answer::No);
    CQuilletDoc* other = Open("other.qlt", ProjectOfWidth(640));
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(GetProjectDoc(), other);
    EXPECT_EQ(app.Templates()[0]->GetDocuments().size(), 1u);
    EXPECT_EQ(ReadFile(dir.File("ui.qlt")), kEmptyProjectFile);
}

TEST_F(ProjectDocumentTest, ThePromptAsksOnceForTheProjectAlone) {
    Start();
    CQuilletDoc* present = Open("ui.qlt", kEmptyProjectFile);
    OpenLayoutPage("Main")->SetModifiedFlag(true);
    ChangeWidth(*present, 1024);
    ui.answers.push_back(framework::Answer::Yes);
    ASSERT_NE(app.OnFileNew(), nullptr);
    EXPECT_EQ(ui.boxes.size(), 1u);
    std::string saved = ProjectOfWidth(1024);
    saved.insert(saved.find("</layout>"), "  <lpage>Main\r\n  </lpage>\r\n");
    EXPECT_EQ(ReadFile(dir.File("ui.qlt")), saved);
    EXPECT_TRUE(app.Templates()[2]->GetDocuments().empty());
}

TEST_F(ProjectDocumentTest, OpeningTheOpenProjectAgainBringsItForward) {
    Start();
    CQuilletDoc* present = Open("ui.qlt", kEmptyProjectFile);
    ChangeWidth(*present, 1024);
    EXPECT_EQ(app.OpenDocumentFile(dir.File("ui.qlt")), present);
    EXPECT_TRUE(ui.boxes.empty());
    EXPECT_EQ(present->qlt_file().layout_width, 1024);
}

}  // namespace
