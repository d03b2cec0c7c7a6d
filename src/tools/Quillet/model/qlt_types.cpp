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
