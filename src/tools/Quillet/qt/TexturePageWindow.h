// The texture page window: the page in a scroll area, with its toolbar above it.
#pragma once

#include <QColor>
#include <QTimer>
#include <QWidget>
#include <functional>

#include "CommandButtons.h"
#include "MdiFrame.h"
#include "ZoomScrollArea.h"
#include "texture/TexturePageView.h"

class QMenu;

// The scroll area that shows the composed page and passes the person's input to the view.
class TexturePageWidget : public ZoomScrollArea, public TexturePageCanvas {
    Q_OBJECT
public:
    TexturePageWidget();

    FramedView<CTexturePageView>& View() { return view_; }

    Point ScrollPosition() const override { return CurrentScroll(); }
    void SetScrollSizes(int32_t width, int32_t height) override { SetContentSize(width, height); }
    void ScrollToPosition(Point position) override { ScrollTo(position); }
    void Invalidate(const PageRect& rect) override { RepaintRect(rect); }
    void InvalidateAll() override { viewport()->update(); }
    void PostRebuild() override { PostRebuildOnce(); }
    // Qt keeps the mouse for the widget a button went down on, so capture asks for nothing.
    void SetCapture() override {}
    void ReleaseCapture() override {}
    void SetCursor(CursorShape shape) override;
    void StartTimer(int id, int milliseconds) override;
    void KillTimer(int id) override;
    void PlaceFrame(int32_t width, int32_t height) override { PlaceMdiFrame(width, height); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    FramedView<CTexturePageView> view_{*this};
    QTimer ants_timer_;
    int ants_timer_id_ = 0;
};

// The page window: its toolbar above the page.
class TexturePageWindow : public PageWindow {
    Q_OBJECT
public:
    TexturePageWindow();

    TexturePageWidget& Page() { return *page_; }
    // Fills `menu` with the toolbar's commands, in its order and with its separators; each
    // runs in the window that `active` answers when it is chosen (none: nothing happens).
    static void FillMenu(QMenu& menu, std::function<TexturePageWindow*()> active);

protected:
    void ReinkButtons() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Shows the view's state on the buttons: the spacing pressed, the unused colour's swatch.
    void ShowState();

    TexturePageWidget* page_;
    QColor swatch_;  // the unused colour the button shows; invalid before the first
};
