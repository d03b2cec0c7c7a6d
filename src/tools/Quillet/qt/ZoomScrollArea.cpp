#include "ZoomScrollArea.h"

#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include "MdiFrame.h"
#include "framework/VirtualKeys.h"

ZoomScrollArea::ZoomScrollArea(std::function<CZoomView&()> zoom_view, std::function<void()> rebuild)
    : zoom_view_(std::move(zoom_view)), rebuild_(std::move(rebuild)) {
    viewport()->setMouseTracking(true);
    viewport()->installEventFilter(this);
    setFocusPolicy(Qt::StrongFocus);
}

bool ZoomScrollArea::eventFilter(QObject* watched, QEvent* event) {
    if (watched == viewport()) {
        if (event->type() == QEvent::MouseMove) {
            const Point page = zoom_view_().DeviceToPage(PointOf(static_cast<QMouseEvent*>(event)),
                                                         CurrentScroll());
            emit PointerMoved(page.x, page.y);
        } else if (event->type() == QEvent::Leave) {
            emit PointerLeft();
        }
    }
    return QAbstractScrollArea::eventFilter(watched, event);
}

void ZoomScrollArea::ZoomAbout(bool in, Point device) {
    CZoomView& view = zoom_view_();
    if (in ? view.ZoomIn(&device) : view.ZoomOut(&device)) viewport()->update();
}

void ZoomScrollArea::wheelEvent(QWheelEvent* event) {
    if (!(event->modifiers() & Qt::ControlModifier) || event->angleDelta().y() == 0) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    const QPoint at = event->position().toPoint();
    ZoomAbout(event->angleDelta().y() > 0, {at.x(), at.y()});
    event->accept();
}

bool ZoomScrollArea::ZoomKey(const QKeyEvent* event) {
    if (!(event->modifiers() & Qt::ControlModifier)) return false;
    const int key = event->key();
    const bool in = key == Qt::Key_Plus || key == Qt::Key_Equal;
    if (!in && key != Qt::Key_Minus) return false;
    QPoint at = viewport()->mapFromGlobal(QCursor::pos());
    if (!viewport()->rect().contains(at)) at = viewport()->rect().center();
    ZoomAbout(in, {at.x(), at.y()});
    return true;
}

int ZoomScrollArea::VirtualKey(int qt_key) {
    switch (qt_key) {
        case Qt::Key_Control:
            return framework::kKeyControl;
        case Qt::Key_Left:
            return framework::kKeyLeft;
        case Qt::Key_Up:
            return framework::kKeyUp;
        case Qt::Key_Right:
            return framework::kKeyRight;
        case Qt::Key_Down:
            return framework::kKeyDown;
        case Qt::Key_Delete:
            return framework::kKeyDelete;
        default:
            return 0;
    }
}

Point ZoomScrollArea::PointOf(const QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    return {at.x(), at.y()};
}

Point ZoomScrollArea::CurrentScroll() const {
    return {horizontalScrollBar()->value(), verticalScrollBar()->value()};
}

void ZoomScrollArea::SetContentSize(int32_t width, int32_t height) {
    content_size_ = QSize(width, height);
    UpdateBars();
}

void ZoomScrollArea::UpdateBars() {
    const QSize visible = viewport()->size();
    horizontalScrollBar()->setRange(0, std::max(0, content_size_.width() - visible.width()));
    verticalScrollBar()->setRange(0, std::max(0, content_size_.height() - visible.height()));
    horizontalScrollBar()->setPageStep(visible.width());
    verticalScrollBar()->setPageStep(visible.height());
    horizontalScrollBar()->setSingleStep(zoom_view_().Zoom() * 8);
    verticalScrollBar()->setSingleStep(zoom_view_().Zoom() * 8);
}

void ZoomScrollArea::ScrollTo(Point position) {
    horizontalScrollBar()->setValue(position.x);
    verticalScrollBar()->setValue(position.y);
}

void ZoomScrollArea::RepaintRect(const PageRect& rect) {
    viewport()->update(QRect(QPoint(rect.left, rect.top), QPoint(rect.right - 1, rect.bottom - 1)));
}

void ZoomScrollArea::PostRebuildOnce() {
    if (rebuild_posted_) return;
    rebuild_posted_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            rebuild_posted_ = false;
            rebuild_();
        },
        Qt::QueuedConnection);
}

void ZoomScrollArea::PlaceMdiFrame(int32_t width, int32_t height) {
    QWidget* frame = window();
    for (QWidget* up = parentWidget(); up != nullptr; up = up->parentWidget()) {
        if (qobject_cast<MdiFrame*>(up) != nullptr) frame = up;
    }
    if (frame == window()) return;
    // The frame's own edges, title and toolbar come on top of the page's room; a small page
    // still gets the whole toolbar.
    const QSize chrome = frame->size() - viewport()->size();
    QSize wanted = (QSize(width, height) + chrome).expandedTo(frame->sizeHint());
    if (const QWidget* area = frame->parentWidget())
        wanted = wanted.boundedTo(area->size() - QSize(30, 30));
    frame->move(30, 30);
    frame->resize(wanted);
}

void ZoomScrollArea::PaintPage(QPainter& painter, Core::Image* page) const {
    painter.fillRect(viewport()->rect(), Qt::white);
    if (page == nullptr) return;
    const Core::Size size = page->get_size();
    // A 32-bit picture on a screen has no alpha: the fourth byte is not shown.
    const QImage picture(static_cast<const uchar*>(page->get_data()), size.width, size.height,
                         size.width * 4, QImage::Format_RGB32);
    const int zoom = zoom_view_().Zoom();
    const Point scroll = CurrentScroll();
    const QRect source(scroll.x / zoom, scroll.y / zoom, viewport()->width() / zoom + 2,
                       viewport()->height() / zoom + 2);
    const QRect shown = source.intersected(picture.rect());
    const QRect target(shown.x() * zoom - scroll.x, shown.y() * zoom - scroll.y,
                       shown.width() * zoom, shown.height() * zoom);
    painter.drawImage(target, picture, shown);
}

void ZoomScrollArea::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    UpdateBars();
}

void ZoomScrollArea::scrollContentsBy(int /*dx*/, int /*dy*/) {
    viewport()->update();
}
