#include "TexturePageWindow.h"

#include <QActionGroup>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QToolBar>
#include <iterator>

#include "CommandButtons.h"
#include "Icons.h"
#include "shell/CommandIds.h"

namespace {

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

}  // namespace

TexturePageWidget::TexturePageWidget()
    : ZoomScrollArea([this]() -> CZoomView& { return view_; },
                     [this] { view_.RebuildIfNeeded(); }) {
    ants_timer_.setSingleShot(true);
    connect(&ants_timer_, &QTimer::timeout, this, [this] { view_.OnTimer(ants_timer_id_); });
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

void TexturePageWidget::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(viewport());
    PaintPage(painter, view_.BackBuffer());
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
    if (ZoomKey(event)) return;
    // The arrows move the selection; they do not scroll the page as well.
    if (const int key = VirtualKey(event->key()))
        view_.OnKeyDown(key);
    else
        QAbstractScrollArea::keyPressEvent(event);
}

namespace {

using namespace commands;

// The toolbar's buttons, in their order.
const CommandButton kButtons[] = {
    {kImportRegions, "Import images into the texture page", nullptr},
    {kCopyOutsideToNew, "Copy regions outside to a new texture page", nullptr},
    {kCopyOutsideToExisting, "Copy regions outside to an existing texture page", nullptr},
    {0, nullptr, nullptr},
    {kZoomIn, "Zoom in", "zoom-in"},
    {kZoomOut, "Zoom out", "zoom-out"},
    {0, nullptr, nullptr},
    {kResizePage, "Resize texture page", nullptr},
    {kSelectUnusedColour, "Select unused space colour", nullptr},
    {kClearSpace, "Clear space", nullptr},
    {0, nullptr, nullptr},
    {kSpacing0, "Set spacing on tiling regions to 0 pixels", nullptr},
    {kSpacing1, "Set spacing on tiling regions to 1 pixels", nullptr},
    {kSpacing2, "Set spacing on tiling regions to 2 pixels", nullptr},
    {kSpacing3, "Set spacing on tiling regions to 3 pixels", nullptr},
    {0, nullptr, nullptr},
    {kTileBestFit, "Tile Region with best fit ratio", nullptr},
    {kTileTightest, "Tile Region tightest (most regions, smallest box)", nullptr},
    {kTileByArea, "Tile Region by area", nullptr},
    {kTileByHeightThenWidth, "Tile Region by height then width", nullptr},
    {kTileByWidthThenHeight, "Tile Region by width then height", nullptr},
    {kTileByCircumference, "Tile Region by circumference", nullptr},
};

// The spacing buttons, by the spacing in pixels they set.
constexpr int kSpacings[] = {kSpacing0, kSpacing1, kSpacing2, kSpacing3};

}  // namespace

TexturePageWindow::TexturePageWindow() : page_(new TexturePageWidget) {
    SetPage(page_, kButtons, [this](int command) {
        page_->View().OnCommand(command);
        ShowState();
    });
    // The spacings are a check group: the one the view tiles with is pressed.
    auto* spacings = new QActionGroup(this);
    for (const int spacing : kSpacings) {
        QAction* action = Action(spacing);
        action->setCheckable(true);
        spacings->addAction(action);
    }
    // The unused colour changes through the document as well (undo, clearing, another
    // window), and every change repaints the page: the swatch is checked then.
    page_->viewport()->installEventFilter(this);
    ShowState();
}

void TexturePageWindow::FillMenu(QMenu& menu, std::function<TexturePageWindow*()> active) {
    FillMenuWith(menu, kButtons, std::move(active));
}

void TexturePageWindow::ShowState() {
    const unsigned spacing = page_->View().Spacing();
    if (spacing < std::size(kSpacings)) Action(kSpacings[spacing])->setChecked(true);
    const CTexturePageDoc* document = page_->View().GetDocument();
    if (document == nullptr) return;
    const Core::Colour unused = document->GetUnusedColour();
    const QColor colour(unused.red, unused.green, unused.blue);
    if (colour == swatch_) return;
    swatch_ = colour;
    Action(kSelectUnusedColour)->setIcon(SwatchIcon(kSelectUnusedColour, colour, palette()));
}

void TexturePageWindow::ReinkButtons() {
    PageWindow::ReinkButtons();
    swatch_ = QColor();
    ShowState();
}

bool TexturePageWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Paint) ShowState();
    return PageWindow::eventFilter(watched, event);
}
