// A scroll area over a page drawn at an integer zoom: the scrolling a zoom view asks of its
// window, a rebuild posted to the event loop, the window's placement, and the page painted
// with one nearest-pixel blit. The page windows derive from it and answer their canvases
// through it.
#pragma once

#include <QAbstractScrollArea>
#include <functional>

#include "core_images.h"
#include "model/qlt_types.h"
#include "texture/ZoomView.h"

class ZoomScrollArea : public QAbstractScrollArea {
    Q_OBJECT
public:
    // `zoom_view` answers the view's zoom logic; `rebuild` composes the page when asked.
    ZoomScrollArea(std::function<CZoomView&()> zoom_view, std::function<void()> rebuild);

signals:
    // The page pixel under the pointer, as it moves over the page.
    void PointerMoved(int x, int y);
    void PointerLeft();

protected:
    // Ctrl with plus or minus zooms about the pointer, or about the middle of the window
    // when the pointer is elsewhere; true when the key was one of those.
    bool ZoomKey(const QKeyEvent* event);
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
    // Ctrl with the wheel zooms about the pointer.
    void wheelEvent(QWheelEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void UpdateBars();
    void ZoomAbout(bool in, Point device);

    std::function<CZoomView&()> zoom_view_;
    std::function<void()> rebuild_;
    QSize content_size_;
    bool rebuild_posted_ = false;
};
