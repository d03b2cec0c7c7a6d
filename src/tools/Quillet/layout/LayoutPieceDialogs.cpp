// The commands on single pieces: editing and cloning through the Edit Piece dialog, copying
// and pasting attributes, resetting a piece's size, edit groups and inserting an object.
// Edit, Copy and Paste act on the piece last right-clicked; Clone and Reset on the selection.
#include <algorithm>
#include <functional>

#include "LayoutPageView.h"
#include "forms/CreateGroupForm.h"
#include "forms/EditPieceForm.h"
#include "forms/InsertObjectForm.h"
#include "forms/NameCheck.h"
#include "framework/Application.h"
#include "model/QuilletDoc.h"
#include "model/page_rect.h"
#include "model/report.h"
#include "model/ui_objects.h"
#include "shell/CommandIds.h"

namespace {

constexpr const char* kNotUniqueText = "Piece name is not unique.  Please enter a different name";

// Shows the Edit Piece dialog until its name is a valid identifier that `acceptable` takes. Each
// refusal is told and the dialog comes back as the person left it. False on Cancel.
bool RunEditPiece(EditPieceForm& form, const std::function<bool(const std::string&)>& acceptable) {
    while (framework::AppUI().RunForm(form)) {
        const std::string& name = form.Piece().name;
        if (!CheckIdentifier(name, "Bad Piece Name", framework::AppUI())) continue;
        if (acceptable(name)) return true;
        ReportUnless(false, kNotUniqueText);
    }
    return false;
}

// A side's factor back to the natural length; 1 for a side that has none to measure by.
float BackToNatural(int32_t natural, int32_t now) {
    return natural > 0 && now > 0 ? static_cast<float>(natural) / static_cast<float>(now) : 1.0f;
}

}  // namespace

bool CLayoutPageView::OnPieceCommand(int command) {
    using namespace commands;
    switch (command) {
        case kEditPiece:
        case kEditSelectedPiece:
            EditContextPiece();
            return true;
        case kClonePiece:
            CloneSelection();
            return true;
        case kCopyAttributes:
            CopyAttributes();
            return true;
        case kPasteAttributes:
            PasteAttributes();
            return true;
        case kResetScaling:
        case kUndoResize:
            ResetSize();
            return true;
        case kCreateEditGroup:
            CreateEditGroup();
            return true;
        case kInsertObject:
            InsertObject();
            return true;
        default:
            return false;
    }
}

void CLayoutPageView::BeforeDialog() {
    canvas_.ReleaseCapture();
    CancelDrag();
}

void CLayoutPageView::EditContextPiece() {
    CQuilletDoc* project = GetProjectDoc();
    CLayoutPageDoc* document = GetDocument();
    const LPAGE* page = Page();
    if (context_piece_.empty() || project == nullptr || page == nullptr ||
        !page->PieceExists(context_piece_))
        return;
    BeforeDialog();
    const std::string original = context_piece_;
    EditPieceForm form(*project, page->name,
                       page->pieces[static_cast<size_t>(page->PieceIndex(original))],
                       edit_group_ids_, group_ids_, framework::AppUI());
    // Only this page is searched: a name another page uses is accepted here.
    const bool accepted = RunEditPiece(form, [this, &original](const std::string& name) {
        const LPAGE* now = Page();
        return name == original || now == nullptr || !now->PieceExists(name);
    });
    if (!accepted) return;
    const UI_PIECE& edited = form.Piece();
    document->ReplacePiece(original, edited);
    // The selection follows the piece to its new name.
    std::replace(selection_.pieces.begin(), selection_.pieces.end(), original, edited.name);
    RebuildGroupLists();
    UpdateStatusText(1);
    // A locked piece is not there for the mouse, nor for the commands over the selection.
    if (edited.locked) selection_.Remove(edited.name);
    has_selection_ = has_selection_ && !selection_.Empty();
    document->UpdateAllViews(nullptr);
    context_piece_.clear();
}

// Each clone starts as a copy of its source, in place and on top; the person must give it a
// name of its own.
void CLayoutPageView::CloneSelection() {
    CQuilletDoc* project = GetProjectDoc();
    CLayoutPageDoc* document = GetDocument();
    if (project == nullptr || document == nullptr || selection_.Empty()) return;
    BeforeDialog();
    std::vector<std::string> clones;
    const std::vector<std::string> sources = selection_.pieces;
    for (const std::string& source : sources) {
        const LPAGE* page = Page();
        if (page == nullptr || !page->PieceExists(source)) continue;
        const UI_PIECE original = page->pieces[static_cast<size_t>(page->PieceIndex(source))];
        EditPieceForm form(*project, page->name, original, edit_group_ids_, group_ids_,
                           framework::AppUI());
        const bool accepted = RunEditPiece(form, [this](const std::string& name) {
            const LPAGE* now = Page();
            return now == nullptr || !now->PieceExists(name);
        });
        if (!accepted) continue;
        document->AddPiece(form.Piece());
        clones.push_back(form.Piece().name);
        if (original.locked) selection_.Remove(source);
    }
    InvalidateSelectionOutline();
    selection_.Clear();
    for (const std::string& clone : clones) {
        const LPAGE* page = Page();
        const bool found = page != nullptr && page->PieceExists(clone);
        ReportFromView(found, "Error - Piece not found");
        if (found) selection_.Add(clone);
    }
    has_selection_ = !selection_.Empty();
    UpdateStatusText(1);
    document->SetModifiedFlag(true);
    document->UpdateAllViews(nullptr);
}

void CLayoutPageView::CopyAttributes() {
    const LPAGE* page = Page();
    if (context_piece_.empty() || page == nullptr || !page->PieceExists(context_piece_)) return;
    attribute_clipboard_ = page->pieces[static_cast<size_t>(page->PieceIndex(context_piece_))];
    context_piece_.clear();
}

// The attributes come from the piece the clipboard was taken from as it stands now, not from
// the clipboard's copy: a paste after an edit of the source gives the edited attributes.
void CLayoutPageView::PasteAttributes() {
    CQuilletDoc* project = GetProjectDoc();
    CLayoutPageDoc* document = GetDocument();
    const LPAGE* page = Page();
    if (!attribute_clipboard_ || context_piece_.empty() || project == nullptr || page == nullptr ||
        !page->PieceExists(context_piece_))
        return;
    const auto tag_of = [](const UI_PIECE& piece) {
        const UI_OBJECT* object = ObjectOf(piece);
        return object != nullptr ? object->TypeTag() : std::string();
    };
    const std::string destination =
        tag_of(page->pieces[static_cast<size_t>(page->PieceIndex(context_piece_))]);
    const std::string copied = tag_of(*attribute_clipboard_);
    BeforeDialog();
    if (destination != copied) {
        framework::AppUI().MessageBox("Destination piece type (" + destination +
                                          ") does not match type copied in clipboard (" + copied +
                                          ")",
                                      "Attribute Paste Failure", framework::MessageIcon::Warning,
                                      framework::MessageButtons::Ok);
        return;
    }
    if (!page->PieceExists(attribute_clipboard_->name)) {
        ReportUnless(false, "Piece not found");
        return;
    }
    project->CopyAttributes(page->name, context_piece_, attribute_clipboard_->name);
    context_piece_.clear();
    document->UpdateAllViews(nullptr);
}

// The first selected piece only; the scale comes back to about 1, not exactly, as the
// present rectangle was truncated.
void CLayoutPageView::ResetSize() {
    const LPAGE* page = Page();
    if (!has_selection_ || selection_.Empty() || page == nullptr) return;
    const int index = page->PieceIndex(selection_.pieces.front());
    if (index < 0) return;
    const UI_PIECE piece = page->pieces[static_cast<size_t>(index)];
    const UI_OBJECT* object = ObjectOf(piece);
    if (object == nullptr) return;
    const PageRect natural = object->NaturalBounds();
    const PageRect now = RectOf(piece);
    GetDocument()->RescalePiece(piece.name, BackToNatural(RectWidth(natural), RectWidth(now)),
                                BackToNatural(RectHeight(natural), RectHeight(now)), true);
    RefreshRect(now);
    if (const LPAGE* after = Page(); after != nullptr && after->PieceExists(piece.name))
        RefreshRect(RectOf(after->pieces[static_cast<size_t>(after->PieceIndex(piece.name))]));
    UpdateStatusText(1);
}

// The group lives only in the view's list until a piece carries it.
void CLayoutPageView::CreateEditGroup() {
    if (framework::Application::Instance() == nullptr) return;
    BeforeDialog();
    const std::optional<std::string> name = AskNewGroupName(framework::AppUI(), edit_group_ids_);
    if (!name) return;
    if (!name->empty()) edit_group_ids_.push_back(*name);
    if (CLayoutPageDoc* document = GetDocument()) document->SetModifiedFlag(true);
}

// Piece names are free or taken in the whole project here, unlike Edit and Clone.
void CLayoutPageView::InsertObject() {
    CQuilletDoc* project = GetProjectDoc();
    CLayoutPageDoc* document = GetDocument();
    const LPAGE* page = Page();
    if (project == nullptr || document == nullptr || page == nullptr) return;
    BeforeDialog();
    InsertObjectForm form(*project, *page);
    for (;;) {
        if (!framework::AppUI().RunForm(form)) return;
        if (document->IsIdentifierFree(form.Piece().name)) break;
        framework::AppUI().MessageBox("Identifier is already in use",
                                      framework::Application::Instance()->Name(),
                                      framework::MessageIcon::Stop, framework::MessageButtons::Ok);
    }
    InvalidateSelectionOutline();
    selection_.Clear();
    UI_PIECE piece = form.Piece();
    // The piece's corner, not its centre, lands on the page's centre.
    const PageSize size = PageSizeNow();
    piece.x = size.width / 2;
    piece.y = size.height / 2;
    document->AddPiece(piece);
    const LPAGE* now = Page();
    const bool found = now != nullptr && now->PieceExists(piece.name);
    ReportFromView(found, "Piece not found");
    has_selection_ = true;
    if (found) selection_.Add(piece.name);
    document->SetModifiedFlag(true);
    document->UpdateAllViews(nullptr);
    InvalidateSelection();
    UpdateStatusText(1);
}
