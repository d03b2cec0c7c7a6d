// Reference integrity: who uses what, and deletions that remove the users outward in.
#include <algorithm>
#include <optional>

#include "LayoutPageLink.h"
#include "QuilletDoc.h"
#include "framework/Application.h"
#include "open_documents.h"
#include "report.h"
#include "texture/TexturePageDoc.h"

namespace {

// Every region of an object and of its parts, depth first, until `visit` answers true. A
// const object gives its regions as const.
template <typename Object, typename Visit>
bool AnyRegion(Object& object, Visit visit) {
    if (auto* regions = object.Regions()) {
        if (std::any_of(regions->begin(), regions->end(), visit)) return true;
    }
    if (auto* parts = object.SubObjects()) {
        for (const auto& part : *parts) {
            if (part != nullptr && AnyRegion(static_cast<Object&>(*part), visit)) return true;
        }
    }
    return false;
}

template <typename Record>
bool FolderOf(const std::vector<Record>& records, const std::string& path,
              const std::string& folder) {
    return std::any_of(records.begin(), records.end(), [&](const Record& record) {
        return record.path == path && record.folder == folder;
    });
}

const char* const kPathFirst = "The following path is being used by a UI piece:\n\n";
const char* const kPathSecond = "\n\nContinuing will delete any UI pieces using this path.";

}  // namespace

bool CQuilletDoc::Confirm(const std::string& first, const std::string& name,
                          const std::string& second, const std::string& caption) {
    return App().UI().MessageBox(first + name + second, caption, framework::MessageIcon::Warning,
                                 framework::MessageButtons::OkCancel) == framework::Answer::Ok;
}

bool CQuilletDoc::ObjectUsesRegion(const UI_OBJECT& object, const std::string& region) const {
    return AnyRegion(object, [&region](const UI_REGION& each) { return each.region == region; });
}

void CQuilletDoc::RepointRegion(const std::string& name, const std::string& from,
                                const std::string& to) {
    bool repointed = false;
    for (const auto& object : records_.ui_objects) {
        AnyRegion(*object, [&](UI_REGION& slot) {
            if (slot.page != from || slot.region != name) return false;
            slot.page = to;
            repointed = true;
            return false;
        });
    }
    if (!repointed) return;
    for (framework::Document* window : OpenDocumentsOf(kLayoutPageTemplate))
        window->UpdateAllViews(nullptr);
    ChangeMade();
}

bool CQuilletDoc::RegionInUse(const std::string& region) const {
    return std::any_of(records_.ui_objects.begin(), records_.ui_objects.end(),
                       [&](const auto& object) { return ObjectUsesRegion(*object, region); });
}

bool CQuilletDoc::ObjectUsesTextureFolder(const UI_OBJECT& object,
                                          const std::string& folder) const {
    return AnyRegion(object, [&](const UI_REGION& each) {
        return FolderOf(records_.texture_pages, each.page, folder);
    });
}

bool CQuilletDoc::ObjectUsesFmvFolder(const UI_OBJECT& object, const std::string& folder) const {
    return AnyRegion(object, [&](const UI_REGION& each) {
        return FolderOf(records_.fmv_pages, each.page, folder);
    });
}

bool CQuilletDoc::PageUsesTextureFolder(const std::string& page, const std::string& folder) const {
    const LPAGE* layout = records_.qlt_file.PageNamed(page);
    if (layout == nullptr) return false;
    return std::any_of(layout->pieces.begin(), layout->pieces.end(), [&](const UI_PIECE& piece) {
        const UI_OBJECT* object = ObjectNamed(piece.object_id);
        return object != nullptr && ObjectUsesTextureFolder(*object, folder);
    });
}

bool CQuilletDoc::PageUsesFmvFolder(const std::string& page, const std::string& folder) const {
    const LPAGE* layout = records_.qlt_file.PageNamed(page);
    if (layout == nullptr) return false;
    return std::any_of(layout->pieces.begin(), layout->pieces.end(), [&](const UI_PIECE& piece) {
        const UI_OBJECT* object = ObjectNamed(piece.object_id);
        return object != nullptr && ObjectUsesFmvFolder(*object, folder);
    });
}

bool CQuilletDoc::PathLegal(const LPAGE& page, const std::string& folder) const {
    const auto holds = [&folder](const std::vector<std::string>& list) {
        return std::find(list.begin(), list.end(), folder) != list.end();
    };
    return holds(records_.qlt_file.common_texture_paths) ||
           holds(records_.qlt_file.common_fmv_paths) || holds(page.texture_paths) ||
           holds(page.fmv_paths);
}

bool CQuilletDoc::ObjectLegalOnPage(const UI_OBJECT& object, const LPAGE& page) const {
    // A region on neither kind of page is illegal.
    return !AnyRegion(object, [&](const UI_REGION& each) {
        const auto legal_in = [&](const auto& records) {
            const auto found =
                std::find_if(records.begin(), records.end(),
                             [&each](const auto& record) { return record.path == each.page; });
            return found == records.end() ? std::optional<bool>() : PathLegal(page, found->folder);
        };
        std::optional<bool> legal = legal_in(records_.texture_pages);
        if (!legal) legal = legal_in(records_.fmv_pages);
        return !legal.value_or(false);
    });
}

bool CQuilletDoc::ObjectLegalOnAllPages(const std::string& name,
                                        const UI_OBJECT& replacement) const {
    return std::all_of(
        records_.qlt_file.layouts.begin(), records_.qlt_file.layouts.end(), [&](const LPAGE& page) {
            const bool shows =
                std::any_of(page.pieces.begin(), page.pieces.end(),
                            [&name](const UI_PIECE& piece) { return piece.object_id == name; });
            return !shows || ObjectLegalOnPage(replacement, page);
        });
}

void CQuilletDoc::RemovePieceFromPage(const std::string& page, const std::string& piece) {
    if (auto* window =
            dynamic_cast<LayoutPageLink*>(OpenDocumentNamed(kLayoutPageTemplate, page, false))) {
        window->RemovePieceThroughWindow(piece);
        SetModifiedFlag(true);
        return;
    }
    DeletePiece(page, piece, true);
}

// Names are collected first: removing a piece changes the list being walked.
template <typename Doomed>
void CQuilletDoc::RemovePiecesWhere(Doomed doomed) {
    std::vector<std::pair<std::string, std::string>> gone;
    for (const LPAGE& page : records_.qlt_file.layouts) {
        for (const UI_PIECE& piece : page.pieces) {
            if (doomed(page, piece)) gone.emplace_back(page.name, piece.name);
        }
    }
    for (const auto& [page, piece] : gone)
        RemovePieceFromPage(page, piece);
}

bool CQuilletDoc::DeleteObject(const std::string& name) {
    if (ObjectUsedByPiece(name) &&
        !Confirm("The following object is being used by a UI piece:\n\n", name,
                 "\n\nContinuing will delete any UI pieces using this UI object.",
                 "Confirm delete object"))
        return false;
    RemovePiecesWhere(
        [&name](const LPAGE&, const UI_PIECE& piece) { return piece.object_id == name; });
    auto& objects = records_.ui_objects;
    const auto found = std::find_if(objects.begin(), objects.end(),
                                    [&name](const auto& object) { return object->Name() == name; });
    ReportUnless(found != objects.end(), "Object not found");
    if (found != objects.end()) objects.erase(found);
    ChangeMade();
    return true;
}

// Each object asks for itself; a Cancel for one leaves it and goes on with the next.
void CQuilletDoc::DeleteObjectsUsingRegion(const std::string& region) {
    std::vector<std::string> users;
    for (const auto& object : records_.ui_objects) {
        if (ObjectUsesRegion(*object, region)) users.push_back(object->Name());
    }
    for (const std::string& user : users)
        DeleteObject(user);
}

bool CQuilletDoc::DeleteRegion(const std::string& path, const std::string& name, bool confirm) {
    if (confirm) {
        if (RegionInUse(name) &&
            !Confirm("The following region is being used by a UI object:\n\n", name,
                     "\n\nContinuing will delete any UI objects and UI pieces using this region.",
                     "Confirm delete region"))
            return false;
        DeleteObjectsUsingRegion(name);
    }
    FindTexture(path).RemoveRegion(name);
    // An open window of the page must not keep the region's pixels for its next save.
    if (framework::Document* window = OpenDocumentNamed(kTexturePageTemplate, path, true)) {
        window->SetModifiedFlag(true);
        window->UpdateAllViews(nullptr);
    }
    ChangeMade();
    return true;
}

bool CQuilletDoc::DeleteTexturePage(const std::string& path) {
    if (framework::Document* window = OpenDocumentNamed(kTexturePageTemplate, path, true))
        window->OnCloseDocument();
    bool all_gone = true;
    std::vector<std::string> names;
    if (TextureExists(path)) {
        for (const TREGION& region : FindTexture(path).regions)
            names.push_back(region.name);
    }
    // Every region is offered, even after a Cancel; any Cancel keeps the page.
    for (const std::string& name : names)
        all_gone = DeleteRegion(path, name, true) && all_gone;
    if (all_gone) {
        std::erase_if(records_.texture_pages,
                      [&path](const TPAGE& page) { return page.path == path; });
        TakePageOutput(path);  // a page added again later starts from its file
    }
    ChangeMade();
    return all_gone;
}

bool CQuilletDoc::DeleteFont(const std::string& identifier) {
    if (FontInUse(identifier) &&
        !Confirm("The following font is being used by a UI piece:\n\n", identifier,
                 "\n\nContinuing will delete any text on UI pieces using this font.",
                 "Confirm delete font"))
        return false;
    for (LPAGE& page : records_.qlt_file.layouts) {
        for (UI_PIECE& piece : page.pieces) {
            if (piece.attributes.font_id == identifier) page.ClearText(piece.name);
        }
    }
    auto& fonts = records_.font_pages;
    const auto found = std::find_if(
        fonts.begin(), fonts.end(),
        [&identifier](const FONT_PAGE& font) { return font.identifier == identifier; });
    ReportUnless(found != fonts.end(), "Font not found");
    if (found != fonts.end()) fonts.erase(found);
    ChangeMade();
    return true;
}

bool CQuilletDoc::DeleteFmv(const std::string& path) {
    // A path the project does not have names no movie: its empty identifier would match
    // every empty region slot of every object.
    const auto& movies = records_.fmv_pages;
    if (std::none_of(movies.begin(), movies.end(),
                     [&path](const FMV_PAGE& movie) { return movie.path == path; })) {
        ReportUnless(false, "Fmv not found");
        return false;
    }
    const std::string identifier = FindFmvByPath(path).identifier;
    if (RegionInUse(identifier) &&
        !Confirm("The following fmv is being used by a UI object:\n\n", identifier,
                 "\n\nContinuing will delete any UI objects and UI pieces using this fmv.",
                 "Confirm delete region"))
        return false;
    DeleteObjectsUsingRegion(identifier);
    std::erase_if(records_.fmv_pages,
                  [&path](const FMV_PAGE& movie) { return movie.path == path; });
    ChangeMade();
    return true;
}

void CQuilletDoc::DeleteLayout(const std::string& name) {
    while (framework::Document* window = OpenDocumentNamed(kLayoutPageTemplate, name, false))
        window->OnCloseDocument();
    auto& layouts = records_.qlt_file.layouts;
    const auto found = std::find_if(layouts.begin(), layouts.end(),
                                    [&name](const LPAGE& page) { return page.name == name; });
    ReportUnless(found != layouts.end(), "Layout page not found");
    if (found != layouts.end()) layouts.erase(found);
    ChangeMade();
}

// The pieces go when they use the folder, even where another list keeps it legal.
bool CQuilletDoc::DeleteFolderUsers(const std::string& folder, bool texture,
                                    const std::string* only_page) {
    const auto uses = [&](const UI_PIECE& piece) {
        const UI_OBJECT* object = ObjectNamed(piece.object_id);
        return object != nullptr && (texture ? ObjectUsesTextureFolder(*object, folder)
                                             : ObjectUsesFmvFolder(*object, folder));
    };
    const auto in_scope = [only_page](const LPAGE& page) {
        return only_page == nullptr || page.name == *only_page;
    };
    const auto& layouts = records_.qlt_file.layouts;
    const bool used = std::any_of(layouts.begin(), layouts.end(), [&](const LPAGE& page) {
        return in_scope(page) && std::any_of(page.pieces.begin(), page.pieces.end(), uses);
    });
    if (used && !Confirm(kPathFirst, folder, kPathSecond, "Confirm delete path")) return false;
    RemovePiecesWhere(
        [&](const LPAGE& page, const UI_PIECE& piece) { return in_scope(page) && uses(piece); });
    return true;
}

bool CQuilletDoc::DeleteCommonPath(const std::string& folder, bool texture) {
    if (!DeleteFolderUsers(folder, texture, nullptr)) return false;
    auto& paths =
        texture ? records_.qlt_file.common_texture_paths : records_.qlt_file.common_fmv_paths;
    const auto found = std::find(paths.begin(), paths.end(), folder);
    ReportUnless(found != paths.end(),
                 texture ? "Common texture path not found" : "Common fmv path not found");
    if (found != paths.end()) paths.erase(found);
    ChangeMadeWithoutSnapshot();
    return true;
}

bool CQuilletDoc::DeleteCommonTexturePath(const std::string& folder) {
    return DeleteCommonPath(folder, true);
}

bool CQuilletDoc::DeleteCommonFmvPath(const std::string& folder) {
    return DeleteCommonPath(folder, false);
}

// A page the project does not have is reported, and no piece of another page goes.
bool CQuilletDoc::DeletePagePath(const std::string& page, const std::string& folder, bool texture) {
    if (!LayoutExists(page)) {
        FindLayout(page);
        return false;
    }
    if (!DeleteFolderUsers(folder, texture, &page)) return false;
    if (texture)
        FindLayout(page).RemoveTexturePath(folder);
    else
        FindLayout(page).RemoveFmvPath(folder);
    ChangeMadeWithoutSnapshot();
    return true;
}

bool CQuilletDoc::DeletePageTexturePath(const std::string& page, const std::string& folder) {
    return DeletePagePath(page, folder, true);
}

bool CQuilletDoc::DeletePageFmvPath(const std::string& page, const std::string& folder) {
    return DeletePagePath(page, folder, false);
}

bool CQuilletDoc::AddCommonTexturePath(const std::string& folder) {
    auto& paths = records_.qlt_file.common_texture_paths;
    if (std::find(paths.begin(), paths.end(), folder) != paths.end()) return false;
    paths.push_back(folder);
    ChangeMadeWithoutSnapshot();
    return true;
}

bool CQuilletDoc::AddCommonFmvPath(const std::string& folder) {
    auto& paths = records_.qlt_file.common_fmv_paths;
    if (std::find(paths.begin(), paths.end(), folder) != paths.end()) return false;
    paths.push_back(folder);
    ChangeMadeWithoutSnapshot();
    return true;
}

bool CQuilletDoc::ReplaceObject(const std::string& old_name,
                                std::unique_ptr<UI_OBJECT> replacement) {
    auto& objects = records_.ui_objects;
    const auto is_old = [&old_name](const auto& object) { return object->Name() == old_name; };
    ReportUnless(std::any_of(objects.begin(), objects.end(), is_old), "Object not found");
    if (!ObjectLegalOnAllPages(old_name, *replacement)) {
        if (!Confirm("The following object has paths that are illegal for certain UI pieces:\n\n",
                     old_name, "\n\nContinuing will delete these UI pieces.",
                     "Confirm delete pieces"))
            return false;
        // One piece per page goes here; a further illegal piece stays.
        std::vector<std::pair<std::string, std::string>> gone;
        for (const LPAGE& page : records_.qlt_file.layouts) {
            for (const UI_PIECE& piece : page.pieces) {
                if (piece.object_id == old_name && !ObjectLegalOnPage(*replacement, page)) {
                    gone.emplace_back(page.name, piece.name);
                    break;
                }
            }
        }
        for (const auto& [page, piece] : gone)
            RemovePieceFromPage(page, piece);
    }
    const std::string new_name = replacement->Name();
    // The object replaced is the first of its name; a later one of the same name stays.
    if (const auto old = std::find_if(objects.begin(), objects.end(), is_old); old != objects.end())
        objects.erase(old);
    objects.push_back(std::move(replacement));
    for (LPAGE& page : records_.qlt_file.layouts) {
        for (UI_PIECE& piece : page.pieces) {
            if (piece.object_id == old_name) piece.object_id = new_name;
        }
    }
    for (framework::Document* window : OpenDocumentsOf(kLayoutPageTemplate))
        window->UpdateAllViews(nullptr);
    ChangeMade();
    return true;
}
