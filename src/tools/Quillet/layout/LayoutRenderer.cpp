#include "LayoutRenderer.h"

#include "core_compositor.h"
#include "model/QuilletDoc.h"
#include "model/page_rect.h"
#include "model/piece_geometry.h"

namespace {

constexpr Core::Colour kPageGrey{0xCD, 0xCD, 0xCD, 0xFF};
// 0x80FF0000 as the platform stores it: red, at half alpha.
constexpr Core::Colour kLockedTint{0x00, 0x00, 0xFF, 0x80};
constexpr uint8_t kLockedStrength = 128;
constexpr uint8_t kArtStrength = 255;

// The project's lookups, with each box told once: pieces are measured on every drawing.
class LookupTellingOnce : public RecordLookup {
public:
    LookupTellingOnce(const CQuilletDoc& project, BoxesOnce& boxes)
        : project_(project), boxes_(boxes) {}

    PageRect RegionRect(const UI_REGION& region) const override {
        if (region.IsUnset()) return {};
        const SlotSource source = FindSlotSource(project_, region);
        if (source.region != nullptr) return source.region->rect;
        if (source.movie != nullptr) return source.movie->rect;
        boxes_.Tell(source.page != nullptr ? "TPage region not found" : "Fmv not found");
        return {};
    }

    const UI_OBJECT* ObjectNamed(const std::string& name) const override {
        const UI_OBJECT* found = project_.ObjectIfAny(name);
        if (found == nullptr) boxes_.Tell("Object not found");
        return found;
    }

private:
    const CQuilletDoc& project_;
    BoxesOnce& boxes_;
};

Core::DrawRect AreaOf(const PageRect& rect) {
    return {rect.left, rect.top, RectWidth(rect), RectHeight(rect)};
}

// One drawing of a page: the pieces blended onto the page's pixels, in list order.
class PageDrawing {
public:
    PageDrawing(const CQuilletDoc& project, const Core::Pixels<Core::Colour>& page,
                RegionCache& cache, BoxesOnce& boxes)
        : project_(project), page_(page), cache_(cache), boxes_(boxes), files_(boxes) {}

    void DrawPiece(const UI_PIECE& piece) {
        const PageRect rect = PieceRect(piece);
        if (const UI_OBJECT* object = ObjectNamed(piece.object_id))
            DrawObject(*object, *object, rect);
        if (piece.locked) {
            const Core::Pixels<const Core::Colour> tint(&kLockedTint, 1, 1, sizeof kLockedTint);
            Core::alpha_blend(page_, AreaOf(rect), tint, kLockedStrength);
        }
    }

private:
    // The root decides where each part goes: only a slider places its parts apart.
    void DrawObject(const UI_OBJECT& object, const UI_OBJECT& root, const PageRect& piece) {
        std::vector<UI_REGION> slots;
        object.DrawRegions(slots);
        const PageRect where = root.RegionRect(object, piece);
        if (object.IsEmptyObject()) {
            Blend(cache_.EmptyPicture(slots.empty() ? std::string() : slots.front().region), where);
            return;
        }
        for (const UI_REGION& slot : slots)
            Blend(cache_.PictureOf(project_, slot, files_, boxes_), where);
        if (const auto* parts = object.SubObjects()) {
            for (const auto& part : *parts) {
                if (part != nullptr) DrawObject(*part, root, piece);
            }
        }
    }

    void Blend(Core::Image* picture, const PageRect& where) {
        if (picture == nullptr) return;
        Core::alpha_blend(page_, AreaOf(where), Core::lock_colours_for_reading(*picture),
                          kArtStrength);
        picture->unlock();
    }

    const CQuilletDoc& project_;
    Core::Pixels<Core::Colour> page_;
    RegionCache& cache_;
    BoxesOnce& boxes_;
    PageFiles files_;
};

bool Drawable(PageSize size) {
    const auto fits = [](int32_t side) {
        return side >= 0 && side <= LayoutRenderer::kLargestSide;
    };
    return fits(size.width) && fits(size.height);
}

}  // namespace

ImagePtr LayoutRenderer::Render(const LPAGE& page, PageSize size, ImagePtr previous) {
    const bool reusable = previous != nullptr &&
                          previous->get_format() == Core::PIXEL_FORMAT_8888 &&
                          previous->get_size() == Core::Size{size.width, size.height};
    ImagePtr picture = reusable ? std::move(previous)
                       : Drawable(size)
                           ? ImagePtr(Core::create_image(static_cast<uint32_t>(size.width),
                                                         static_cast<uint32_t>(size.height),
                                                         Core::PIXEL_FORMAT_8888))
                           : nullptr;
    if (picture == nullptr) {
        boxes_.Tell("Unable to create tpage");
        return nullptr;
    }
    Core::Pixels<Core::Colour> pixels = Core::lock_colours_for_writing(*picture);
    pixels.fill(0, 0, pixels.width, pixels.height, kPageGrey);
    if (const CQuilletDoc* project = GetProjectDoc()) {
        const LookupTellingOnce lookup(*project, boxes_);
        const ScopedRecordLookup scope(lookup);
        PageDrawing drawing(*project, pixels, cache_, boxes_);
        for (const UI_PIECE& piece : page.pieces)
            drawing.DrawPiece(piece);
    }
    picture->unlock();
    return picture;
}
