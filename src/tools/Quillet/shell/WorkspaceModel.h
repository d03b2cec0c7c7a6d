// The nodes the project window shows, kept node by node: a change of the project adds,
// removes or renames only the nodes that differ, so what the person opened and selected
// stays as it was. The window mirrors each step through the observer.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "WorkspaceTree.h"

struct WorkspaceNode {
    std::string text;
    bool is_record = false;
    bool sorted_children = false;
    WorkspaceNode* parent = nullptr;
    std::vector<std::unique_ptr<WorkspaceNode>> children;

    size_t Index() const;
    // The child of that text, or null.
    WorkspaceNode* Child(const std::string& child_text) const;
};

class WorkspaceObserver {
public:
    virtual ~WorkspaceObserver() = default;
    // The node stands in its parent's children, at its index, with its own children.
    virtual void NodeAdded(const WorkspaceNode& node) = 0;
    // The node and its children are about to go.
    virtual void NodeRemoving(const WorkspaceNode& node) = 0;
    virtual void NodeRenamed(const WorkspaceNode& node) = 0;
};

class WorkspaceModel {
public:
    WorkspaceModel();

    // The invisible node above the top-level nodes.
    WorkspaceNode& Root() { return *root_; }
    const WorkspaceNode& Root() const { return *root_; }
    void SetObserver(WorkspaceObserver* observer) { observer_ = observer; }
    // Told of each node about to go, before the observer: what holds on to nodes lets go.
    void SetRemovalHook(std::function<void(const WorkspaceNode&)> hook) {
        removal_hook_ = std::move(hook);
    }

    // Makes the children of `parent` what `wanted` says, node by node. Folders the person
    // made stay although no record is in them, where `keep_folders` says so.
    void Sync(WorkspaceNode& parent, const std::vector<TreeNode>& wanted, bool keep_folders);
    // Adds a node: in tree order among its siblings when the parent keeps that order (after
    // those of an equal text), else last.
    WorkspaceNode& Add(WorkspaceNode& parent, const TreeNode& node);
    void Remove(WorkspaceNode& node);
    void Rename(WorkspaceNode& node, std::string text);

    // A node of that text anywhere below `under`, depth first; null when there is none.
    static WorkspaceNode* FindBelow(const WorkspaceNode& under, const std::string& text);
    // The texts from the top level down to `node`.
    static std::vector<std::string> PathOf(const WorkspaceNode& node);
    // The node that `path` names from the top level, or null.
    WorkspaceNode* NodeAt(const std::vector<std::string>& path) const;

private:
    void SyncSorted(WorkspaceNode& parent, const std::vector<TreeNode>& wanted, bool keep_folders);
    void SyncFixed(WorkspaceNode& parent, const std::vector<TreeNode>& wanted);

    std::unique_ptr<WorkspaceNode> root_;
    WorkspaceObserver* observer_ = nullptr;
    std::function<void(const WorkspaceNode&)> removal_hook_;
};
