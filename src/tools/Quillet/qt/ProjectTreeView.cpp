#include "ProjectTreeView.h"

#include <QStyle>

#include "QtText.h"
#include "shell/WorkspaceTree.h"

ProjectTreeView::ProjectTreeView() {
    setHeaderHidden(true);
    setRootIsDecorated(true);
}

void ProjectTreeView::OnUpdate(framework::View* /*sender*/, long /*hint*/, void* /*object*/) {
    const auto* project = dynamic_cast<const CQuilletDoc*>(GetDocument());
    if (project == nullptr)
        return;
    clear();
    AddNodes(invisibleRootItem(), BuildWorkspaceTree(*project));
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
