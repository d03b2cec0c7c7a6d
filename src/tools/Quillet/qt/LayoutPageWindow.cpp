#include "LayoutPageWindow.h"

#include <QActionGroup>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QToolBar>
#include <cmath>

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

const QColor kInk(0x20, 0x40, 0x90);
const QColor kBlock(0x30, 0x60, 0xC0);

// Blocks of the given rectangles with a guide line from (x1, y1) to (x2, y2): the picture
// of an alignment or spacing command.
QIcon BlocksIcon(std::initializer_list<QRect> blocks, QLine guide) {
    return DrawnIcon([blocks, guide](QPainter& painter) {
        for (const QRect& block : blocks)
            painter.fillRect(block, kBlock);
        painter.setPen(QPen(Qt::black, 1));
        if (!guide.isNull()) painter.drawLine(guide);
    });
}

// A line with an arrow head at each end that `heads` asks for.
QIcon ArrowIcon(QLine shaft, bool both_heads) {
    return DrawnIcon([shaft, both_heads](QPainter& painter) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(kInk, 1.5));
        painter.drawLine(shaft);
        const auto head = [&painter](QPointF tip, QPointF back) {
            const QPointF along = (tip - back) / std::hypot(tip.x() - back.x(), tip.y() - back.y());
            const QPointF across(-along.y(), along.x());
            painter.drawLine(tip, tip - 4 * along + 3 * across);
            painter.drawLine(tip, tip - 4 * along - 3 * across);
        };
        head(shaft.p2(), shaft.p1());
        if (both_heads) head(shaft.p1(), shaft.p2());
    });
}

// The picture of a button that the desktop has none for; null for a plain label.
QIcon DrawnPicture(int command) {
    switch (command) {
        case kSelectAndMove:
            return ArrowIcon(QLine(13, 13, 3, 3), false);
        case kMoveHorizontal:
            return ArrowIcon(QLine(1, 8, 14, 8), true);
        case kMoveVertical:
            return ArrowIcon(QLine(8, 1, 8, 14), true);
        case kSelectByGroup:
            return DrawnIcon([](QPainter& painter) {
                painter.setPen(QPen(kInk, 1, Qt::DotLine));
                painter.drawRect(0, 0, 15, 15);
                painter.fillRect(3, 3, 5, 5, kBlock);
                painter.fillRect(8, 8, 5, 5, kBlock);
            });
        case kAlignLeft:
            return BlocksIcon({QRect(2, 2, 10, 4), QRect(2, 9, 6, 4)}, QLine(1, 0, 1, 15));
        case kAlignHorizontalCentre:
            return BlocksIcon({QRect(3, 2, 10, 4), QRect(5, 9, 6, 4)}, QLine(8, 0, 8, 15));
        case kAlignRight:
            return BlocksIcon({QRect(4, 2, 10, 4), QRect(8, 9, 6, 4)}, QLine(14, 0, 14, 15));
        case kAlignTop:
            return BlocksIcon({QRect(2, 2, 4, 10), QRect(9, 2, 4, 6)}, QLine(0, 1, 15, 1));
        case kAlignVerticalCentre:
            return BlocksIcon({QRect(2, 3, 4, 10), QRect(9, 5, 4, 6)}, QLine(0, 8, 15, 8));
        case kAlignBottom:
            return BlocksIcon({QRect(2, 4, 4, 10), QRect(9, 8, 4, 6)}, QLine(0, 14, 15, 14));
        case kSpaceEvenlyAcross:
            return BlocksIcon({QRect(0, 5, 3, 6), QRect(6, 5, 3, 6), QRect(12, 5, 3, 6)}, {});
        case kSpaceEvenlyDown:
            return BlocksIcon({QRect(5, 0, 6, 3), QRect(5, 6, 6, 3), QRect(5, 12, 6, 3)}, {});
        case kSameWidth:
            return BlocksIcon({QRect(2, 2, 12, 4), QRect(2, 9, 12, 4)}, {});
        case kSameHeight:
            return BlocksIcon({QRect(2, 2, 4, 12), QRect(9, 2, 4, 12)}, {});
        case kSameSize:
            return BlocksIcon({QRect(1, 1, 6, 6), QRect(9, 9, 6, 6)}, {});
        case kCentreHorizontally:
            return BlocksIcon({QRect(5, 4, 6, 8)}, QLine(8, 0, 8, 15));
        case kCentreVertically:
            return BlocksIcon({QRect(4, 5, 8, 6)}, QLine(0, 8, 15, 8));
        default:
            return {};
    }
}

// The toolbar's buttons, in their order; the first five are the tools.
const CommandButton kButtons[] = {
    {kSelectAndMove, "Select and move pieces", nullptr, ""},
    {kMoveHorizontal, "Select and move pieces horizontally", nullptr, ""},
    {kMoveVertical, "Select and move pieces vertically", nullptr, ""},
    {kSelectByGroup, "Select by group", nullptr, ""},
    {kMagnifyArea, "Magnify selected area", "zoom-select", "Q"},
    {0, nullptr, nullptr, nullptr},
    {kMagnify, "Magnify", "zoom-in", "Z+"},
    {kReduce, "Reduce", "zoom-out", "Z-"},
    {0, nullptr, nullptr, nullptr},
    {kInsertObject, "Insert user interface object into layout", "insert-object", "+", false},
    {kClonePiece, "Clone selected piece", "edit-copy", "C", false},
    {kUndoResize, "Undo resize on selected piece", nullptr, "1:1", false},
    {0, nullptr, nullptr, nullptr},
    {kEditSelectedPiece, "Edit selected piece", "document-properties", "E", false},
    {kZSort, "Z sort pieces", nullptr, "Zs"},
    {kCreateEditGroup, "Create edit group", nullptr, "EG", false},
    {0, nullptr, nullptr, nullptr},
    {kCentreHorizontally, "Centre horizontally all the currently selected pieces", nullptr, ""},
    {kCentreVertically, "Centre vertically all the currently selected pieces", nullptr, ""},
    {0, nullptr, nullptr, nullptr},
    {kAlignLeft, "Align all the currently selected pieces to the left", nullptr, ""},
    {kAlignHorizontalCentre, "Align all the currently selected pieces to the horizontal centre",
     nullptr, ""},
    {kAlignRight, "Align all the currently selected pieces to the right", nullptr, ""},
    {kAlignTop, "Align all the currently selected pieces to the top", nullptr, ""},
    {kAlignVerticalCentre, "Align all the currently selected pieces to the vertical centre",
     nullptr, ""},
    {kAlignBottom, "Align all the currently selected pieces to the bottom", nullptr, ""},
    {0, nullptr, nullptr, nullptr},
    {kSpaceEvenlyAcross, "Space all the currently selected pieces evenly horizontally", nullptr,
     ""},
    {kSpaceEvenlyDown, "Space all the currently selected pieces evenly vertically", nullptr, ""},
    {0, nullptr, nullptr, nullptr},
    {kSameWidth, "Make all the currently selected pieces the same size width", nullptr, ""},
    {kSameHeight, "Make all the currently selected pieces the same size height", nullptr, ""},
    {kSameSize, "Make all the currently selected pieces the same size width and height", nullptr,
     ""},
    {0, nullptr, nullptr, nullptr},
    {kSnapCentres, "Snap centres", nullptr, "S"},
};

constexpr int kTools[] = {kSelectAndMove, kMoveHorizontal, kMoveVertical, kSelectByGroup,
                          kMagnifyArea};

const PageCommands kCommands{kButtons, DrawnPicture};

}  // namespace

LayoutPageWidget::LayoutPageWidget()
    : ZoomScrollArea([this] { return view_.Zoom(); }, [this] { view_.RebuildIfNeeded(); }) {}

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
    // What these entries do comes with the piece dialogs; until then they stay disabled.
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
        action->setEnabled(false);
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
    SetPage(page_, kCommands, [this](int command) { page_->View().OnCommand(command); });
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
    FillMenuWith(menu, kCommands, std::move(active));
}
