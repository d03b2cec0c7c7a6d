// The layout page window: the page in a zooming scroll area with its toolbar above it.
#pragma once

#include <QWidget>
#include <functional>

#include "CommandButtons.h"
#include "MdiFrame.h"
#include "ZoomScrollArea.h"
#include "layout/LayoutPageView.h"

class QMenu;
class ZSortDialog;

// The scroll area that shows the page and passes the person's input to the view.
class LayoutPageWidget : public ZoomScrollArea, public LayoutPageCanvas {
    Q_OBJECT
public:
    LayoutPageWidget();
    // The z sort dialog goes before the view it reports to.
    ~LayoutPageWidget() override;

    FramedView<CLayoutPageView>& View() { return view_; }
    // The open z sort dialog, or null.
    ZSortDialog* ZSort() const { return z_sort_dialog_; }

    Point ScrollPosition() const override { return CurrentScroll(); }
    void SetScrollSizes(int32_t width, int32_t height) override { SetContentSize(width, height); }
    void ScrollToPosition(Point position) override { ScrollTo(position); }
    void Invalidate(const PageRect& rect) override { RepaintRect(rect); }
    void InvalidateAll() override { viewport()->update(); }
    void PostRebuild() override { PostRebuildOnce(); }
    // Qt keeps the mouse for the widget a button went down on, so capture asks for nothing.
    void SetCapture() override {}
    void ReleaseCapture() override {}
    void SetCursor(LayoutCursor cursor) override;
    void PlaceFrame(int32_t width, int32_t height) override;
    void ActivateFrame() override { view_.ActivateFrame(); }
    int TrackPieceMenu(Point device) override;
    bool OpenZSortDialog(ZSortList& list) override;
    void CloseZSortDialog() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    FramedView<CLayoutPageView> view_{*this};
    ZSortDialog* z_sort_dialog_ = nullptr;
};

// The page window: its toolbar above the page.
class LayoutPageWindow : public PageWindow {
    Q_OBJECT
public:
    LayoutPageWindow();

    LayoutPageWidget& Page() { return *page_; }
    // Fills `menu` with the toolbar's commands, in its order and with its separators; each
    // runs in the window that `active` answers when it is chosen (none: nothing happens).
    static void FillMenu(QMenu& menu, std::function<LayoutPageWindow*()> active);

private:
    LayoutPageWidget* page_;
};
