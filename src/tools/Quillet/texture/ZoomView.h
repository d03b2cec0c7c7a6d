// A scrolling view with whole-number magnification: the mapping between page pixels and
// the window's device pixels, and the refresh and outline geometry on that mapping.
//
// Plain logic over a canvas that stands for the window's scrolling machinery.
#pragma once

#include <array>
#include <cstdint>

#include "model/qlt_types.h"

// What a zoom view needs of its window. Sizes and positions are in device pixels.
class ZoomCanvas {
public:
    virtual ~ZoomCanvas() = default;
    virtual Point ScrollPosition() const = 0;
    virtual void SetScrollSizes(int32_t width, int32_t height) = 0;
    virtual void ScrollToPosition(Point position) = 0;
    // Marks a rectangle of the window (window coordinates) for repainting, without erasing.
    virtual void Invalidate(const PageRect& rect) = 0;
};

class CZoomView {
public:
    static constexpr int32_t kMaxZoom = 16;

    explicit CZoomView(ZoomCanvas& canvas) : canvas_(canvas) {}
    virtual ~CZoomView() = default;

    int32_t Zoom() const { return zoom_; }
    // Doubles the zoom, up to 16; `focus` (device pixels, may be null) joins the scroll
    // position. False when already at 16.
    bool ZoomIn(const Point* focus);
    // Halves the zoom, down to 1. False when already at 1.
    bool ZoomOut(const Point* focus);
    // The scrolling area for a page of this size in page pixels.
    void SetZoomedSize(int32_t width, int32_t height);

    // A mouse point to page pixels: a click anywhere on a magnified pixel lands on it.
    Point DeviceToPage(Point device, Point scroll) const;
    // A page point to the coordinates the view draws in: the scrolled area, where page pixel
    // p covers p * zoom to (p + 1) * zoom, the cells DeviceToPage maps clicks to.
    Point PageToClient(Point page) const;
    // A page rectangle to window coordinates, for refreshing.
    PageRect PageRectToClient(const PageRect& rect) const;
    void RefreshRect(const PageRect& rect);
    // Refreshes only the four edges, each a strip 2 device pixels thick.
    void RefreshOutline(const PageRect& rect);
    // The outline of a page rectangle in drawing coordinates: from the top-left corner
    // around and back. The right and lower lines lie one device pixel inside the rectangle's
    // exclusive edges, whatever the zoom.
    std::array<Point, 5> OutlinePath(const PageRect& rect) const;

protected:
    ZoomCanvas& canvas_;

private:
    int32_t zoom_ = 1;
    int32_t scroll_width_ = 0;  // device pixels, as last set
    int32_t scroll_height_ = 0;
};
