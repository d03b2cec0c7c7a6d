#include "ZoomView.h"

#include <algorithm>

namespace {

// `page` in device pixels from `offset` at `zoom`. A page coordinate read from a file may
// lie far beyond any window; it then stops far outside, where arithmetic stays defined.
int32_t ToDevice(int32_t page, int32_t zoom, int32_t offset) {
    const int64_t device = int64_t{page} * zoom + offset;
    constexpr int64_t kFarAway = int64_t{1} << 30;  // room for the edge strips either side
    return static_cast<int32_t>(std::clamp<int64_t>(device, -kFarAway, kFarAway));
}

}  // namespace

bool CZoomView::ZoomIn(const Point* focus) {
    if (zoom_ >= kMaxZoom) return false;
    const int32_t page_width = scroll_width_ / zoom_;
    const int32_t page_height = scroll_height_ / zoom_;
    zoom_ *= 2;
    SetZoomedSize(page_width, page_height);
    Point position = canvas_.ScrollPosition();
    position = {position.x * 2, position.y * 2};
    if (focus != nullptr) position = {position.x + focus->x, position.y + focus->y};
    canvas_.ScrollToPosition(position);
    return true;
}

bool CZoomView::ZoomOut(const Point* focus) {
    if (zoom_ < 2) return false;
    const int32_t page_width = scroll_width_ / zoom_;
    const int32_t page_height = scroll_height_ / zoom_;
    zoom_ /= 2;
    Point position = canvas_.ScrollPosition();
    SetZoomedSize(page_width, page_height);
    if (focus != nullptr) position = {position.x - focus->x, position.y - focus->y};
    canvas_.ScrollToPosition({position.x / 2, position.y / 2});
    return true;
}

void CZoomView::SetZoomedSize(int32_t width, int32_t height) {
    scroll_width_ = zoom_ * width;
    scroll_height_ = zoom_ * height;
    canvas_.SetScrollSizes(scroll_width_, scroll_height_);
}

Point CZoomView::DeviceToPage(Point device, Point scroll) const {
    const auto map = [this](int32_t at, int32_t offset) {
        const float zoom = static_cast<float>(zoom_);
        return static_cast<int32_t>(static_cast<float>(at) / zoom +
                                    static_cast<float>(offset) / zoom);
    };
    return {map(device.x, scroll.x), map(device.y, scroll.y)};
}

// Page pixel p is drawn from p * zoom in the scrolled area, the grid that DeviceToPage reads
// clicks on, whatever the scroll position.
Point CZoomView::PageToClient(Point page) const {
    return {ToDevice(page.x, zoom_, 0), ToDevice(page.y, zoom_, 0)};
}

PageRect CZoomView::PageRectToClient(const PageRect& rect) const {
    const Point scroll = canvas_.ScrollPosition();
    return {ToDevice(rect.left, zoom_, -scroll.x), ToDevice(rect.top, zoom_, -scroll.y),
            ToDevice(rect.right, zoom_, -scroll.x), ToDevice(rect.bottom, zoom_, -scroll.y)};
}

void CZoomView::RefreshRect(const PageRect& rect) {
    canvas_.Invalidate(PageRectToClient(rect));
}

void CZoomView::RefreshOutline(const PageRect& rect) {
    const PageRect r = PageRectToClient(rect);
    canvas_.Invalidate({r.left - 1, r.top, r.left + 1, r.bottom});
    canvas_.Invalidate({r.left, r.top - 1, r.right, r.top + 1});
    canvas_.Invalidate({r.right - 1, r.top, r.right + 1, r.bottom});
    canvas_.Invalidate({r.left, r.bottom - 1, r.right, r.bottom + 1});
}

std::array<Point, 5> CZoomView::OutlinePath(const PageRect& rect) const {
    const Point top_left = PageToClient({rect.left, rect.top});
    const Point bottom_right = PageToClient({rect.right, rect.bottom});
    const int32_t right = bottom_right.x - 1;
    const int32_t bottom = bottom_right.y - 1;
    return {top_left, Point{right, top_left.y}, Point{right, bottom}, Point{top_left.x, bottom},
            top_left};
}
