// The zoom view's mappings and refresh geometry.
#include <gtest/gtest.h>

#include <vector>

#include "texture/ZoomView.h"

namespace {

// The scrolling machinery of a window: sizes and positions as set, invalidations recorded.
class ScrollCanvas : public ZoomCanvas {
public:
    Point scroll;
    int32_t width = 0;
    int32_t height = 0;
    std::vector<PageRect> invalidated;

    Point ScrollPosition() const override { return scroll; }
    void SetScrollSizes(int32_t w, int32_t h) override {
        width = w;
        height = h;
    }
    void ScrollToPosition(Point position) override { scroll = position; }
    void Invalidate(const PageRect& rect) override { invalidated.push_back(rect); }
};

TEST(ZoomViewTest, ZoomDoublesUpTo16AndHalvesDownTo1KeepingOddPageSizes) {
    ScrollCanvas canvas;
    CZoomView view(canvas);
    view.SetZoomedSize(333, 77);
    for (int32_t expected : {2, 4, 8, 16}) {
        EXPECT_TRUE(view.ZoomIn(nullptr));
        EXPECT_EQ(view.Zoom(), expected);
    }
    EXPECT_FALSE(view.ZoomIn(nullptr));
    EXPECT_EQ(view.Zoom(), 16);
    EXPECT_EQ(canvas.width, 333 * 16);
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(view.ZoomOut(nullptr));
    EXPECT_FALSE(view.ZoomOut(nullptr));
    EXPECT_EQ(canvas.width, 333);
    EXPECT_EQ(canvas.height, 77);
}

TEST(ZoomViewTest, TheWindowsCornerStaysOnItsPagePixel) {
    ScrollCanvas canvas;
    CZoomView view(canvas);
    view.SetZoomedSize(100, 100);
    canvas.scroll = {10, 6};
    view.ZoomIn(nullptr);
    EXPECT_EQ(canvas.scroll, (Point{20, 12}));
    const Point focus{4, 2};
    view.ZoomIn(&focus);
    EXPECT_EQ(canvas.scroll, (Point{44, 26}));
    view.ZoomOut(&focus);
    EXPECT_EQ(canvas.scroll, (Point{20, 12}));
}

TEST(ZoomViewTest, PointsMapBetweenDeviceAndPage) {
    ScrollCanvas canvas;
    CZoomView view(canvas);
    view.SetZoomedSize(64, 64);
    view.ZoomIn(nullptr);
    view.ZoomIn(nullptr);
    EXPECT_EQ(view.DeviceToPage({5, 5}, {6, 6}), (Point{2, 2}));
    EXPECT_EQ(view.DeviceToPage({3, 3}, {0, 0}), (Point{0, 0})) << "a magnified pixel is one";
    canvas.scroll = {6, 9};
    EXPECT_EQ(view.PageToClient({2, 3}), (Point{8, 12}));
    EXPECT_EQ(view.PageRectToClient({1, 1, 3, 2}), (PageRect{-2, -5, 6, -1}));
}

// Whatever the scroll position, a click lands on the page pixel drawn under it.
TEST(ZoomViewTest, ClicksLandOnThePixelDrawnUnderThem) {
    ScrollCanvas canvas;
    CZoomView view(canvas);
    view.SetZoomedSize(64, 64);
    for (int i = 0; i < 4; ++i)
        view.ZoomIn(nullptr);
    for (const int32_t scroll : {0, 1, 15, 16, 17, 31}) {
        canvas.scroll = {scroll, scroll};
        for (int32_t device = 0; device < 64; ++device) {
            const Point page = view.DeviceToPage({device, device}, canvas.scroll);
            const PageRect drawn = view.PageRectToClient({page.x, page.y, page.x + 1, page.y + 1});
            EXPECT_TRUE(drawn.left <= device && device < drawn.right)
                << "scroll " << scroll << ", device pixel " << device;
        }
    }
}

TEST(ZoomViewTest, OutlinesAreRefreshedAsFourStripsAndDrawnInsideTheExclusiveEdges) {
    ScrollCanvas canvas;
    CZoomView view(canvas);
    view.SetZoomedSize(64, 64);
    view.ZoomIn(nullptr);
    view.RefreshOutline({1, 2, 5, 6});
    const std::vector<PageRect> strips{
        {1, 4, 3, 12}, {2, 3, 10, 5}, {9, 4, 11, 12}, {2, 11, 10, 13}};
    EXPECT_EQ(canvas.invalidated, strips);
    const auto path = view.OutlinePath({1, 2, 5, 6});
    EXPECT_EQ(path[0], (Point{2, 4}));
    EXPECT_EQ(path[1], (Point{9, 4}));
    EXPECT_EQ(path[2], (Point{9, 11}));
    EXPECT_EQ(path[3], (Point{2, 11}));
    EXPECT_EQ(path[4], path[0]);
}

TEST(ZoomViewTest, CoordinatesFarOffThePageStayDefined) {
    ScrollCanvas canvas;
    CZoomView view(canvas);
    view.SetZoomedSize(64, 64);
    for (int i = 0; i < 4; ++i)
        view.ZoomIn(nullptr);
    view.RefreshOutline({INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX});
    const PageRect far = view.PageRectToClient({INT32_MIN, 0, INT32_MAX, 1});
    EXPECT_LT(far.left, -1000000);
    EXPECT_GT(far.right, 1000000);
}

}  // namespace
