#include "ui_objects.h"

#include <algorithm>

#include "QuilletDoc.h"
#include "float_int.h"
#include "page_rect.h"

namespace {

// Integer sums and products of piece geometry wrap as 32-bit integers, without undefined
// behaviour.
int32_t Wrap(int64_t value) {
    return static_cast<int32_t>(static_cast<uint32_t>(value));
}

// A part's bounds where its parent placed it; a missing part is empty at 0, 0.
PageRect PlacedBounds(const UI_OBJECT* part) {
    if (part == nullptr) return {};
    return OffsetRect(part->NaturalBounds(), part->Position().x, part->Position().y);
}

PageRect Bounds(const UI_OBJECT* part) {
    return part == nullptr ? PageRect{} : part->NaturalBounds();
}

}  // namespace

namespace {
const RecordLookup* scoped_source = nullptr;
}

ScopedRecordLookup::ScopedRecordLookup(const RecordLookup& source) : previous_(scoped_source) {
    scoped_source = &source;
}

ScopedRecordLookup::~ScopedRecordLookup() {
    scoped_source = previous_;
}

namespace {
const RecordLookup* CurrentLookup() {
    return scoped_source != nullptr ? scoped_source : GetProjectDoc();
}
}  // namespace

PageRect RegionRectOf(const UI_REGION& region) {
    const RecordLookup* lookup = CurrentLookup();
    return lookup == nullptr ? PageRect{} : lookup->RegionRect(region);
}

const UI_OBJECT* ObjectNamed(const std::string& name) {
    const RecordLookup* lookup = CurrentLookup();
    return lookup == nullptr ? nullptr : lookup->ObjectNamed(name);
}

void UI_OBJECT::Arrange() {
    SetPosition({0, 0});
    SetStretch(true, true);
}

void UI_OBJECT::SetStretch(bool x, bool y) {
    stretch_x_ = x;
    stretch_y_ = y;
}

void UI_OBJECT::Serialize(framework::Archive& archive) {
    if (archive.IsStoring()) Write(archive);
}

bool UI_OBJECT::HitTest(int32_t x, int32_t y) const {
    return PtInRect(NaturalBounds(), x, y);
}

PageRect UI_OBJECT::RegionRect(const UI_OBJECT& /*part*/, const PageRect& piece) const {
    return piece;
}

const PageRect& UI_OBJECT::EmptyRect() {
    static const PageRect empty{0, 0, 64, 64};
    return empty;
}

void UI_OBJECT::DrawRegions(std::vector<UI_REGION>& regions) const {
    if (const std::vector<UI_REGION>* own = Regions(); own != nullptr && !own->empty())
        regions.push_back(own->front());
}

#define QLT_KIND_NAMES(KIND, TAG, EMPTY)         \
    const std::string& KIND::TypeTag() const {   \
        static const std::string tag = TAG;      \
        return tag;                              \
    }                                            \
    const std::string& KIND::EmptyName() const { \
        static const std::string empty = EMPTY;  \
        return empty;                            \
    }
QLT_KIND_NAMES(UI_ART, "art", "empty_art")
QLT_KIND_NAMES(UI_PUSH_BUTTON, "push_button", "empty_push_button")
QLT_KIND_NAMES(UI_TOGGLE_BUTTON, "toggle_button", "empty_toggle_button")
QLT_KIND_NAMES(UI_SCROLL_BOX, "scroll_box", "empty_scroll_box")
QLT_KIND_NAMES(UI_V_SLIDER, "UI_V_Slider", "empty_vt_slider")
QLT_KIND_NAMES(UI_H_SLIDER, "UI_H_Slider", "empty_hz_slider")
#undef QLT_KIND_NAMES

PageRect UI_ART::NaturalBounds() const {
    if (IsEmptyObject()) return EmptyRect();
    return regions.empty() ? PageRect{} : AtOrigin(RegionRectOf(regions.front()));
}

PageRect UI_SCROLL_BOX::NaturalBounds() const {
    if (IsEmptyObject()) return EmptyRect();
    return regions.empty() ? PageRect{} : RegionRectOf(regions.front());
}

PageRect UI_BUTTON::NaturalBounds() const {
    if (IsEmptyObject()) return EmptyRect();
    PageRect bounds;
    for (const UI_REGION& region : regions)
        bounds = UnionRect(bounds, AtOrigin(RegionRectOf(region)));
    return bounds;
}

UI_SLIDER::UI_SLIDER(std::string object_name, bool vertical)
    : UI_OBJECT(std::move(object_name)), vertical_(vertical) {}

UI_SLIDER::Parts UI_SLIDER::GetParts() const {
    // Held in the order art, thumb, decrease, increase; a list that lost some is shorter.
    const auto at = [this](size_t index) {
        return index < parts.size() ? parts[index].get() : nullptr;
    };
    return {at(0), at(1), at(2), at(3)};
}

PageRect UI_SLIDER::NaturalBounds() const {
    if (IsEmptyObject()) return EmptyRect();
    const Parts p = GetParts();
    const PageRect moving = UnionRect(UnionRect(PlacedBounds(p.thumb), PlacedBounds(p.decrease)),
                                      PlacedBounds(p.increase));
    PageRect art = PlacedBounds(p.art);
    // The art never lengthens a slider, but it may widen it.
    if (vertical_) {
        art.top = moving.top;
        art.bottom = moving.bottom;
    } else {
        art.left = moving.left;
        art.right = moving.right;
    }
    return UnionRect(moving, art);
}

void UI_SLIDER::Arrange() {
    const Parts p = GetParts();
    if (p.art == nullptr && p.thumb == nullptr && p.decrease == nullptr && p.increase == nullptr)
        return;
    const PageRect all = UnionRect(UnionRect(Bounds(p.thumb), Bounds(p.decrease)),
                                   UnionRect(Bounds(p.increase), Bounds(p.art)));
    SetPosition({0, 0});
    SetStretch(!vertical_, vertical_);
    const Point at = Position();
    // Across: centred in the union; along: decrease, then art and thumb, then increase.
    const auto across = [&](const UI_OBJECT* part) {
        const int32_t room = vertical_ ? RectWidth(all) : RectHeight(all);
        const int32_t size = vertical_ ? RectWidth(Bounds(part)) : RectHeight(Bounds(part));
        return Wrap(int64_t{vertical_ ? at.x : at.y} + (int64_t{room} - size) / 2);
    };
    const auto length = [&](const UI_OBJECT* part) {
        return vertical_ ? RectHeight(Bounds(part)) : RectWidth(Bounds(part));
    };
    const int32_t start = vertical_ ? at.y : at.x;
    const auto place = [&](UI_OBJECT* part, int64_t along) {
        if (part == nullptr) return;
        part->SetStretch(false, false);
        const int32_t a = across(part);
        part->SetPosition(vertical_ ? Point{a, Wrap(along)} : Point{Wrap(along), a});
    };
    place(p.decrease, start);
    place(p.art, int64_t{start} + length(p.decrease));
    place(p.thumb, int64_t{start} + length(p.decrease));
    place(p.increase, int64_t{start} + length(p.decrease) + length(p.thumb));
}

PageRect UI_SLIDER::RegionRect(const UI_OBJECT& part, const PageRect& piece) const {
    const PageRect natural = part.NaturalBounds();
    const int64_t left = int64_t{piece.left} + part.Position().x;
    const int64_t top = int64_t{piece.top} + part.Position().y;
    PageRect placed{Wrap(left), Wrap(top), Wrap(left + RectWidth(natural)),
                    Wrap(top + RectHeight(natural))};
    const Parts p = GetParts();
    const auto size = [this](const UI_OBJECT* each) {
        return each == nullptr ? 0 : vertical_ ? RectHeight(Bounds(each)) : RectWidth(Bounds(each));
    };
    const int64_t near_edge = vertical_ ? piece.top : piece.left;
    const int64_t far_edge = vertical_ ? piece.bottom : piece.right;
    int32_t& near_side = vertical_ ? placed.top : placed.left;
    int32_t& far_side = vertical_ ? placed.bottom : placed.right;
    const auto named = [&part](const UI_OBJECT* each) {
        return each != nullptr && part.Name() == each->Name();
    };
    if (named(p.art)) {
        near_side = Wrap(near_edge + size(p.decrease));
        far_side = Wrap(far_edge - size(p.increase));
    } else if (named(p.thumb)) {
        near_side = Wrap((near_edge + far_edge - size(p.thumb)) / 2);
        far_side = Wrap(int64_t{near_side} + size(p.thumb));
    } else if (named(p.increase)) {
        near_side = Wrap(far_edge - size(p.increase));
        far_side = Wrap(far_edge);
    }
    return placed;
}

int32_t UI_SLIDER::Range(float scale) const {
    if (IsEmptyObject()) return 0;
    const PageRect bounds = NaturalBounds();
    const int32_t length = vertical_ ? RectHeight(bounds) : RectWidth(bounds);
    const Parts p = GetParts();
    const auto along = [this](const UI_OBJECT* part) {
        return vertical_ ? RectHeight(Bounds(part)) : RectWidth(Bounds(part));
    };
    const int32_t scaled = FloatToInt(static_cast<float>(length) * scale + 0.5f);
    return Wrap(int64_t{scaled} - along(p.decrease) - along(p.increase) - along(p.thumb));
}

int32_t UI_SLIDER::RangeX(float scale) const {
    return vertical_ ? 0 : Range(scale);
}
int32_t UI_SLIDER::RangeY(float scale) const {
    return vertical_ ? Range(scale) : 0;
}

const std::vector<const UI_OBJECT*>& EmptyObjects() {
    static const auto objects = [] {
        static UI_ART art("empty_art");
        static UI_PUSH_BUTTON push("empty_push_button");
        static UI_TOGGLE_BUTTON toggle("empty_toggle_button");
        static UI_V_SLIDER vertical("empty_vt_slider");
        static UI_H_SLIDER horizontal("empty_hz_slider");
        static UI_SCROLL_BOX scroll("empty_scroll_box");
        art.regions.push_back({});
        scroll.regions.push_back({});
        vertical.parts.resize(4);
        horizontal.parts.resize(4);
        return std::vector<const UI_OBJECT*>{&art, &push, &toggle, &vertical, &horizontal, &scroll};
    }();
    return objects;
}
