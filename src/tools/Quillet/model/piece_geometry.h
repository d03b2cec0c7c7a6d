// Where a piece stands: its rectangle comes from its object on every request.
#pragma once

#include "qlt_types.h"

// Left x, top y, right x + natural width * scale_x, bottom y + natural height * scale_y,
// each in 32-bit float and truncated. A piece whose object is missing measures as its
// corner alone.
PageRect PieceRect(const UI_PIECE& piece);
// The same at the given scales.
PageRect PieceRectAt(const UI_PIECE& piece, float scale_x, float scale_y);

// Sets the scales of a piece read from a file, where it stands `width` by `height` pixels:
// each is the size over the piece's size at scale 1, in 32-bit float. Where that scale
// would measure another size, the scale nearest to it that measures the size read is
// taken; where no scale can, the one that the size it will be written with reads back as.
// Either way a piece saved, read and saved again is written the same.
void ScalePieceToSize(UI_PIECE& piece, int32_t width, int32_t height);
