#include "TexturePageWindow.h"

#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QToolBar>

#include "CommandButtons.h"
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
    : ZoomScrollArea([this] { return view_.Zoom(); }, [this] { view_.RebuildIfNeeded(); }) {
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
    // The arrows move the selection; they do not scroll the page as well.
    if (const int key = VirtualKey(event->key()))
        view_.OnKeyDown(key);
    else
        QAbstractScrollArea::keyPressEvent(event);
}

namespace {

using namespace commands;

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

// The toolbar's buttons, in their order.
const CommandButton kButtons[] = {
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

// The picture of a button that the desktop has none for; null for a plain label.
QIcon DrawnPicture(int command) {
    static constexpr int kSpacings[] = {kSpacing0, kSpacing1, kSpacing2, kSpacing3};
    for (int gap = 0; gap < 4; ++gap) {
        if (command == kSpacings[gap]) return SpacingIcon(gap);
    }
    if (command == kSelectUnusedColour) {
        return DrawnIcon([](QPainter& painter) {
            painter.fillRect(1, 1, 14, 14, QColor(0xCD, 0xCD, 0xCD));
            painter.drawRect(1, 1, 13, 13);
        });
    }
    return {};
}

const PageCommands kCommands{kButtons, DrawnPicture};

}  // namespace

TexturePageWindow::TexturePageWindow() : page_(new TexturePageWidget) {
    SetPage(page_, kCommands, [this](int command) { page_->View().OnCommand(command); });
}

void TexturePageWindow::FillMenu(QMenu& menu, std::function<TexturePageWindow*()> active) {
    FillMenuWith(menu, kCommands, std::move(active));
}
