// The project document's texture page windows, and the pages it writes when it is saved.
#include <algorithm>

#include "QuilletDoc.h"
#include "core_file_transaction.h"
#include "framework/Application.h"
#include "open_documents.h"
#include "texture/TexturePageDoc.h"

CTexturePageDoc* CQuilletDoc::OpenTexture(const std::string& path) {
    if (framework::Document* open = OpenDocumentNamed(kTexturePageTemplate, path, true))
        return dynamic_cast<CTexturePageDoc*>(BringForward(open));
    if (!TextureExists(path) || App().Templates().size() <= kTexturePageTemplate) return nullptr;
    auto* page = dynamic_cast<CTexturePageDoc*>(
        App().Templates()[kTexturePageTemplate]->OpenDocumentFile(path));
    if (page == nullptr) return nullptr;
    if (!page->OpenPage(path)) {
        page->OnCloseDocument();
        App().UI().MessageBox(CTexturePageDoc::kNotATga, path, framework::MessageIcon::Stop,
                              framework::MessageButtons::Ok);
        return nullptr;
    }
    return page;
}

bool CQuilletDoc::AddExistingTexture(const std::string& path) {
    if (TextureExists(path)) {
        OpenTexture(path);
        return false;
    }
    TPAGE page;
    page.path = path;
    records_.texture_pages.push_back(std::move(page));
    ChangeMade();
    OpenTexture(path);
    return true;
}

CTexturePageDoc* CQuilletDoc::CreateNewTexture(const std::string& path,
                                               const TextureDialogData& data) {
    return CreateNewTexture(path, {data.width, data.height}, data.SaveFormat());
}

CTexturePageDoc* CQuilletDoc::CreateNewTexture(const std::string& path, PageSize size,
                                               Core::PixelFormat save_format) {
    if (TextureExists(path)) return OpenTexture(path);
    TPAGE record;
    record.path = path;
    records_.texture_pages.push_back(std::move(record));
    auto* page = App().Templates().size() <= kTexturePageTemplate
                     ? nullptr
                     : dynamic_cast<CTexturePageDoc*>(
                           App().Templates()[kTexturePageTemplate]->OpenDocumentFile(path));
    if (page != nullptr) page->CreatePage(size, save_format, path);
    ChangeMade();
    return page;
}

void CQuilletDoc::KeepPageOutput(PageOutput&& output) {
    std::erase_if(kept_pages_, [&output](const auto& kept) { return kept->path == output.path; });
    kept_pages_.push_back(std::make_unique<PageOutput>(std::move(output)));
    SetModifiedFlag(true);
}

std::unique_ptr<PageOutput> CQuilletDoc::TakePageOutput(const std::string& path) {
    const auto found = std::find_if(kept_pages_.begin(), kept_pages_.end(),
                                    [&path](const auto& kept) { return kept->path == path; });
    if (found == kept_pages_.end()) return nullptr;
    std::unique_ptr<PageOutput> output = std::move(*found);
    kept_pages_.erase(found);
    return output;
}

bool CQuilletDoc::StageChangedPages(Core::FileTransaction& transaction) {
    const auto stage = [this, &transaction](const std::string& path, const PageOutput& output,
                                            bool rebuilt) {
        if (!rebuilt) {
            App().UI().MessageBox("Cannot save " + path, "Error", framework::MessageIcon::Stop,
                                  framework::MessageButtons::Ok);
            return false;
        }
        if (StagePage(transaction, path, output)) return true;
        ReportSaveFailure(transaction.failure());
        return false;
    };
    // Pages deleted from the project since their windows closed are not written.
    std::erase_if(kept_pages_, [this](const auto& kept) { return !TextureExists(kept->path); });
    for (const auto& kept : kept_pages_) {
        const bool rebuilt = RebuildPage(*kept, FindTexture(kept->path));
        if (!stage(kept->path, *kept, rebuilt)) return false;
    }
    for (CTexturePageDoc* page : ChangedPageWindows()) {
        const bool rebuilt = page->SavePage();
        if (!stage(page->GetPathName(), page->Output(), rebuilt)) return false;
    }
    return true;
}
