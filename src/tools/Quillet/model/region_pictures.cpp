#include "region_pictures.h"

#include <algorithm>

#include "core_convert.h"
#include "page_rect.h"

void CopyPart(Core::Image& destination, Point to, Core::Image& source, Point from, Point size) {
    const Core::Size source_size = source.get_size();
    if (from.x >= source_size.width || from.y >= source_size.height) return;
    const auto part = [&size](Point at) {
        return Core::PixelRect{static_cast<uint32_t>(at.x), static_cast<uint32_t>(at.y),
                               static_cast<uint32_t>(size.x), static_cast<uint32_t>(size.y)};
    };
    const Core::PixelRect from_part = part(from);
    const Core::PixelRect to_part = part(to);
    const Core::PixelsLock read = source.lock_read(&from_part);
    const Core::PixelsLock write = destination.lock_write(&to_part);
    Core::convert_pixels(write, read);
    source.unlock();
    destination.unlock();
}

ImagePtr CutRegion(Core::Image& page, const PageRect& rect) {
    const int32_t width = std::max(RectWidth(rect), 0);
    const int32_t height = std::max(RectHeight(rect), 0);
    ImagePtr picture(Core::create_image(static_cast<uint32_t>(width), static_cast<uint32_t>(height),
                                        page.get_format()));
    if (picture == nullptr) return nullptr;
    const Core::Size size = page.get_size();
    const PageRect on_page =
        IntersectRect({rect.left, rect.top, static_cast<int32_t>(int64_t{rect.left} + width),
                       static_cast<int32_t>(int64_t{rect.top} + height)},
                      {0, 0, size.width, size.height});
    if (IsRectEmpty(on_page)) return picture;
    CopyPart(*picture,
             {WrappedDifference(on_page.left, rect.left), WrappedDifference(on_page.top, rect.top)},
             page, {on_page.left, on_page.top}, {RectWidth(on_page), RectHeight(on_page)});
    return picture;
}
