// The selection of a layout page view: pieces by name, in the order the selection was
// built, with the anchor and the live rectangle of a drag. Names are resolved against the
// page on use, so a piece that went away leaves a name that finds nothing, never a dangling
// record.
//
// Failure style: a bad index is reported ("Piece not found") and answers an empty name.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "model/qlt_types.h"

class PieceSelection {
public:
    Point anchor;        // where the button went down
    PageRect live_rect;  // move: offset so far (left, top) and offset + size; resize: the
                         // rectangle so far; all zero when no drag is under way
    std::vector<std::string> pieces;

    // Appends the name unless it is there already; its index either way.
    size_t Add(const std::string& name);
    // Removes the first entry of that name, if any.
    void Remove(const std::string& name);
    const std::string& At(size_t index) const;
    void Clear() { pieces.clear(); }
    bool Empty() const { return pieces.empty(); }
    size_t Size() const { return pieces.size(); }
};
