#include "ZSortDialog.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "QtText.h"
#include "layout/ZSortList.h"

namespace {

// Two overlapping sheets: one piece lying over another.
QIcon RowIcon() {
    QPixmap picture(16, 16);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setPen(Qt::black);
    painter.setBrush(QColor(0x80, 0xA0, 0xE0));
    painter.drawRect(5, 1, 9, 7);
    painter.setBrush(QColor(0xE0, 0xC0, 0x60));
    painter.drawRect(1, 7, 9, 7);
    return QIcon(picture);
}

}  // namespace

ZSortDialog::ZSortDialog(ZSortList& list, std::function<void()> on_closed, QWidget* parent)
    : QDialog(parent), list_(list), on_closed_(std::move(on_closed)), row_icon_(RowIcon()) {
    setWindowTitle(QStringLiteral("Z Sort"));
    tree_ = new QTreeWidget;
    tree_->setHeaderHidden(true);
    tree_->setRootIsDecorated(false);
    tree_->setUniformRowHeights(true);
    tree_->setSelectionMode(QAbstractItemView::SingleSelection);
    tree_->viewport()->installEventFilter(this);
    Fill(std::nullopt);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tree_);
    layout->addWidget(buttons);
    resize(260, 360);
}

void ZSortDialog::accept() {
    list_.Apply();
    QDialog::accept();
}

void ZSortDialog::done(int result) {
    EndDrag();
    QDialog::done(result);
    if (closed_) return;
    closed_ = true;
    // Queued on the application rather than on the dialog, so that the owner deletes the
    // dialog outside any event of its own; a dialog deleted before then is not told.
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [dialog = QPointer<ZSortDialog>(this)] {
            if (dialog.isNull()) return;
            // Taken out first: the call may delete the dialog, and the function with it.
            const std::function<void()> on_closed = std::move(dialog->on_closed_);
            if (on_closed) on_closed();
        },
        Qt::QueuedConnection);
}

void ZSortDialog::Fill(std::optional<size_t> selected_row) {
    tree_->clear();
    for (const std::string& name : list_.Names()) {
        auto* item = new QTreeWidgetItem(tree_, QStringList(ToQString(name)));
        item->setIcon(0, row_icon_);
    }
    if (!selected_row) return;
    QTreeWidgetItem* selected = tree_->topLevelItem(static_cast<int>(*selected_row));
    tree_->setCurrentItem(selected);
    tree_->scrollToItem(selected);
}

// The drag is our own, on plain mouse events: the tree's own press handling would move its
// selection under the pointer and start a rubber band.
bool ZSortDialog::eventFilter(QObject* watched, QEvent* event) {
    if (watched != tree_->viewport()) return QDialog::eventFilter(watched, event);
    switch (event->type()) {
        case QEvent::MouseButtonPress: {
            const auto& mouse = static_cast<const QMouseEvent&>(*event);
            if (mouse.button() != Qt::LeftButton) return false;
            // A release that never came (a box took the mouse) ends the drag now.
            if (drag_row_) {
                Drop();
                return true;
            }
            BeginDrag(mouse);
            return true;
        }
        case QEvent::MouseMove:
            if (!drag_row_) return false;
            DragOver(static_cast<const QMouseEvent&>(*event));
            return true;
        case QEvent::MouseButtonRelease:
            if (!drag_row_ || static_cast<const QMouseEvent&>(*event).button() != Qt::LeftButton)
                return false;
            Drop();
            return true;
        default:
            return false;
    }
}

std::optional<size_t> ZSortDialog::RowAt(const QMouseEvent& event) const {
    const int row = tree_->indexOfTopLevelItem(tree_->itemAt(event.position().toPoint()));
    if (row < 0) return std::nullopt;
    return static_cast<size_t>(row);
}

void ZSortDialog::BeginDrag(const QMouseEvent& event) {
    tree_->setFocus();
    drag_row_ = RowAt(event);
    drop_row_.reset();
    if (!drag_row_) return;
    tree_->setCurrentItem(tree_->topLevelItem(static_cast<int>(*drag_row_)));
    tree_->viewport()->setCursor(Qt::DragMoveCursor);
}

// Over no row the drop target stays the last row passed over.
void ZSortDialog::DragOver(const QMouseEvent& event) {
    const std::optional<size_t> row = RowAt(event);
    if (!row) return;
    drop_row_ = row;
    tree_->setCurrentItem(tree_->topLevelItem(static_cast<int>(*row)));
}

// With no row passed over, the dragged row stays where it was.
void ZSortDialog::Drop() {
    const size_t source = *drag_row_;
    const std::optional<size_t> target = drop_row_;
    EndDrag();
    if (target) list_.MoveRow(source, *target);
    Fill(target.value_or(source));
}

void ZSortDialog::EndDrag() {
    drag_row_.reset();
    drop_row_.reset();
    tree_->viewport()->unsetCursor();
}
