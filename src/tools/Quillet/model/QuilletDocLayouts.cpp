// The project document's operations on layout pages and pieces.
#include <algorithm>
#include <iterator>

#include "LayoutPageLink.h"
#include "QuilletDoc.h"
#include "framework/Application.h"
#include "framework/View.h"
#include "open_documents.h"
#include "piece_files.h"
#include "report.h"

void CQuilletDoc::PieceChanged(bool snapshot) {
    SetModifiedFlag(true);
    if (snapshot) TakeSnapshot();
}

bool CQuilletDoc::LayoutExists(const std::string& name) const {
    return records_.qlt_file.PageExists(name);
}

LPAGE& CQuilletDoc::FindLayout(const std::string& name) {
    return records_.qlt_file.FindPage(name);
}

framework::Document* CQuilletDoc::OpenLayout(const std::string& name) {
    if (framework::Document* open = OpenDocumentNamed(kLayoutPageTemplate, name, false))
        return BringForward(open);
    const framework::Application& application = App();
    if (application.Templates().size() <= kLayoutPageTemplate) return nullptr;
    framework::Document* window =
        application.Templates()[kLayoutPageTemplate]->OpenDocumentFile("");
    if (auto* page = dynamic_cast<LayoutPageLink*>(window)) page->Initialise(FindLayout(name));
    return window;
}

bool CQuilletDoc::CreateLayout(const std::string& name) {
    return CreateLayout(name, records_.qlt_file.layout_width, records_.qlt_file.layout_height);
}

bool CQuilletDoc::CreateLayout(const std::string& name, int32_t width, int32_t height) {
    if (LayoutExists(name)) {
        OpenLayout(name);
        return false;
    }
    LPAGE page;
    page.name = name;
    page.width = width;
    page.height = height;
    records_.qlt_file.layouts.push_back(std::move(page));
    OpenLayout(name);
    ChangeMade();
    return true;
}

void CQuilletDoc::CopyLayout(const std::string& source, const std::string& new_name) {
    const LPAGE copy = FindLayout(source);
    LPAGE& target = FindLayout(new_name);
    target.AssignFrom(copy);
    target.name = new_name;
    ChangeMadeWithoutSnapshot();
    for (framework::Document* page : OpenDocumentsOf(kLayoutPageTemplate)) {
        if (page->GetTitle() == new_name) page->UpdateAllViews(nullptr);
    }
}

void CQuilletDoc::AddPageTexturePath(const std::string& page, const std::string& folder) {
    FindLayout(page).AddTexturePath(folder);
    ChangeMadeWithoutSnapshot();
}

void CQuilletDoc::AddPageFmvPath(const std::string& page, const std::string& folder) {
    FindLayout(page).AddFmvPath(folder);
    ChangeMadeWithoutSnapshot();
}

void CQuilletDoc::AddPiece(const std::string& page, const UI_PIECE& piece, bool snapshot) {
    FindLayout(page).AddPiece(piece);
    PieceChanged(snapshot);
    UpdateAllViews(nullptr);
}

void CQuilletDoc::MovePiece(const std::string& page, const std::string& piece, int32_t x, int32_t y,
                            bool snapshot) {
    FindLayout(page).MovePiece(piece, x, y);
    PieceChanged(snapshot);
}

void CQuilletDoc::RescalePiece(const std::string& page, const std::string& piece, float fx,
                               float fy, bool snapshot) {
    FindLayout(page).RescalePiece(piece, fx, fy);
    PieceChanged(snapshot);
}

void CQuilletDoc::ReplacePiece(const std::string& page, const std::string& name,
                               const UI_PIECE& piece) {
    FindLayout(page).ReplacePiece(name, piece);
    PieceChanged(true);
    UpdateAllViews(nullptr);
}

void CQuilletDoc::DeletePiece(const std::string& page, const std::string& piece, bool snapshot) {
    FindLayout(page).RemovePiece(piece);
    PieceChanged(snapshot);
    UpdateAllViews(nullptr);
}

std::vector<std::string> CQuilletDoc::ReorderPieces(const std::string& page,
                                                    const std::vector<std::string>& order) {
    std::vector<UI_PIECE>& pieces = FindLayout(page).pieces;
    std::vector<UI_PIECE> moved;
    std::vector<std::string> missing;
    for (const std::string& name : order) {
        const auto named = [&name](const UI_PIECE& piece) { return piece.name == name; };
        if (const auto unmoved = std::find_if(pieces.begin(), pieces.end(), named);
            unmoved != pieces.end()) {
            moved.push_back(std::move(*unmoved));
            pieces.erase(unmoved);
        } else if (const auto again = std::find_if(moved.begin(), moved.end(), named);
                   again != moved.end()) {
            std::rotate(again, again + 1, moved.end());
        } else {
            missing.push_back(name);
        }
    }
    std::move(moved.begin(), moved.end(), std::back_inserter(pieces));
    ChangeMade();
    return missing;
}

void CQuilletDoc::CopyAttributes(const std::string& page, const std::string& destination,
                                 const std::string& source) {
    LPAGE& layout = FindLayout(page);
    const UI_PIECE from = layout.FindPiece(source);
    UI_PIECE& to = layout.FindPiece(destination);
    to.piece_identifier = from.piece_identifier;
    to.attributes = from.attributes;
    to.edit_group_id = from.edit_group_id;
    to.locked = from.locked;
    ChangeMade();
}

bool CQuilletDoc::ObjectUsedByPiece(const std::string& object) const {
    return std::any_of(records_.qlt_file.layouts.begin(), records_.qlt_file.layouts.end(),
                       [&object](const LPAGE& page) {
                           return std::any_of(page.pieces.begin(), page.pieces.end(),
                                              [&object](const UI_PIECE& piece) {
                                                  return piece.object_id == object;
                                              });
                       });
}

bool CQuilletDoc::FontInUse(const std::string& identifier) const {
    return std::any_of(records_.qlt_file.layouts.begin(), records_.qlt_file.layouts.end(),
                       [&identifier](const LPAGE& page) {
                           return std::any_of(page.pieces.begin(), page.pieces.end(),
                                              [&identifier](const UI_PIECE& piece) {
                                                  return piece.attributes.font_id == identifier;
                                              });
                       });
}

bool CQuilletDoc::SetPieceTypesFile(const std::string& path) {
    if (!LoadPieceTypesFile(records_.qlt_file, path)) {
        ShowStop("Error in reading piece types file: " + path, "File error");
        return false;
    }
    FlagAllInUse(records_.qlt_file);
    ChangeMadeWithoutSnapshot();
    return true;
}

bool CQuilletDoc::SetPieceTextsFile(const std::string& path) {
    if (!LoadPieceTextsFile(records_.qlt_file, path)) {
        ShowStop("Error in reading piece texts file: " + path, "File error");
        return false;
    }
    ChangeMadeWithoutSnapshot();
    return true;
}

bool CQuilletDoc::ReloadPieceFiles() {
    const bool texts = ReloadPieceTexts(records_.qlt_file);
    if (!texts) ShowStop("Invalid piece texts description file", "Error");
    const bool types = ReloadPieceTypes(records_.qlt_file);
    if (!types) ShowStop("Invalid piece types description file", "Error");
    if (!texts || !types) return false;
    FlagAllInUse(records_.qlt_file);
    UpdateAllViews(nullptr);
    return true;
}
