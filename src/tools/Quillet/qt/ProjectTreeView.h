// The project window: a tree control that mirrors the workspace's nodes one by one and
// passes the person's selection, keys, menus and drags to the view's logic.
#pragma once

#include <QHash>
#include <QTreeWidget>

#include "MdiFrame.h"
#include "shell/QuilletView.h"

class QMimeData;

class ProjectTreeView : public QTreeWidget, public WorkspaceCanvas, public WorkspaceObserver {
    Q_OBJECT
public:
    ProjectTreeView();
    ~ProjectTreeView() override;

    FramedView<CQuilletView>& View() { return view_; }
    // The item that shows `node`, or null.
    QTreeWidgetItem* ItemOf(const WorkspaceNode& node) const { return items_.value(&node); }
    // The node an item shows, or null.
    WorkspaceNode* NodeOf(const QTreeWidgetItem* item) const;
    // What a drag of `node` carries: its place in the tree.
    static QMimeData* DragData(const WorkspaceNode& node);
    // Runs a context menu command on the item, as choosing it from the item's menu does.
    void RunMenuCommand(QTreeWidgetItem* item, int command);

    void PostSync() override;
    void Beep() override;
    void NodeAdded(const WorkspaceNode& node) override;
    void NodeRemoving(const WorkspaceNode& node) override;
    void NodeRenamed(const WorkspaceNode& node) override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void startDrag(Qt::DropActions actions) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    QTreeWidgetItem* MakeItem(const WorkspaceNode& node);
    // The node of this tree that a drag carries, or null.
    const WorkspaceNode* DraggedNode(const QDropEvent* event) const;

    FramedView<CQuilletView> view_{*this};
    QHash<const WorkspaceNode*, QTreeWidgetItem*> items_;
    QHash<const QTreeWidgetItem*, WorkspaceNode*> nodes_;
    bool sync_posted_ = false;
};
