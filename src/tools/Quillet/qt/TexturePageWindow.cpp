#include "TexturePageWindow.h"

#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QToolBar>
#include <QVBoxLayout>

#include "shell/CommandIds.h"

namespace {

// Windows virtual-key numbers of the keys the view answers.
int VirtualKey(int qt_key) {
    switch (qt_key) {
        case Qt::Key_Left:
            return 37;
        case Qt::Key_Up:
            return 38;
        case Qt::Key_Right:
            return 39;
        case Qt::Key_Down:
            return 40;
        case Qt::Key_Delete:
            return 46;
        default:
            return 0;
    }
}

Qt::CursorShape QtCursor(CursorShape shape) {
    switch (shape) {
        case CursorShape::SizeNWSE:
            return Qt::SizeFDiagCursor;
        case CursorShape::SizeNESW:
            return Qt::SizeBDiagCursor;
        case CursorShape::SizeNS:
            return Qt::SizeVerCursor;
        case CursorShape::SizeWE:
            return Qt::SizeHorCursor;
        case CursorShape::Arrow:
            break;
    }
    return Qt::ArrowCursor;
}

QPen PenFor(OutlinePen pen, int ant_step) {
    switch (pen) {
        case OutlinePen::BlueDash:
            return QPen(Qt::blue, 0, Qt::DashLine);
        case OutlinePen::Black:
            return QPen(Qt::black, 0);
        case OutlinePen::White:
            return QPen(Qt::white, 0);
        case OutlinePen::Ants:
            break;
    }
    const AntPen& ants = AntPens()[static_cast<size_t>(ant_step)];
    QPen dashed(ants.white ? Qt::white : Qt::black, 0, Qt::CustomDashLine);
    dashed.setDashPattern({static_cast<qreal>(ants.dashes[0]), static_cast<qreal>(ants.dashes[1]),
                           static_cast<qreal>(ants.dashes[2]), static_cast<qreal>(ants.dashes[3])});
    return dashed;
}

Point PointOf(const QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    return {at.x(), at.y()};
}

}  // namespace

TexturePageWidget::TexturePageWidget() {
    viewport()->setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    ants_timer_.setSingleShot(true);
    connect(&ants_timer_, &QTimer::timeout, this, [this] { view_.OnTimer(ants_timer_id_); });
}

Point TexturePageWidget::ScrollPosition() const {
    return {horizontalScrollBar()->value(), verticalScrollBar()->value()};
}

void TexturePageWidget::SetScrollSizes(int32_t width, int32_t height) {
    content_size_ = QSize(width, height);
    UpdateBars();
}

void TexturePageWidget::UpdateBars() {
    const QSize visible = viewport()->size();
    horizontalScrollBar()->setRange(0, std::max(0, content_size_.width() - visible.width()));
    verticalScrollBar()->setRange(0, std::max(0, content_size_.height() - visible.height()));
    horizontalScrollBar()->setPageStep(visible.width());
    verticalScrollBar()->setPageStep(visible.height());
    horizontalScrollBar()->setSingleStep(view_.Zoom() * 8);
    verticalScrollBar()->setSingleStep(view_.Zoom() * 8);
}

void TexturePageWidget::ScrollToPosition(Point position) {
    horizontalScrollBar()->setValue(position.x);
    verticalScrollBar()->setValue(position.y);
}

void TexturePageWidget::Invalidate(const PageRect& rect) {
    viewport()->update(QRect(QPoint(rect.left, rect.top), QPoint(rect.right - 1, rect.bottom - 1)));
}

void TexturePageWidget::InvalidateAll() {
    viewport()->update();
}

void TexturePageWidget::PostRebuild() {
    if (rebuild_posted_) return;
    rebuild_posted_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            rebuild_posted_ = false;
            view_.RebuildIfNeeded();
        },
        Qt::QueuedConnection);
}

void TexturePageWidget::SetCursor(CursorShape shape) {
    viewport()->setCursor(QtCursor(shape));
}

void TexturePageWidget::StartTimer(int id, int milliseconds) {
    ants_timer_id_ = id;
    ants_timer_.start(milliseconds);
}

void TexturePageWidget::KillTimer(int /*id*/) {
    ants_timer_.stop();
}

void TexturePageWidget::PlaceFrame(int32_t width, int32_t height) {
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

void TexturePageWidget::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), Qt::white);
    if (Core::Image* buffer = view_.BackBuffer()) {
        // Page pixel p covers p * zoom - scroll onward, a square of the zoom's side, the cell
        // a click maps back to: one nearest-pixel blit of what the window shows.
        const Core::Size size = buffer->get_size();
        // The alpha byte is not shown, as a 32-bit picture on a screen has none.
        const QImage page(static_cast<const uchar*>(buffer->get_data()), size.width, size.height,
                          size.width * 4, QImage::Format_RGB32);
        const int zoom = view_.Zoom();
        const Point scroll = ScrollPosition();
        const QRect source(scroll.x / zoom, scroll.y / zoom, viewport()->width() / zoom + 2,
                           viewport()->height() / zoom + 2);
        const QRect shown = source.intersected(page.rect());
        const QRect target(shown.x() * zoom - scroll.x, shown.y() * zoom - scroll.y,
                           shown.width() * zoom, shown.height() * zoom);
        painter.drawImage(target, page, shown);
    }
    for (const Outline& outline : view_.Outlines()) {
        painter.setPen(PenFor(outline.pen, view_.AntStep()));
        QPoint points[5];
        for (size_t index = 0; index < outline.path.size(); ++index)
            points[index] = QPoint(outline.path[index].x, outline.path[index].y);
        painter.drawPolyline(points, 5);
    }
}

void TexturePageWidget::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) view_.OnLButtonDown(PointOf(event));
}

void TexturePageWidget::mouseMoveEvent(QMouseEvent* event) {
    view_.OnMouseMove(PointOf(event));
}

void TexturePageWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) view_.OnLButtonUp(PointOf(event));
}

void TexturePageWidget::keyPressEvent(QKeyEvent* event) {
    // The arrows move the selection; they do not scroll the page as well.
    if (const int key = VirtualKey(event->key()))
        view_.OnKeyDown(key);
    else
        QAbstractScrollArea::keyPressEvent(event);
}

void TexturePageWidget::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    UpdateBars();
}

void TexturePageWidget::scrollContentsBy(int /*dx*/, int /*dy*/) {
    viewport()->update();
}

namespace {

using namespace commands;

// A 16 by 16 picture drawn by `draw` on a clear ground.
template <typename Draw>
QIcon DrawnIcon(Draw draw) {
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    draw(painter);
    return QIcon(pixmap);
}

// A short label for a command without a picture of its own.
QIcon LabelIcon(const QString& label) {
    return DrawnIcon([&label](QPainter& painter) {
        QFont font = painter.font();
        font.setPixelSize(label.size() > 1 ? 8 : 11);
        font.setBold(true);
        painter.setFont(font);
        painter.setPen(QColor(0x20, 0x40, 0x90));
        painter.drawRect(0, 0, 15, 15);
        painter.drawText(QRect(0, 0, 16, 16), Qt::AlignCenter, label);
    });
}

// Two blocks with `gap` pixels between them: what a spacing command leaves between regions.
QIcon SpacingIcon(int gap) {
    return DrawnIcon([gap](QPainter& painter) {
        const int width = (14 - gap) / 2;
        painter.fillRect(1, 4, width, 8, QColor(0x30, 0x60, 0xC0));
        painter.fillRect(1 + width + gap, 4, width, 8, QColor(0x30, 0x60, 0xC0));
        painter.setPen(Qt::black);
        painter.drawText(QRect(0, 0, 16, 6), Qt::AlignCenter, QString::number(gap));
    });
}

// A toolbar button: a separator when `command` is 0.
struct Button {
    int command;
    const char* tip;
    const char* theme_icon;  // the desktop's picture, if it has one
    const char* label;       // drawn when the desktop has no picture; empty for a drawing
};

// The toolbar's buttons, in their order.
const Button kButtons[] = {
    {kImportRegions, "Import images into the texture page", "document-import", "+"},
    {kCopyOutsideToNew, "Copy regions outside to a new texture page", "document-new", "N"},
    {kCopyOutsideToExisting, "Copy regions outside to an existing texture page", "go-next", ">"},
    {0, nullptr, nullptr, nullptr},
    {kZoomIn, "Zoom in", "zoom-in", "Z+"},
    {kZoomOut, "Zoom out", "zoom-out", "Z-"},
    {0, nullptr, nullptr, nullptr},
    {kResizePage, "Resize texture page", "transform-scale", "R"},
    {kSelectUnusedColour, "Select unused space colour", "color-fill", ""},
    {kClearSpace, "Clear space", "edit-clear", "C"},
    {0, nullptr, nullptr, nullptr},
    {kSpacing0, "Set spacing on tiling regions to 0 pixels", nullptr, ""},
    {kSpacing1, "Set spacing on tiling regions to 1 pixels", nullptr, ""},
    {kSpacing2, "Set spacing on tiling regions to 2 pixels", nullptr, ""},
    {kSpacing3, "Set spacing on tiling regions to 3 pixels", nullptr, ""},
    {0, nullptr, nullptr, nullptr},
    {kTileBestFit, "Tile Region with best fit ratio", nullptr, "Fit"},
    {kTileByArea, "Tile Region by area", nullptr, "A"},
    {kTileByHeightThenWidth, "Tile Region by height then width", nullptr, "HW"},
    {kTileByWidthThenHeight, "Tile Region by width then height", nullptr, "WH"},
    {kTileByCircumference, "Tile Region by circumference", nullptr, "C+"},
};

// The picture of a button when the desktop has none.
QIcon FallbackIcon(const Button& button) {
    static constexpr int kSpacings[] = {kSpacing0, kSpacing1, kSpacing2, kSpacing3};
    for (int gap = 0; gap < 4; ++gap) {
        if (button.command == kSpacings[gap]) return SpacingIcon(gap);
    }
    if (button.command == kSelectUnusedColour) {
        return DrawnIcon([](QPainter& painter) {
            painter.fillRect(1, 1, 14, 14, QColor(0xCD, 0xCD, 0xCD));
            painter.drawRect(1, 1, 13, 13);
        });
    }
    return LabelIcon(QString::fromLatin1(button.label));
}

}  // namespace

TexturePageWindow::TexturePageWindow() {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    tool_bar_ = new QToolBar(this);
    tool_bar_->setIconSize(QSize(16, 16));
    page_ = new TexturePageWidget;
    layout->addWidget(tool_bar_);
    layout->addWidget(page_, 1);
    FillToolBar();
}

// Adds every button to `widget` (a toolbar or a menu) as an action that calls `run` with its
// command.
template <typename Widget, typename Run>
void AddButtons(Widget& widget, Run run) {
    for (const Button& button : kButtons) {
        if (button.command == 0) {
            widget.addSeparator();
            continue;
        }
        const QIcon fallback = FallbackIcon(button);
        const QIcon icon = button.theme_icon != nullptr
                               ? QIcon::fromTheme(QString::fromLatin1(button.theme_icon), fallback)
                               : fallback;
        QAction* action = widget.addAction(icon, QString::fromLatin1(button.tip));
        action->setStatusTip(QString::fromLatin1(button.tip));
        action->setData(button.command);
        const int command = button.command;
        QObject::connect(action, &QAction::triggered, &widget, [run, command] { run(command); });
    }
}

void TexturePageWindow::FillToolBar() {
    AddButtons(*tool_bar_, [this](int command) {
        page_->View().OnCommand(command);
        page_->setFocus();
    });
}

void TexturePageWindow::FillMenu(QMenu& menu, std::function<TexturePageWindow*()> active) {
    AddButtons(menu, [active](int command) {
        if (TexturePageWindow* window = active()) window->Action(command)->trigger();
    });
}

QAction* TexturePageWindow::Action(int command) const {
    for (QAction* action : tool_bar_->actions()) {
        if (action->data().toInt() == command) return action;
    }
    return nullptr;
}
