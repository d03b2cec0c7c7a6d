// The project window, as logic: a tree of everything the project holds, from which the
// person adds, opens, edits, moves and deletes records. It holds no data of its own: a node
// is told from another by its place and its text, and a record is found again by looking
// the text up in the project.
//
// The window itself mirrors the nodes (WorkspaceModel's observer), reports selection,
// activation, keys, menus and drags here, and shows what the canvas calls ask.
#pragma once

#include <string>
#include <vector>

#include "WorkspaceModel.h"
#include "framework/View.h"

class CQuilletDoc;

// What the view needs of its window.
class WorkspaceCanvas {
public:
    virtual ~WorkspaceCanvas() = default;
    // Asks for SyncIfNeeded once control is back in the event loop.
    virtual void PostSync() = 0;
    // The platform's warning sound: a drop that is not allowed.
    virtual void Beep() = 0;
};

struct MenuEntry {
    int command = 0;
    std::string text;
    friend bool operator==(const MenuEntry&, const MenuEntry&) = default;
};

class CQuilletView : public framework::View {
public:
    explicit CQuilletView(WorkspaceCanvas& canvas);

    CQuilletDoc* GetDocument() const;
    WorkspaceModel& Model() { return model_; }
    const WorkspaceModel& Model() const { return model_; }

    // Fills the tree from the project.
    void OnInitialUpdate();
    // The project changed: the nodes follow once control is back in the event loop, so a
    // burst of changes costs one pass.
    void OnUpdate(framework::View* sender, long hint, void* object) override;
    void SyncIfNeeded();
    void CloseFrame() override {}

    void Select(WorkspaceNode* node) { selected_ = node; }
    WorkspaceNode* Selected() const { return selected_; }

    // Enter, a double click, "View...": opens the page or menu, or edits the object, that the
    // selected node stands for.
    void OpenSelected();
    // The entries of the node's context menu; empty when it has none.
    std::vector<MenuEntry> ContextMenu(const WorkspaceNode& node) const;
    // The Delete key on the selected node.
    void DeleteSelected();
    // Only pages and movies move, and only between folders.
    bool CanDrag(const WorkspaceNode& node) const;
    bool DropLegal(const WorkspaceNode& source, const WorkspaceNode& target) const;
    // Moves the record into the target folder, or beeps when the move is not allowed.
    void Drop(const WorkspaceNode& source, const WorkspaceNode& target);

    // Runs a command of the project window by its number; false for one it does not know.
    bool OnCommand(int command);

private:
    // The fixed node at `path` from the top level; always there once the tree is filled.
    WorkspaceNode& Fixed(const std::vector<std::string>& path) const;
    bool IsFixed(const WorkspaceNode* node, const std::vector<std::string>& path) const;
    // The top-level node `node` lies under.
    const WorkspaceNode& RootOf(const WorkspaceNode& node) const;
    bool IsTexturePage(const WorkspaceNode& node) const;
    bool IsMovie(const WorkspaceNode& node) const;
    bool IsObjectKind(const WorkspaceNode* node) const;
    // The name of the menu whose "Paths" or "Pieces" node is above `node`, if any.
    const WorkspaceNode* MenuAbove(const WorkspaceNode& node) const;

    void DeleteUnderTextures(WorkspaceNode& node);
    void DeleteUnderFmvs(WorkspaceNode& node);
    void DeleteUnderLayouts(WorkspaceNode& node);
    // Deletes every record below a folder that the project agrees to delete; the folder's
    // node goes too when all went.
    template <typename DeleteRecord>
    void DeleteFolder(WorkspaceNode& folder, DeleteRecord delete_record);

    // The commands (WorkspaceCommands.cpp).
    bool OnAddCommand(int command);
    void AddTexture(const std::string& folder, bool from_file_menu);
    void CreateTexture(const std::string& folder);
    void AddFmv(const std::string& folder);
    void AddFont();
    void NewFolder(WorkspaceNode& root);
    void CreateLayout(const std::string* copy_of);
    void EditDimensions();
    void AddCommonPath();
    void AddPagePath();
    void ChoosePieceFile(bool types);
    // `kind` is the text of the object kind's node: "Art", "Button", "Slider", "Scroll Box".
    void AddObject(const std::string& kind);
    void EditObject(const WorkspaceNode& node);
    // The folder a record created from the selected node goes to: its text for a folder.
    std::string SelectedFolder() const;
    // A node is going: it stops being selected.
    void Forget(const WorkspaceNode& node);

    WorkspaceCanvas& canvas_;
    WorkspaceModel model_;
    WorkspaceNode* selected_ = nullptr;
    bool needs_sync_ = false;
};
