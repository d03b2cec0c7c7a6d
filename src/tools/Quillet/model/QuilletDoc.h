// The project document: owns every record of the open project and is the only thing saved
// to a project file. Texture page and layout page documents are windows onto its records.
//
// Every change of the project ends the same way: the modified flag is set, a snapshot is
// taken, and the views are told.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <string>

#include "SnapshotUndo.h"
#include "core_pixels.h"
#include "framework/Document.h"
#include "project_records.h"

namespace Core {
class FileTransaction;
}
class SaveGuard;
struct PageOutput;
class CTexturePageDoc;
struct TextureDialogData;

class CQuilletDoc : public framework::Document, public SnapshotUndo, public RecordLookup {
public:
    CQuilletDoc();
    ~CQuilletDoc() override;

    void Serialize(framework::Archive& archive) override;
    // Removes the UI objects, and nothing else: a load appends to the rest.
    void DeleteContents() override;
    // Loads the file, then takes the first snapshot, the first state Undo returns to.
    bool OnOpenDocument(const std::string& path) override;
    // Writes every texture page with changes and then the file, as one: the files take
    // their new bytes together or all stay as they were (a box names the file that failed).
    // Only a save whose files are in place clears the modified flags of the project and its
    // open pages.
    bool OnSaveDocument(const std::string& path) override;
    // The project's page windows close with it, and its status text goes.
    void OnCloseDocument() override;

    // Records the present state for Undo. Neither saves nor clears any modified flag.
    void TakeSnapshot();
    // Undo and Redo act only while a layout page window is active.
    void OnEditUndo();
    void OnEditRedo();
    // Whether Undo or Redo would do something now.
    bool CanUndo() const;
    bool CanRedo() const;

    // Clears the modified flag of every open page document, then of the project.
    void ClearAllModified();
    // Sets the status line's message, once the main window has one.
    void SetStatusText(const std::string& text);

    QLT_FILE& qlt_file() { return records_.qlt_file; }
    const QLT_FILE& qlt_file() const { return records_.qlt_file; }
    const ProjectRecords& records() const { return records_; }

    // Texture pages and regions, by exact absolute path and region name. Lookups that find
    // nothing report it ("Texture not found") and answer an empty record.
    bool TextureExists(const std::string& path) const;
    TPAGE& FindTexture(const std::string& path);
    // The same without a report: null when the project has no such page.
    const TPAGE* TextureIfAny(const std::string& path) const;
    TREGION& RegionOfTexture(const std::string& path, const std::string& name);
    // The picture of a region while its page is edited; false without one.
    bool RegionImage(const std::string& path, const std::string& name, Core::Image*& image);
    bool SetTextureFolder(const std::string& path, const std::string& folder);
    // The window of a page, brought forward or opened; null when the project has no such page
    // or its file is not a picture (told in a box; the page stays in the project).
    CTexturePageDoc* OpenTexture(const std::string& path);
    // Adds a page of an existing file and opens it; false (and the page opened) when the
    // project has it already.
    bool AddExistingTexture(const std::string& path);
    // Adds a new page of the dialog's size and format, writes its file and opens it; a page
    // the project has already is opened instead.
    CTexturePageDoc* CreateNewTexture(const std::string& path, const TextureDialogData& data);
    CTexturePageDoc* CreateNewTexture(const std::string& path, PageSize size,
                                      Core::PixelFormat save_format);
    // A page whose window closed with changes: written at the next save, or taken back when
    // the page opens again.
    void KeepPageOutput(PageOutput&& output);
    std::unique_ptr<PageOutput> TakePageOutput(const std::string& path);
    const std::vector<std::unique_ptr<PageOutput>>& KeptPages() const { return kept_pages_; }
    // Makes the project what `text` (as a snapshot writes it) says; false after a box when it
    // does not read, with the project as it was.
    bool ReadText(const std::string& text);
    // Adds a region to a page; a region of that name on the page is replaced.
    void AddRegion(const std::string& path, const std::string& name, const PageRect& rect,
                   Core::Image* image);
    void MoveRegion(const std::string& path, const std::string& name, int32_t x, int32_t y);
    // Whether no page of the project has a region of that name.
    bool RegionNameFree(const std::string& name) const;
    bool RegionExists(const std::string& name) const { return !RegionNameFree(name); }

    // Fonts and movies. Adding refuses (false) an identifier or path already there.
    bool AddFont(const std::string& identifier, const std::string& path, int32_t lf_height);
    bool FontExists(const std::string& identifier) const;
    FONT_PAGE& FindFontByIdentifier(const std::string& identifier);
    FONT_PAGE& FindFontByPath(const std::string& path);
    bool AddFmv(const std::string& path);
    bool FmvExists(const std::string& identifier) const;
    FMV_PAGE& FindFmvByPath(const std::string& path);
    FMV_PAGE& FindFmvByIdentifier(const std::string& identifier);
    bool SetFmvFolder(const std::string& identifier, const std::string& folder);

    PageRect RegionRect(const UI_REGION& region) const override;
    const UI_OBJECT* ObjectNamed(const std::string& name) const override;

    // Layout pages and their pieces, by name. Operations with a snapshot flag take a
    // snapshot only when it is set, so a drag can change a piece often and snapshot once.
    bool LayoutExists(const std::string& name) const;
    LPAGE& FindLayout(const std::string& name);
    // A new page of the project's size, or of the size given, opened in its window; false
    // (and the page that exists opened) when the name is taken.
    bool CreateLayout(const std::string& name);
    bool CreateLayout(const std::string& name, int32_t width, int32_t height);
    // The page `new_name` takes all of `source`, then its own name back.
    void CopyLayout(const std::string& source, const std::string& new_name);
    // The window of a page, brought forward or opened.
    framework::Document* OpenLayout(const std::string& name);
    void AddPageTexturePath(const std::string& page, const std::string& folder);
    void AddPageFmvPath(const std::string& page, const std::string& folder);
    void AddPiece(const std::string& page, const UI_PIECE& piece, bool snapshot);
    void MovePiece(const std::string& page, const std::string& piece, int32_t x, int32_t y,
                   bool snapshot);
    void RescalePiece(const std::string& page, const std::string& piece, float fx, float fy,
                      bool snapshot);
    void ReplacePiece(const std::string& page, const std::string& name, const UI_PIECE& piece);
    void DeletePiece(const std::string& page, const std::string& piece, bool snapshot);
    // The z sort dialog's OK: each name of `order` in turn takes its piece (the first of that
    // name not moved yet) to the end of the page's list, so the list ends in that order.
    // One change with one snapshot; answers the names the page does not have.
    std::vector<std::string> ReorderPieces(const std::string& page,
                                           const std::vector<std::string>& order);
    // Copies the identifier, attributes, edit group and lock of one piece onto another.
    void CopyAttributes(const std::string& page, const std::string& destination,
                        const std::string& source);
    // Whether any piece of any page shows the object, or uses the font.
    bool ObjectUsedByPiece(const std::string& object) const;
    bool FontInUse(const std::string& identifier) const;

    // Piece files. A file that does not read is told in a box captioned "File error" and
    // the project keeps what it had.
    bool SetPieceTypesFile(const std::string& path);
    bool SetPieceTextsFile(const std::string& path);
    // Reads both files again, texts first, each failure in a box of its own; the views
    // are told when both read.
    bool ReloadPieceFiles();

    // Reference tests: who uses what, by name, case-sensitively.
    bool ObjectUsesRegion(const UI_OBJECT& object, const std::string& region) const;
    // The slots that show region `name` of page `from` show it on page `to` instead, as the
    // region moved there. Asks nothing and removes nothing.
    void RepointRegion(const std::string& name, const std::string& from, const std::string& to);
    bool RegionInUse(const std::string& region) const;
    bool ObjectUsesTextureFolder(const UI_OBJECT& object, const std::string& folder) const;
    bool ObjectUsesFmvFolder(const UI_OBJECT& object, const std::string& folder) const;
    bool PageUsesTextureFolder(const std::string& page, const std::string& folder) const;
    bool PageUsesFmvFolder(const std::string& page, const std::string& folder) const;
    // A folder is legal for a page when it is a common path or one of the page's own.
    bool PathLegal(const LPAGE& page, const std::string& folder) const;
    bool ObjectLegalOnPage(const UI_OBJECT& object, const LPAGE& page) const;
    bool ObjectLegalOnAllPages(const std::string& name, const UI_OBJECT& replacement) const;

    // Deletions: each asks once when the thing is used (Cancel: false, nothing changed in
    // that step) and then removes the users, outward in.
    bool DeleteObject(const std::string& name);
    bool DeleteRegion(const std::string& path, const std::string& name, bool confirm);
    bool DeleteTexturePage(const std::string& path);
    bool DeleteFont(const std::string& identifier);
    bool DeleteFmv(const std::string& path);
    void DeleteLayout(const std::string& name);
    bool DeleteCommonTexturePath(const std::string& folder);
    bool DeleteCommonFmvPath(const std::string& folder);
    bool DeletePageTexturePath(const std::string& page, const std::string& folder);
    bool DeletePageFmvPath(const std::string& page, const std::string& folder);
    bool AddCommonTexturePath(const std::string& folder);
    bool AddCommonFmvPath(const std::string& folder);
    // What an Edit dialog does on OK: the new object takes the old one's place in every
    // piece, after pieces that may not show it were removed (one per page).
    bool ReplaceObject(const std::string& old_name, std::unique_ptr<UI_OBJECT> replacement);
    // The bottom step of every cascade: through the page's open window when there is one.
    void RemovePieceFromPage(const std::string& page, const std::string& piece);

    // UI objects. The lookup searches the six empty objects first; one that finds nothing
    // reports "Object not found" and answers an empty art object.
    const UI_OBJECT& FindObject(const std::string& name) const;
    bool ObjectExists(const std::string& name) const;
    // The same lookup without a report: null when the project has no such object.
    const UI_OBJECT* ObjectIfAny(const std::string& name) const;
    // Takes the object; it is appended, and the change ends as every change does.
    void AddObject(std::unique_ptr<UI_OBJECT> object);

    int32_t checkpoint_lock = 0;  // snapshots are taken only while below 1

protected:
    void ReportLoadFailure(std::exception_ptr failure, const framework::Archive& archive) override;
    void RestoreSnapshot(const std::string& snapshot) override;

private:
    // Reads a file or snapshot into records of their own; pieces read are measured against
    // the objects read and the pages held now, then those read.
    void ReadApart(framework::Archive& archive, ProjectRecords& loaded);
    void AdoptRecords(ProjectRecords&& loaded);
    bool Confirm(const std::string& first, const std::string& name, const std::string& second,
                 const std::string& caption);
    // Removes the pieces of every page that `doomed` picks, one by one.
    template <typename Doomed>
    void RemovePiecesWhere(Doomed doomed);
    // Removes the pieces that use the folder, on the one page named or, without one, on all.
    bool DeleteFolderUsers(const std::string& folder, bool texture, const std::string* only_page);
    bool DeleteCommonPath(const std::string& folder, bool texture);
    bool DeletePagePath(const std::string& page, const std::string& folder, bool texture);
    void DeleteObjectsUsingRegion(const std::string& region);
    // The three acts that end a change: modified, a snapshot, the views told.
    void ChangeMade();
    // A change that takes no snapshot of its own: modified, and the views told.
    void ChangeMadeWithoutSnapshot();
    // Modified, a snapshot if asked for.
    void PieceChanged(bool snapshot);
    // Undo and Redo act only while a layout page window is active.
    bool UndoActsNow() const;
    void StepAndRefresh(bool (SnapshotUndo::*step)());

    // What must be checked and held before a save to `path` writes anything; null when the
    // save must not go on. The guard lives until the files are in place.
    std::unique_ptr<SaveGuard> BeginSave(const std::string& path);
    // Rebuilds into `transaction` the pages kept from closed windows and those of open
    // windows with changes; false after a box when one cannot be.
    bool StageChangedPages(Core::FileTransaction& transaction);

    ProjectRecords records_;
    std::vector<std::unique_ptr<PageOutput>> kept_pages_;
};

// The open project, or null.
CQuilletDoc* GetProjectDoc();

// Makes way for another project: asks to save the present one (once, for the project
// alone) and closes every document. False when the person cancelled.
bool CloseCurrentProject();
