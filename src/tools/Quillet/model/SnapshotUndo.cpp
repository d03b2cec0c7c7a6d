#include "SnapshotUndo.h"

void SnapshotUndo::PushSnapshot(std::string snapshot) {
    // The test comes before the push, so the list holds at most undo_levels + 1 entries.
    if (static_cast<int32_t>(undo_list.size()) > undo_levels) undo_list.pop_back();
    undo_list.push_front(std::move(snapshot));
}

bool SnapshotUndo::UndoStep() {
    if (undo_list.size() <= 1) return false;
    redo_list.push_front(std::move(undo_list.front()));
    undo_list.pop_front();
    RestoreSnapshot(undo_list.front());
    return true;
}

bool SnapshotUndo::RedoStep() {
    if (redo_list.empty()) return false;
    std::string snapshot = std::move(redo_list.front());
    redo_list.pop_front();
    PushSnapshot(std::move(snapshot));
    RestoreSnapshot(undo_list.front());
    return true;
}
