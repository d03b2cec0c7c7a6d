#include "LayoutPageWindow.h"

#include <QActionGroup>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QToolBar>

#include "CommandButtons.h"
#include "ZSortDialog.h"
#include "shell/CommandIds.h"

namespace {

using namespace commands;

QCursor QtCursor(LayoutCursor cursor) {
    switch (cursor) {
        case LayoutCursor::SizeNWSE:
            return Qt::SizeFDiagCursor;
        case LayoutCursor::SizeNESW:
            return Qt::SizeBDiagCursor;
        case LayoutCursor::SizeNS:
            return Qt::SizeVerCursor;
        case LayoutCursor::SizeWE:
            return Qt::SizeHorCursor;
        case LayoutCursor::Magnify: {
            // A magnifying glass whose hot spot is the middle of its lens.
            QPixmap glass(24, 24);
            glass.fill(Qt::transparent);
            QPainter painter(&glass);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(QPen(Qt::black, 2));
            painter.setBrush(QColor(255, 255, 255, 160));
            painter.drawEllipse(QPointF(9, 9), 7, 7);
            painter.setPen(QPen(Qt::black, 3));
            painter.drawLine(QPointF(14, 14), QPointF(22, 22));
            return QCursor(glass, 9, 9);
        }
        case LayoutCursor::Move:
            break;
    }
    return Qt::ArrowCursor;
}

// The pen of the dash-dot-dot outlines: 9 on, 3 off, 3 on, 3 off, 3 on, 3 off, one device
// pixel wide at every zoom.
QPen OutlinePen(bool blue) {
    QPen pen(blue ? QColor(0, 0, 255) : QColor(0, 0, 0), 0, Qt::CustomDashLine);
    pen.setDashPattern({9, 3, 3, 3, 3, 3});
    return pen;
}

// The toolbar's buttons, in their order; the first five are the tools.
const CommandButton kButtons[] = {
    {kSelectAndMove, "Select and move pieces", nullptr},
    {kMoveHorizontal, "Select and move pieces horizontally", nullptr},
    {kMoveVertical, "Select and move pieces vertically", nullptr},
    {kSelectByGroup, "Select by group", nullptr},
    {kMagnifyArea, "Magnify selected area", nullptr},
    {0, nullptr, nullptr},
    {kMagnify, "Magnify", "zoom-in"},
    {kReduce, "Reduce", "zoom-out"},
    {0, nullptr, nullptr},
    {kInsertObject, "Insert user interface object into layout", nullptr},
    {kClonePiece, "Clone selected piece", nullptr},
    {kUndoResize, "Undo resize on selected piece", nullptr},
    {0, nullptr, nullptr},
    {kEditSelectedPiece, "Edit selected piece", nullptr},
    {kZSort, "Z sort pieces", nullptr},
    {kCreateEditGroup, "Create edit group", nullptr},
    {0, nullptr, nullptr},
    {kCentreHorizontally, "Centre horizontally all the currently selected pieces", nullptr},
    {kCentreVertically, "Centre vertically all the currently selected pieces", nullptr},
    {0, nullptr, nullptr},
    {kAlignLeft, "Align all the currently selected pieces to the left", nullptr},
    {kAlignHorizontalCentre, "Align all the currently selected pieces to the horizontal centre",
     nullptr},
    {kAlignRight, "Align all the currently selected pieces to the right", nullptr},
    {kAlignTop, "Align all the currently selected pieces to the top", nullptr},
    {kAlignVerticalCentre, "Align all the currently selected pieces to the vertical centre",
     nullptr},
    {kAlignBottom, "Align all the currently selected pieces to the bottom", nullptr},
    {0, nullptr, nullptr},
    {kSpaceEvenlyAcross, "Space all the currently selected pieces evenly horizontally", nullptr},
    {kSpaceEvenlyDown, "Space all the currently selected pieces evenly vertically", nullptr},
    {0, nullptr, nullptr},
    {kSameWidth, "Make all the currently selected pieces the same size width", nullptr},
    {kSameHeight, "Make all the currently selected pieces the same size height", nullptr},
    {kSameSize, "Make all the currently selected pieces the same size width and height", nullptr},
    {0, nullptr, nullptr},
    {kSnapCentres, "Snap centres", nullptr},
};

constexpr int kTools[] = {kSelectAndMove, kMoveHorizontal, kMoveVertical, kSelectByGroup,
                          kMagnifyArea};

}  // namespace

LayoutPageWidget::LayoutPageWidget()
    : ZoomScrollArea([this]() -> CZoomView& { return view_; },
                     [this] { view_.RebuildIfNeeded(); }) {}

LayoutPageWidget::~LayoutPageWidget() {
    CloseZSortDialog();
}

void LayoutPageWidget::SetCursor(LayoutCursor cursor) {
    viewport()->setCursor(QtCursor(cursor));
}

void LayoutPageWidget::PlaceFrame(int32_t width, int32_t height) {
    PlaceMdiFrame(width, height);
}

int LayoutPageWidget::TrackPieceMenu(Point device) {
    QMenu menu(this);
    const struct {
        int command;
        const char* text;
    } entries[] = {{kEditPiece, "Edit..."},
                   {kResetScaling, "Reset scaling"},
                   {0, nullptr},
                   {kCopyAttributes, "Copy Attributes"},
                   {kPasteAttributes, "Paste Attributes"}};
    for (const auto& entry : entries) {
        if (entry.command == 0) {
            menu.addSeparator();
            continue;
        }
        QAction* action = menu.addAction(QString::fromLatin1(entry.text));
        action->setData(entry.command);
    }
    const QAction* chosen = menu.exec(viewport()->mapToGlobal(QPoint(device.x, device.y)));
    return chosen != nullptr ? chosen->data().toInt() : 0;
}

bool LayoutPageWidget::OpenZSortDialog(ZSortList& list) {
    z_sort_dialog_ = new ZSortDialog(
        list,
        [this] {
            // The dialog has finished closing: it and its list go now.
            ZSortDialog* closed = z_sort_dialog_;
            z_sort_dialog_ = nullptr;
            view_.OnZSortClosed();
            delete closed;
        },
        this);
    z_sort_dialog_->show();
    return true;
}

void LayoutPageWidget::CloseZSortDialog() {
    // Deleting the dialog drops its pending report too: the view asked for this itself.
    delete z_sort_dialog_;
    z_sort_dialog_ = nullptr;
}

void LayoutPageWidget::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(viewport());
    PaintPage(painter, view_.BackBuffer());
    for (const LayoutOutline& outline : view_.Outlines()) {
        painter.setPen(OutlinePen(outline.blue));
        QPoint points[5];
        for (size_t index = 0; index < outline.path.size(); ++index)
            points[index] = QPoint(outline.path[index].x, outline.path[index].y);
        painter.drawPolyline(points, 5);
    }
}

void LayoutPageWidget::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        view_.OnLButtonDown(PointOf(event), event->modifiers().testFlag(Qt::ControlModifier));
    else if (event->button() == Qt::RightButton)
        view_.OnRButtonDown(PointOf(event));
}

void LayoutPageWidget::mouseMoveEvent(QMouseEvent* event) {
    // Without a button held the pointer asks which cursor it shows, as it moves.
    if (event->buttons() == Qt::NoButton) view_.OnSetCursor();
    view_.OnMouseMove(PointOf(event));
}

void LayoutPageWidget::enterEvent(QEnterEvent* event) {
    view_.OnSetCursor();
    ZoomScrollArea::enterEvent(event);
}

void LayoutPageWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        view_.OnLButtonUp(PointOf(event));
    else if (event->button() == Qt::RightButton)
        view_.OnRButtonUp(PointOf(event));
}

void LayoutPageWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        view_.OnLButtonDblClk(PointOf(event));
    else if (event->button() == Qt::RightButton)
        view_.OnRButtonDblClk(PointOf(event));
}

void LayoutPageWidget::keyPressEvent(QKeyEvent* event) {
    if (ZoomKey(event)) return;
    // The arrows move the selection; they do not scroll the page as well.
    if (const int key = VirtualKey(event->key()))
        view_.OnKeyDown(key);
    else
        QAbstractScrollArea::keyPressEvent(event);
}

void LayoutPageWidget::keyReleaseEvent(QKeyEvent* event) {
    if (const int key = VirtualKey(event->key()))
        view_.OnKeyUp(key);
    else
        QAbstractScrollArea::keyReleaseEvent(event);
}

LayoutPageWindow::LayoutPageWindow() : page_(new LayoutPageWidget) {
    SetPage(page_, kButtons, [this](int command) { page_->View().OnCommand(command); });
    // The tools are a check group, the first of them pressed.
    auto* tools = new QActionGroup(this);
    for (const int tool : kTools) {
        QAction* action = Action(tool);
        action->setCheckable(true);
        tools->addAction(action);
    }
    Action(kTools[0])->setChecked(true);
}

void LayoutPageWindow::FillMenu(QMenu& menu, std::function<LayoutPageWindow*()> active) {
    FillMenuWith(menu, kButtons, std::move(active));
}
