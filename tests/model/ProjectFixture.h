// A whole application without windows: the scripted person, settings in memory, a folder
// of its own.
#pragma once

#include <gtest/gtest.h>

#include "TempDir.h"
#include "framework/ScriptedUserInterface.h"
#include "framework/View.h"
#include "layout/LayoutPageDoc.h"
#include "model/QuilletDoc.h"
#include "shell/QuilletApp.h"

inline const std::string kEmptyProjectFile =
    "<version>1.01</version>\r\n<layout>\r\n  <layout_width>800</layout_width>\r\n"
    "  <layout_height>600</layout_height>\r\n  <piece_types_fname></piece_types_fname>\r\n"
    "  <piece_texts_fname></piece_texts_fname>\r\n</layout>\r\n";

// A project file of the given page width.
inline std::string ProjectOfWidth(int width) {
    std::string file = kEmptyProjectFile;
    file.replace(file.find("800"), 3, std::to_string(width));
    return file;
}

// A view that only counts its updates.
class CountingView : public framework::View {
public:
    int updates = 0;
    bool closed = false;
    void OnUpdate(framework::View*, long, void*) override { ++updates; }
    void CloseFrame() override { closed = true; }
};

class ProjectFixture : public testing::Test {
protected:
    framework::ScriptedUserInterface ui;
    framework::MemoryProfileStore profile;
    CQuilletApp app{ui, profile};
    TempDir dir;

    void Start(const std::vector<std::string>& arguments = {}) {
        ASSERT_TRUE(app.InitInstance(arguments, nullptr));
    }

    CQuilletDoc* Open(const std::string& name, const std::string& bytes) {
        return dynamic_cast<CQuilletDoc*>(app.OpenDocumentFile(dir.Write(name, bytes)));
    }

    // A change of the project as every command makes one.
    static void ChangeWidth(CQuilletDoc& project, int width) {
        project.qlt_file().layout_width = width;
        project.SetModifiedFlag(true);
        project.TakeSnapshot();
        project.UpdateAllViews(nullptr);
    }

    // Opens the window of the layout page `name`, created as the command does (a change
    // with its snapshot) when the project has none, and makes it the active one.
    CLayoutPageDoc* OpenLayoutPage(const std::string& name) {
        CQuilletDoc* project = GetProjectDoc();
        if (!project->CreateLayout(name)) project->OpenLayout(name);
        return dynamic_cast<CLayoutPageDoc*>(app.GetActiveDocument());
    }
};
