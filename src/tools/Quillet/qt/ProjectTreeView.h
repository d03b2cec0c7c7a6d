// The project window: a tree of everything the project holds.
#pragma once

#include <QTreeWidget>

#include "MdiFrame.h"

struct TreeNode;

class ProjectTreeView : public QTreeWidget, public FramedView<> {
    Q_OBJECT
public:
    ProjectTreeView();
    void OnUpdate(framework::View* sender, long hint, void* object) override;

private:
    void SelectPath(const QStringList& path);
    void AddNodes(QTreeWidgetItem* parent, const std::vector<TreeNode>& nodes);
};
