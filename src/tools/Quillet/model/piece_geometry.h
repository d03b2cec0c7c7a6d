// Where a piece stands: its rectangle comes from its object on every request.
#pragma once

#include "qlt_types.h"

// Left x, top y, right x + natural width * scale_x, bottom y + natural height * scale_y,
// each in 32-bit float and truncated. A piece whose object is missing measures as its
// corner alone.
PageRect PieceRect(const UI_PIECE& piece);
// The same at the given scales.
PageRect PieceRectAt(const UI_PIECE& piece, float scale_x, float scale_y);
