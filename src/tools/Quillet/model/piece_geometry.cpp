#include "piece_geometry.h"

#include "float_int.h"
#include "page_rect.h"
#include "report.h"
#include "ui_objects.h"

PageRect PieceRectAt(const UI_PIECE& piece, float scale_x, float scale_y) {
    const UI_OBJECT* object = ObjectNamed(piece.object_id);
    const PageRect natural = object == nullptr ? PageRect{} : object->NaturalBounds();
    // Every step rounds to float, as the format's own tools did.
    const auto far_side = [](int32_t length, float scale, int32_t start) {
        const float scaled = static_cast<float>(length) * scale;
        return FloatToInt(scaled + static_cast<float>(start));
    };
    return {piece.x, piece.y, far_side(RectWidth(natural), scale_x, piece.x),
            far_side(RectHeight(natural), scale_y, piece.y)};
}

PageRect PieceRect(const UI_PIECE& piece) {
    return PieceRectAt(piece, piece.scale_x, piece.scale_y);
}

void LPAGE::RescalePiece(const std::string& piece_name, float fx, float fy) {
    ReportUnless(fx > 0.0f, "Invalid rescale width");
    ReportUnless(fy > 0.0f, "Invalid rescale height");
    UI_PIECE& piece = FindPiece(piece_name);
    piece.scale_x *= fx;
    piece.scale_y *= fy;
    const UI_OBJECT* object = ObjectNamed(piece.object_id);
    if (object == nullptr) return;
    const PageRect rect = PieceRect(piece);
    const PageRect natural = object->NaturalBounds();
    const PageRect minimum = object->MinimumSize();
    if (RectWidth(rect) < RectWidth(minimum))
        piece.scale_x =
            static_cast<float>(RectWidth(minimum)) / static_cast<float>(RectWidth(natural));
    if (RectHeight(rect) < RectHeight(minimum))
        piece.scale_y =
            static_cast<float>(RectHeight(minimum)) / static_cast<float>(RectHeight(natural));
}
