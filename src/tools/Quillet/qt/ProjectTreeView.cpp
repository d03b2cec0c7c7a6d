#include "ProjectTreeView.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDrag>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QTimer>

#include "Icons.h"
#include "QtText.h"

namespace {

const QString kDragFormat = QStringLiteral("application/x-quillet-workspace-node");

}  // namespace

ProjectTreeView::ProjectTreeView() {
    setHeaderHidden(true);
    setRootIsDecorated(true);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(false);
    setDragDropMode(QAbstractItemView::DragDrop);
    view_.Model().SetObserver(this);
    connect(this, &QTreeWidget::currentItemChanged, this,
            [this](QTreeWidgetItem* item) { view_.Select(NodeOf(item)); });
    // Enter or a double click opens what the node stands for.
    connect(this, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        view_.Select(NodeOf(item));
        view_.OpenSelected();
    });
}

ProjectTreeView::~ProjectTreeView() {
    view_.Model().SetObserver(nullptr);
}

WorkspaceNode* ProjectTreeView::NodeOf(const QTreeWidgetItem* item) const {
    return nodes_.value(item, nullptr);
}

QTreeWidgetItem* ProjectTreeView::MakeItem(const WorkspaceNode& node) {
    auto* item = new QTreeWidgetItem(QStringList(ToQString(node.text)));
    item->setIcon(0, node.is_record ? TreeLeafIcon() : TreeFolderIcon());
    items_.insert(&node, item);
    nodes_.insert(item, const_cast<WorkspaceNode*>(&node));
    for (const auto& child : node.children)
        item->addChild(MakeItem(*child));
    return item;
}

void ProjectTreeView::NodeAdded(const WorkspaceNode& node) {
    QTreeWidgetItem* parent =
        node.parent->parent == nullptr ? invisibleRootItem() : items_.value(node.parent);
    QTreeWidgetItem* item = MakeItem(node);
    parent->insertChild(static_cast<int>(node.Index()), item);
    // The top levels and the fixed nodes below them stand open, as the project first shows.
    if (node.parent->parent == nullptr) item->setExpanded(true);
}

void ProjectTreeView::NodeRemoving(const WorkspaceNode& node) {
    QTreeWidgetItem* item = items_.value(&node);
    std::vector<const WorkspaceNode*> pending{&node};
    while (!pending.empty()) {
        const WorkspaceNode* at = pending.back();
        pending.pop_back();
        nodes_.remove(items_.take(at));
        for (const auto& child : at->children)
            pending.push_back(child.get());
    }
    delete item;
}

void ProjectTreeView::NodeRenamed(const WorkspaceNode& node) {
    if (QTreeWidgetItem* item = items_.value(&node)) item->setText(0, ToQString(node.text));
}

void ProjectTreeView::PostSync() {
    if (sync_posted_) return;
    sync_posted_ = true;
    QTimer::singleShot(0, this, [this] {
        sync_posted_ = false;
        view_.SyncIfNeeded();
    });
}

void ProjectTreeView::Beep() {
    QApplication::beep();
}

void ProjectTreeView::RunMenuCommand(QTreeWidgetItem* item, int command) {
    setCurrentItem(item);
    view_.Select(NodeOf(item));
    view_.OnCommand(command);
}

void ProjectTreeView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Delete && event->modifiers() == Qt::NoModifier) {
        view_.DeleteSelected();
        return;
    }
    QTreeWidget::keyPressEvent(event);
}

void ProjectTreeView::contextMenuEvent(QContextMenuEvent* event) {
    QTreeWidgetItem* item = itemAt(event->pos());
    const WorkspaceNode* node = NodeOf(item);
    if (node == nullptr) return;
    setCurrentItem(item);
    const std::vector<MenuEntry> entries = view_.ContextMenu(*node);
    if (entries.empty()) return;
    QMenu menu(this);
    for (const MenuEntry& entry : entries)
        menu.addAction(ToQString(entry.text))->setData(entry.command);
    if (const QAction* chosen = menu.exec(event->globalPos()))
        RunMenuCommand(item, chosen->data().toInt());
}

QMimeData* ProjectTreeView::DragData(const WorkspaceNode& node) {
    QStringList path;
    for (const std::string& text : WorkspaceModel::PathOf(node))
        path.append(ToQString(text));
    auto* mime = new QMimeData;
    mime->setData(kDragFormat, path.join(QLatin1Char('\n')).toUtf8());
    return mime;
}

void ProjectTreeView::startDrag(Qt::DropActions /*actions*/) {
    const WorkspaceNode* node = NodeOf(currentItem());
    if (node == nullptr || !view_.CanDrag(*node)) return;
    auto* drag = new QDrag(this);
    drag->setMimeData(DragData(*node));
    drag->setPixmap(currentItem()->icon(0).pixmap(16, 16));
    drag->exec(Qt::MoveAction);
}

const WorkspaceNode* ProjectTreeView::DraggedNode(const QDropEvent* event) const {
    if (!event->mimeData()->hasFormat(kDragFormat)) return nullptr;
    std::vector<std::string> path;
    for (const QString& text :
         QString::fromUtf8(event->mimeData()->data(kDragFormat)).split(QLatin1Char('\n')))
        path.push_back(FromQString(text));
    return view_.Model().NodeAt(path);
}

void ProjectTreeView::dragEnterEvent(QDragEnterEvent* event) {
    if (DraggedNode(event) != nullptr)
        event->acceptProposedAction();
    else
        event->ignore();
}

void ProjectTreeView::dragMoveEvent(QDragMoveEvent* event) {
    const WorkspaceNode* source = DraggedNode(event);
    QTreeWidgetItem* over = itemAt(event->position().toPoint());
    if (source == nullptr || over == nullptr) {
        event->ignore();
        return;
    }
    // The item under the pointer is the drop target's highlight.
    setCurrentItem(over, 0, QItemSelectionModel::NoUpdate);
    selectionModel()->select(indexFromItem(over), QItemSelectionModel::ClearAndSelect);
    event->setDropAction(Qt::MoveAction);
    event->accept();
}

void ProjectTreeView::dropEvent(QDropEvent* event) {
    const WorkspaceNode* source = DraggedNode(event);
    const WorkspaceNode* target = NodeOf(itemAt(event->position().toPoint()));
    // Qt moves nothing itself: the view moves the record, and the nodes follow.
    event->setDropAction(Qt::IgnoreAction);
    event->accept();
    if (source == nullptr || target == nullptr) {
        Beep();
        return;
    }
    // The move runs once the drag is over: it replaces the dragged item.
    QTimer::singleShot(
        0, this,
        [this, from = WorkspaceModel::PathOf(*source), to = WorkspaceModel::PathOf(*target)] {
            const WorkspaceNode* moved = view_.Model().NodeAt(from);
            const WorkspaceNode* into = view_.Model().NodeAt(to);
            if (moved != nullptr && into != nullptr) view_.Drop(*moved, *into);
        });
}
