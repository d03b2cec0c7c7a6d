// The selection of a layout page view: pieces by name, in the order the selection was
// built, with the anchor and the live rectangle of a drag.
#pragma once

#include <string>
#include <vector>

#include "model/qlt_types.h"

class PieceSelection {
public:
    Point anchor;        // where the button went down
    PageRect live_rect;  // move: offset so far (left, top) and offset + size; resize: the
                         // rectangle so far; all zero when no drag is under way
    std::vector<std::string> pieces;
};
