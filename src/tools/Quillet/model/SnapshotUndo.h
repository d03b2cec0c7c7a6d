// Undo by whole-document snapshots: each snapshot is the text of the project file.
// The head of undo_list is the present state; Undo needs two entries to step back.
#pragma once

#include <cstdint>
#include <deque>
#include <string>

class SnapshotUndo {
public:
    virtual ~SnapshotUndo() = default;

    std::deque<std::string> undo_list;  // newest first
    std::deque<std::string> redo_list;  // newest first
    int32_t grow_size = 32768;          // reserve step of a snapshot's buffer
    int32_t undo_levels = 4;            // undo_list holds at most undo_levels + 1

    // Steps back one snapshot; false when there is nothing to step back to.
    bool UndoStep();
    // Steps forward again; false when nothing was undone.
    bool RedoStep();

protected:
    // Pushes a new present state, dropping the oldest when the list is full. Does not touch
    // redo_list.
    void PushSnapshot(std::string snapshot);
    // Makes the document what `snapshot` says.
    virtual void RestoreSnapshot(const std::string& snapshot) = 0;
};
