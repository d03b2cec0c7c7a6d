// A scroll area over a page drawn at an integer zoom: the scrolling a zoom view asks of its
// window, a rebuild posted to the event loop, the window's placement, and the page painted
// with one nearest-pixel blit. The page windows derive from it and answer their canvases
// through it.
#pragma once

#include <QAbstractScrollArea>
#include <functional>

#include "core_images.h"
#include "model/qlt_types.h"

class ZoomScrollArea : public QAbstractScrollArea {
    Q_OBJECT
public:
    // `zoom` answers the view's zoom; `rebuild` composes the page when asked.
    ZoomScrollArea(std::function<int()> zoom, std::function<void()> rebuild);

protected:
    // The virtual key the views answer for a key (framework/VirtualKeys.h), or 0 for any
    // other key.
    static int VirtualKey(int qt_key);
    // A mouse event's point in window pixels.
    static Point PointOf(const QMouseEvent* event);

    Point CurrentScroll() const;
    void SetContentSize(int32_t width, int32_t height);
    void ScrollTo(Point position);
    // Repaints a rectangle of the window (window coordinates), without erasing.
    void RepaintRect(const PageRect& rect);
    // Runs the rebuild once control is back in the event loop, outside painting; asking again
    // before then asks nothing more.
    void PostRebuildOnce();
    // Puts the MDI window at (30, 30) with room for `width` by `height` device pixels of page,
    // as far as the main window allows.
    void PlaceMdiFrame(int32_t width, int32_t height);
    // White, then page pixel p over p * zoom - scroll onward, each a square of the zoom's
    // side: the cell a click maps back to. The alpha byte is not shown.
    void PaintPage(QPainter& painter, Core::Image* page) const;

    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void UpdateBars();

    std::function<int()> zoom_;
    std::function<void()> rebuild_;
    QSize content_size_;
    bool rebuild_posted_ = false;
};
