#include "qlt_types.h"

#include <algorithm>

#include "report.h"

namespace {

ImagePtr Clone(Core::Image* picture, Core::PixelFormat format) {
    return ImagePtr(picture == nullptr ? nullptr : Core::copy_image(*picture, format));
}

}  // namespace

TREGION::TREGION(std::string region_name, const PageRect& region_rect, Core::Image* picture)
    : name(std::move(region_name)), rect(region_rect) {
    SetImage(picture);
}

TREGION::TREGION(const TREGION& other) : name(other.name), rect(other.rect) {
    SetImage(other.image.get());
}

TREGION& TREGION::operator=(const TREGION& other) {
    if (this != &other) {
        name = other.name;
        rect = other.rect;
        SetImage(other.image.get());
    }
    return *this;
}

void TREGION::SetImage(Core::Image* picture) {
    image = picture == nullptr ? nullptr : Clone(picture, picture->get_format());
    display_image = image == nullptr ? nullptr : Clone(image.get(), Core::PIXEL_FORMAT_8888);
}

bool TPAGE::AddRegion(const PageRect& rect, const std::string& name, Core::Image* picture) {
    // Built first: the picture may belong to the region it replaces.
    TREGION added(name, rect, picture);
    const bool replaced = RemoveRegion(name);
    regions.push_back(std::move(added));
    return !replaced;
}

bool TPAGE::RemoveRegion(const std::string& name) {
    const auto found = std::find_if(regions.begin(), regions.end(),
                                    [&name](const TREGION& region) { return region.name == name; });
    if (found == regions.end()) return false;
    regions.erase(found);
    return true;
}

TREGION& TPAGE::FindRegion(const std::string& name) {
    for (TREGION& region : regions) {
        if (region.name == name) return region;
    }
    ReportUnless(false, "TPage region not found");
    return EmptyRecord<TREGION>();
}

void TPAGE::MoveRegion(const std::string& name, int32_t x, int32_t y) {
    TREGION& region = FindRegion(name);
    const int64_t dx = int64_t{x} - region.rect.left;
    const int64_t dy = int64_t{y} - region.rect.top;
    region.rect = {x, y, static_cast<int32_t>(region.rect.right + dx),
                   static_cast<int32_t>(region.rect.bottom + dy)};
}

std::string FmvIdentifier(const std::string& path) {
    const size_t separator = path.find_last_of("/\\");
    std::string identifier = separator == std::string::npos ? path : path.substr(separator + 1);
    std::replace(identifier.begin(), identifier.end(), '.', '_');
    return identifier;
}

FMV_PAGE::FMV_PAGE(const std::string& movie_path)
    : identifier(FmvIdentifier(movie_path)), path(movie_path), rect{0, 0, 64, 64} {}

namespace {

template <typename Container, typename Matches>
auto FindWhere(Container& items, Matches matches) {
    return std::find_if(items.begin(), items.end(), matches);
}

auto Named(const std::string& name) {
    return [&name](const auto& record) { return record.name == name; };
}

}  // namespace

UI_PIECE& LPAGE::FindPiece(const std::string& piece_name) {
    const auto found = FindWhere(pieces, Named(piece_name));
    if (found != pieces.end()) return *found;
    ReportUnless(false, "Piece not found");
    return EmptyRecord<UI_PIECE>();
}

int LPAGE::PieceIndex(const std::string& piece_name) const {
    const auto found = FindWhere(pieces, Named(piece_name));
    return found == pieces.end() ? -1 : static_cast<int>(found - pieces.begin());
}

void LPAGE::MovePiece(const std::string& piece_name, int32_t x, int32_t y) {
    UI_PIECE& piece = FindPiece(piece_name);
    piece.x = x;
    piece.y = y;
}

void LPAGE::ReplacePiece(const std::string& piece_name, const UI_PIECE& piece) {
    UI_PIECE& target = FindPiece(piece_name);
    target = piece;
}

void LPAGE::RemovePiece(const std::string& piece_name) {
    const auto found = FindWhere(pieces, Named(piece_name));
    ReportUnless(found != pieces.end(), "Piece not found");
    if (found != pieces.end()) pieces.erase(found);
}

void LPAGE::ClearText(const std::string& piece_name) {
    UI_PIECE& piece = FindPiece(piece_name);
    piece.attributes.text_id.clear();
    piece.attributes.font_id.clear();
}

void LPAGE::RemoveTexturePath(const std::string& folder) {
    std::erase(texture_paths, folder);
}

void LPAGE::RemoveFmvPath(const std::string& folder) {
    std::erase(fmv_paths, folder);
}

void LPAGE::AssignFrom(const LPAGE& other) {
    name = other.name;
    width = other.width;
    height = other.height;
    pieces = other.pieces;
    texture_paths = other.texture_paths;
    fmv_paths = other.fmv_paths;
}

LPAGE& QLT_FILE::FindPage(const std::string& name) {
    const auto found = FindWhere(layouts, Named(name));
    if (found != layouts.end()) return *found;
    ReportUnless(false, "Layout page not found");
    return EmptyRecord<LPAGE>();
}

const LPAGE* QLT_FILE::PageNamed(const std::string& name) const {
    const auto found = FindWhere(layouts, Named(name));
    return found == layouts.end() ? nullptr : &*found;
}

UI_PIECE* QLT_FILE::FindPiece(const std::string& page_name, const std::string& piece_name) {
    const auto page = FindWhere(layouts, Named(page_name));
    if (page == layouts.end()) return nullptr;
    const auto found = FindWhere(page->pieces, Named(piece_name));
    ReportUnless(found != page->pieces.end(), "Piece not found");
    return found == page->pieces.end() ? nullptr : &*found;
}

int QLT_FILE::PieceIndex(const std::string& page_name, const std::string& piece_name) const {
    const LPAGE* page = PageNamed(page_name);
    return page == nullptr ? -1 : page->PieceIndex(piece_name);
}
