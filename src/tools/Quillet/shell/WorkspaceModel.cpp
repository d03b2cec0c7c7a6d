#include "WorkspaceModel.h"

#include <algorithm>
#include <unordered_map>

size_t WorkspaceNode::Index() const {
    const auto& siblings = parent->children;
    return static_cast<size_t>(
        std::find_if(siblings.begin(), siblings.end(),
                     [this](const auto& sibling) { return sibling.get() == this; }) -
        siblings.begin());
}

WorkspaceNode* WorkspaceNode::Child(const std::string& child_text) const {
    for (const auto& child : children) {
        if (child->text == child_text) return child.get();
    }
    return nullptr;
}

WorkspaceModel::WorkspaceModel() : root_(std::make_unique<WorkspaceNode>()) {}

WorkspaceNode& WorkspaceModel::Add(WorkspaceNode& parent, const TreeNode& node) {
    auto made = std::make_unique<WorkspaceNode>();
    made->text = node.text;
    made->is_record = node.is_record;
    made->sorted_children = node.sorted_children;
    made->parent = &parent;
    auto at = parent.children.end();
    if (parent.sorted_children) {
        at = std::upper_bound(parent.children.begin(), parent.children.end(), node.text,
                              [](const std::string& text, const auto& sibling) {
                                  return TreeTextLess(text, sibling->text);
                              });
    }
    WorkspaceNode& added = **parent.children.insert(at, std::move(made));
    // The observer sees the node with its whole subtree, as one step.
    WorkspaceObserver* observer = observer_;
    observer_ = nullptr;
    for (const TreeNode& child : node.children)
        Add(added, child);
    observer_ = observer;
    if (observer_ != nullptr) observer_->NodeAdded(added);
    return added;
}

void WorkspaceModel::Remove(WorkspaceNode& node) {
    if (removal_hook_) removal_hook_(node);
    if (observer_ != nullptr) observer_->NodeRemoving(node);
    auto& siblings = node.parent->children;
    siblings.erase(siblings.begin() + static_cast<std::ptrdiff_t>(node.Index()));
}

void WorkspaceModel::Rename(WorkspaceNode& node, std::string text) {
    if (node.text == text) return;
    node.text = std::move(text);
    if (observer_ != nullptr) observer_->NodeRenamed(node);
}

void WorkspaceModel::Sync(WorkspaceNode& parent, const std::vector<TreeNode>& wanted,
                          bool keep_folders) {
    if (parent.sorted_children)
        SyncSorted(parent, wanted, keep_folders);
    else
        SyncFixed(parent, wanted);
}

// Records are matched by their text; those gone are removed, those new added in order.
void WorkspaceModel::SyncSorted(WorkspaceNode& parent, const std::vector<TreeNode>& wanted,
                                bool keep_folders) {
    std::unordered_multimap<std::string, const TreeNode*> unmatched;
    for (const TreeNode& node : wanted)
        unmatched.emplace(node.text, &node);
    std::vector<std::pair<WorkspaceNode*, const TreeNode*>> kept;
    std::vector<WorkspaceNode*> gone;
    std::vector<WorkspaceNode*> emptied;
    for (const auto& child : parent.children) {
        const auto found = unmatched.find(child->text);
        if (found != unmatched.end() && found->second->is_record == child->is_record) {
            kept.emplace_back(child.get(), found->second);
            unmatched.erase(found);
        } else if (keep_folders && !child->is_record) {
            emptied.push_back(child.get());
        } else {
            gone.push_back(child.get());
        }
    }
    for (WorkspaceNode* node : gone)
        Remove(*node);
    for (const auto& [node, want] : kept)
        Sync(*node, want->children, false);
    // A folder of the person's own that no record is in any more stays, empty.
    for (WorkspaceNode* folder : emptied)
        Sync(*folder, {}, false);
    for (const TreeNode& node : wanted) {
        const auto range = unmatched.equal_range(node.text);
        for (auto it = range.first; it != range.second; ++it) {
            if (it->second != &node) continue;
            Add(parent, node);
            unmatched.erase(it);
            break;
        }
    }
}

// Fixed nodes keep their places; one whose text changed (the dimensions, a piece file's
// name) is renamed.
void WorkspaceModel::SyncFixed(WorkspaceNode& parent, const std::vector<TreeNode>& wanted) {
    while (parent.children.size() > wanted.size())
        Remove(*parent.children.back());
    for (size_t index = 0; index < wanted.size(); ++index) {
        if (index == parent.children.size()) {
            Add(parent, wanted[index]);
            continue;
        }
        WorkspaceNode& child = *parent.children[index];
        Rename(child, wanted[index].text);
        // Below the roots, "Textures" and "FMVs" keep the folders the person made.
        const bool folders_of_their_own =
            child.parent == root_.get() && (child.text == "Textures" || child.text == "FMVs");
        Sync(child, wanted[index].children, folders_of_their_own);
    }
}

WorkspaceNode* WorkspaceModel::FindBelow(const WorkspaceNode& under, const std::string& text) {
    for (const auto& child : under.children) {
        if (child->text == text) return child.get();
        if (WorkspaceNode* found = FindBelow(*child, text)) return found;
    }
    return nullptr;
}

std::vector<std::string> WorkspaceModel::PathOf(const WorkspaceNode& node) {
    std::vector<std::string> path;
    for (const WorkspaceNode* at = &node; at->parent != nullptr; at = at->parent)
        path.insert(path.begin(), at->text);
    return path;
}

WorkspaceNode* WorkspaceModel::NodeAt(const std::vector<std::string>& path) const {
    WorkspaceNode* node = root_.get();
    for (const std::string& text : path) {
        node = node->Child(text);
        if (node == nullptr) return nullptr;
    }
    return path.empty() ? nullptr : node;
}
