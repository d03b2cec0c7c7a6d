#include "ProjectTreeView.h"

#include <QSet>
#include <QStyle>

#include "QtText.h"
#include "shell/WorkspaceTree.h"

namespace {

// A node's place in the tree: the texts from the root down.
QStringList PathOf(const QTreeWidgetItem* item) {
    QStringList path;
    for (; item != nullptr; item = item->parent())
        path.prepend(item->text(0));
    return path;
}

void CollectExpanded(const QTreeWidgetItem* item, QSet<QStringList>& expanded) {
    for (int index = 0; index < item->childCount(); ++index) {
        const QTreeWidgetItem* child = item->child(index);
        if (child->isExpanded()) expanded.insert(PathOf(child));
        CollectExpanded(child, expanded);
    }
}

void RestoreExpanded(QTreeWidgetItem* item, const QSet<QStringList>& expanded) {
    for (int index = 0; index < item->childCount(); ++index) {
        QTreeWidgetItem* child = item->child(index);
        if (expanded.contains(PathOf(child))) child->setExpanded(true);
        RestoreExpanded(child, expanded);
    }
}

}  // namespace

ProjectTreeView::ProjectTreeView() {
    setHeaderHidden(true);
    setRootIsDecorated(true);
    // Enter or a double click opens the page or menu a node stands for.
    connect(this, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        auto* project = dynamic_cast<CQuilletDoc*>(GetDocument());
        if (project == nullptr) return;
        std::vector<std::string> path;
        for (const QString& text : PathOf(item))
            path.push_back(FromQString(text));
        OpenWorkspaceItem(*project, path);
    });
}

void ProjectTreeView::OnUpdate(framework::View* /*sender*/, long /*hint*/, void* /*object*/) {
    const auto* project = dynamic_cast<const CQuilletDoc*>(GetDocument());
    if (project == nullptr) return;
    // The tree is rebuilt whole; what the person opened and picked stays open and picked.
    const bool first_build = topLevelItemCount() == 0;
    QSet<QStringList> expanded;
    CollectExpanded(invisibleRootItem(), expanded);
    const QStringList current = currentItem() != nullptr ? PathOf(currentItem()) : QStringList();
    clear();
    AddNodes(invisibleRootItem(), BuildWorkspaceTree(*project));
    if (first_build)
        expandToDepth(0);
    else
        RestoreExpanded(invisibleRootItem(), expanded);
    if (!current.isEmpty()) SelectPath(current);
}

void ProjectTreeView::SelectPath(const QStringList& path) {
    QTreeWidgetItem* item = invisibleRootItem();
    for (const QString& text : path) {
        QTreeWidgetItem* next = nullptr;
        for (int index = 0; index < item->childCount() && next == nullptr; ++index) {
            if (item->child(index)->text(0) == text) next = item->child(index);
        }
        if (next == nullptr) return;
        item = next;
    }
    setCurrentItem(item);
}

void ProjectTreeView::AddNodes(QTreeWidgetItem* parent, const std::vector<TreeNode>& nodes) {
    const QIcon folder = style()->standardIcon(QStyle::SP_DirIcon);
    const QIcon leaf = style()->standardIcon(QStyle::SP_FileIcon);
    for (const TreeNode& node : nodes) {
        auto* item = new QTreeWidgetItem(parent, QStringList(ToQString(node.text)));
        item->setIcon(0, node.is_record ? leaf : folder);
        AddNodes(item, node.children);
    }
}
