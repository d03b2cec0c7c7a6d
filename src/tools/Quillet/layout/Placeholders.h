// The two pictures drawn where a piece has no art of its own to show: one for a movie, whose
// frames the editor does not play, and one for the built-in empty objects. Both are drawn
// here, 64 by 64 pixels of 24 bits, rather than read from a file.
//
// Failure style: null when the picture cannot be made.
#pragma once

#include "model/qlt_types.h"

inline constexpr int32_t kPlaceholderSide = 64;

// A frame of film: dark stock with sprocket holes along the top and bottom, and between
// them a frame of sky holding a white play triangle.
ImagePtr MakeFmvPlaceholder();
// A pale tile with a dashed border and a cross from corner to corner: room that no art
// fills yet.
ImagePtr MakeEmptyPlaceholder();
