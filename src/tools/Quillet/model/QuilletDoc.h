// The project document: owns every record of the open project and is the only thing saved
// to a project file. Texture page and layout page documents are windows onto its records.
//
// Every change of the project ends the same way: the modified flag is set, a snapshot is
// taken, and the views are told.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "SnapshotUndo.h"
#include "framework/Document.h"
#include "qlt_types.h"

class CQuilletDoc : public framework::Document, public SnapshotUndo {
public:
    void Serialize(framework::Archive& archive) override;
    // Loads the file, then takes the first snapshot, the first state Undo returns to.
    bool OnOpenDocument(const std::string& path) override;
    // Writes the file; only a real save clears the modified flags of the project and its
    // open pages.
    bool OnSaveDocument(const std::string& path) override;

    // Records the present state for Undo. Neither saves nor clears any modified flag.
    void TakeSnapshot();
    // Undo and Redo act only while a layout page window is active.
    void OnEditUndo();
    void OnEditRedo();

    // Clears the modified flag of every open page document, then of the project.
    void ClearAllModified();
    // Sets the status line's message, once the main window has one.
    void SetStatusText(const std::string& text);

    QLT_FILE& qlt_file() { return records_.qlt_file; }
    const QLT_FILE& qlt_file() const { return records_.qlt_file; }

    int32_t checkpoint_lock = 0;  // snapshots are taken only while below 1

protected:
    void ReportLoadFailure(std::exception_ptr failure, const framework::Archive& archive) override;
    void RestoreSnapshot(const std::string& snapshot) override;

private:
    void AdoptRecords(ProjectRecords&& loaded);
    void StepAndRefresh(bool (SnapshotUndo::*step)());

    ProjectRecords records_;
};

// The open project, or null.
CQuilletDoc* GetProjectDoc();

// Makes way for another project: asks to save the present one (once, for the project
// alone) and closes every document. False when the person cancelled.
bool CloseCurrentProject();
