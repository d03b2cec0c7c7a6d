#include "TexturePageDoc.h"

#include <algorithm>
#include <chrono>

#include "core_convert.h"
#include "core_io.h"
#include "core_tga.h"
#include "framework/Application.h"
#include "framework/UserInterface.h"
#include "model/QuilletDoc.h"
#include "model/SaveGuard.h"
#include "model/open_documents.h"
#include "model/page_rect.h"
#include "model/region_pictures.h"
#include "model/report.h"

namespace {

constexpr Core::Colour kStartingGrey{0xCD, 0xCD, 0xCD, 0xFF};

// Copies the part of `picture` that `rect` puts on the page, from the picture's top-left
// corner; the page's edges clip it on every side.
void PaintRegion(Core::Image& page, const PageRect& rect, Core::Image& picture) {
    const Core::Size size = page.get_size();
    const PageRect on_page = IntersectRect(rect, {0, 0, size.width, size.height});
    if (IsRectEmpty(on_page)) return;
    CopyPart(page, {on_page.left, on_page.top}, picture,
             {WrappedDifference(on_page.left, rect.left), WrappedDifference(on_page.top, rect.top)},
             {RectWidth(on_page), RectHeight(on_page)});
}

void FillImage(Core::Image& image, const Core::Colour& colour) {
    const Core::Size size = image.get_size();
    Core::fill_pixels(image.lock_write(nullptr), 0, 0, static_cast<uint32_t>(size.width),
                      static_cast<uint32_t>(size.height), colour);
    image.unlock();
}

// Each duplicated name once per save: the game cannot tell such regions apart.
void WarnOfDuplicates(const TPAGE& page) {
    std::vector<std::string> warned;
    for (const TREGION& region : page.regions) {
        const auto count =
            std::count_if(page.regions.begin(), page.regions.end(),
                          [&region](const TREGION& other) { return other.name == region.name; });
        if (count < 2 || std::find(warned.begin(), warned.end(), region.name) != warned.end())
            continue;
        warned.push_back(region.name);
        if (framework::Application* application = framework::Application::Instance()) {
            application->UI().MessageBox(
                "WARNING: region " + region.name + " appears " + std::to_string(count) +
                    " times in " + page.path +
                    ", the game will not be able to differentiate between the duplicates",
                application->Name(), framework::MessageIcon::Warning,
                framework::MessageButtons::Ok);
        }
    }
}

Core::Image* LoadPicture(const std::string& path) {
    Core::TgaReader reader;
    if (!reader.buffer.open(path.c_str())) return nullptr;
    return Core::load_tga(reader);
}

}  // namespace

bool RebuildPage(PageOutput& output, TPAGE& page) {
    if (output.image == nullptr) return false;
    for (TREGION& region : page.regions) {
        if (region.image == nullptr) region.SetImage(CutRegion(*output.image, region.rect).get());
    }
    FillImage(*output.image, output.unused_colour);
    WarnOfDuplicates(page);
    for (const TREGION& region : page.regions) {
        if (region.image != nullptr) PaintRegion(*output.image, region.rect, *region.image);
    }
    return Core::can_save_tga(*output.image, output.save_format);
}

bool StagePage(Core::FileTransaction& transaction, const std::string& path,
               const PageOutput& output) {
    return output.image != nullptr &&
           Core::stage_tga(transaction, path, *output.image, output.save_format);
}

std::vector<CTexturePageDoc*> ChangedPageWindows() {
    std::vector<CTexturePageDoc*> pages;
    for (framework::Document* document : OpenDocumentsOf(kTexturePageTemplate)) {
        auto* page = dynamic_cast<CTexturePageDoc*>(document);
        if (page != nullptr && page->IsModified()) pages.push_back(page);
    }
    return pages;
}

TPAGE& CTexturePageDoc::Page() const {
    CQuilletDoc* project = GetProjectDoc();
    if (project == nullptr) return EmptyRecord<TPAGE>();
    return project->FindTexture(GetPathName());
}

const TPAGE* CTexturePageDoc::PageIfAny() const {
    const CQuilletDoc* project = GetProjectDoc();
    return project != nullptr ? project->TextureIfAny(GetPathName()) : nullptr;
}

bool CTexturePageDoc::OnSaveDocument(const std::string& /*path*/) {
    CQuilletDoc* project = GetProjectDoc();
    return project != nullptr && project->DoFileSave();
}

void CTexturePageDoc::OnCloseDocument() {
    CQuilletDoc* project = GetProjectDoc();
    if (IsModified() && project != nullptr && output_.image != nullptr &&
        project->TextureExists(GetPathName()))
        project->KeepPageOutput(std::move(output_));
    Document::OnCloseDocument();  // `this` is gone after the call
}

void CTexturePageDoc::CreatePage(PageSize size, Core::PixelFormat save_format,
                                 const std::string& path) {
    SetPathName(path, false);
    output_.save_format = save_format;
    output_.image.reset(Core::create_image(static_cast<uint32_t>(std::max(size.width, 0)),
                                           static_cast<uint32_t>(std::max(size.height, 0)),
                                           Core::PIXEL_FORMAT_8888));
    if (output_.image != nullptr) Core::save_tga(*output_.image, path.c_str(), output_.save_format);
    FinishPage(path);
}

bool CTexturePageDoc::OpenPage(const std::string& path) {
    SetPathName(path);
    CQuilletDoc* project = GetProjectDoc();
    if (std::unique_ptr<PageOutput> kept = project ? project->TakePageOutput(path) : nullptr) {
        // The page's last changes were never saved: the file on disk is older than they are.
        output_ = std::move(*kept);
        FinishPage(path);
        SetModifiedFlag(true);
        return true;
    }
    const ImagePtr loaded(LoadPicture(path));
    if (loaded == nullptr) return false;
    SaveGuard::RememberOnDisk(path);
    output_.save_format = loaded->get_format();
    output_.image.reset(Core::copy_image(*loaded, Core::PIXEL_FORMAT_8888));
    if (output_.image == nullptr) return false;
    FinishPage(path);
    // Cutting finds the unused colour. Regions that kept their pictures from an earlier
    // window are not cut again: the colour the page was saved with is found here instead.
    const std::vector<TREGION>& regions = Page().regions;
    const bool all_cut = !regions.empty() &&
                         std::all_of(regions.begin(), regions.end(),
                                     [](const TREGION& region) { return region.image != nullptr; });
    Core::Colour unused;
    if (all_cut && FindUnusedColour(unused)) {
        output_.unused_colour = unused;
        MakeDisplayImage();
    }
    return true;
}

void CTexturePageDoc::FinishPage(const std::string& path) {
    output_.path = path;
    page_size_ = {};
    if (output_.image != nullptr) {
        const Core::Size size = output_.image->get_size();
        page_size_ = {size.width, size.height};
    }
    extent_ = {page_size_.width + kWorkingMargin, page_size_.height + kWorkingMargin};
    SetTitle(path);
    MakeDisplayImage();
    UpdateAllViews(nullptr);
}

void CTexturePageDoc::MakeDisplayImage() {
    display_image_.reset(Core::create_image(static_cast<uint32_t>(page_size_.width),
                                            static_cast<uint32_t>(page_size_.height),
                                            Core::PIXEL_FORMAT_8888));
    if (display_image_ != nullptr) FillImage(*display_image_, output_.unused_colour);
}

bool CTexturePageDoc::SavePage() {
    if (output_.image == nullptr) return false;
    SetTitle(GetPathName());
    return RebuildPage(output_, Page());
}

bool CTexturePageDoc::IsNameFree(const std::string& name) const {
    const CQuilletDoc* project = GetProjectDoc();
    return project == nullptr || project->RegionNameFree(name);
}

void CTexturePageDoc::ImportRegion(const std::string& path, const std::string& name) {
    const ImagePtr picture(LoadPicture(path));
    if (picture == nullptr) throw NOT_A_TGA_HEADER{path};
    const Core::Size size = picture->get_size();
    const int32_t left = page_size_.width + kWorkingMargin;
    SetRegion({left, 0, left + size.width, size.height}, name, picture.get());
}

void CTexturePageDoc::SetRegion(const PageRect& rect, const std::string& name,
                                Core::Image* picture) {
    ReportUnless(picture != nullptr, "Image buffer is NULL");
    CQuilletDoc* project = GetProjectDoc();
    if (project == nullptr) return;
    project->AddRegion(GetPathName(), name, rect, picture);
    // The page's file changes with its regions.
    UpdateExtents();
    SetModifiedFlag(true);
}

void CTexturePageDoc::SetRegionPosition(const std::string& name, int32_t x, int32_t y) {
    if (CQuilletDoc* project = GetProjectDoc()) project->MoveRegion(GetPathName(), name, x, y);
    UpdateExtents();
    SetModifiedFlag(true);
    UpdateAllViews(nullptr);
}

void CTexturePageDoc::UpdateExtents() {
    int64_t width = int64_t{page_size_.width} + kWorkingMargin;
    int64_t height = int64_t{page_size_.height} + kWorkingMargin;
    for (const TREGION& region : Page().regions) {
        // The picture counts, not the rectangle: a region trimmed to the page keeps its
        // whole picture.
        const Core::Size size = region.image != nullptr
                                    ? region.image->get_size()
                                    : Core::Size{RectWidth(region.rect), RectHeight(region.rect)};
        width = std::max(width, int64_t{region.rect.left} + size.width);
        height = std::max(height, int64_t{region.rect.top} + size.height);
    }
    const auto clamp = [](int64_t value) {
        return static_cast<int32_t>(std::min<int64_t>(value, INT32_MAX));
    };
    extent_ = {clamp(width), clamp(height)};
}

bool CTexturePageDoc::DeleteRegion(const std::string& name, bool check_use) {
    CQuilletDoc* project = GetProjectDoc();
    if (project == nullptr || !project->DeleteRegion(GetPathName(), name, check_use)) return false;
    SetModifiedFlag(true);
    return true;
}

bool CTexturePageDoc::IsRegionInside(const PageRect& rect) const {
    return !(page_size_.width < rect.right || page_size_.height < rect.bottom);
}

bool CTexturePageDoc::ClipRegionToPage(const TREGION& region) {
    // A copy: replacing or deleting the region ends the life of the record passed in.
    const TREGION kept = region;
    if (kept.rect.left >= page_size_.width || kept.rect.top >= page_size_.height) {
        DeleteRegion(kept.name, true);
        return false;
    }
    PageRect clipped = kept.rect;
    clipped.right = std::min(clipped.right, page_size_.width);
    clipped.bottom = std::min(clipped.bottom, page_size_.height);
    if (clipped.right != kept.rect.right || clipped.bottom != kept.rect.bottom)
        SetRegion(clipped, kept.name, kept.image.get());
    return true;
}

void CTexturePageDoc::Resize(int32_t width, int32_t height) {
    ImagePtr resized(Core::create_image(static_cast<uint32_t>(std::max(width, 0)),
                                        static_cast<uint32_t>(std::max(height, 0)),
                                        Core::PIXEL_FORMAT_8888));
    if (resized == nullptr) return;
    if (output_.image != nullptr) {
        Core::convert_pixels(resized->lock_write(nullptr), output_.image->lock_read(nullptr));
        resized->unlock();
        output_.image->unlock();
    }
    output_.image = std::move(resized);
    page_size_ = {width, height};
    extent_ = {width + kWorkingMargin, height + kWorkingMargin};
    MakeDisplayImage();
    SetUnusedColour(output_.unused_colour);
}

void CTexturePageDoc::SetUnusedColour(const Core::Colour& colour) {
    ShowUnusedColour(colour);
    SetModifiedFlag(true);
    UpdateAllViews(nullptr);
}

void CTexturePageDoc::ShowUnusedColour(const Core::Colour& colour) {
    output_.unused_colour = colour;
    if (display_image_ != nullptr) FillImage(*display_image_, colour);
}

void CTexturePageDoc::ClearSpace() {
    if (output_.image != nullptr) FillImage(*output_.image, kStartingGrey);
    SetModifiedFlag(true);
    UpdateAllViews(nullptr);
}

void CTexturePageDoc::SelectUnusedColour() {
    const Core::Colour present = output_.unused_colour;
    const std::optional<framework::Rgb> chosen =
        App().UI().AskColour({present.red, present.green, present.blue});
    if (chosen) SetUnusedColour({chosen->blue, chosen->green, chosen->red, 0xFF});
}

TilingReport CTexturePageDoc::Tile(int order, unsigned spacing) {
    const auto start = std::chrono::steady_clock::now();
    const Tiling tiling = TileRecords(Page().regions, order, spacing, page_size_);
    if (CQuilletDoc* project = GetProjectDoc()) {
        // One undo step for the whole command, not one per region.
        ++project->checkpoint_lock;
        for (const TileRecord& record : tiling.records)
            SetRegionPosition(record.name, record.rect.left, record.rect.top);
        --project->checkpoint_lock;
        if (!tiling.records.empty()) project->TakeSnapshot();
    }
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    TilingReport report = MeasurePlacement(Page().regions, page_size_);
    report.order = order;
    report.spacing = spacing;
    report.fit_ratio = tiling.fit_ratio;
    report.milliseconds = took.count();
    return report;
}

bool CTexturePageDoc::CutRegions() {
    if (output_.image == nullptr) return false;
    bool cut = false;
    std::vector<std::string> refused;  // a cut that gives no picture is not tried again
    for (bool walking = true; walking;) {
        walking = false;
        for (const TREGION& region : Page().regions) {
            if (region.image != nullptr ||
                std::find(refused.begin(), refused.end(), region.name) != refused.end())
                continue;
            ImagePtr picture = CutRegion(*output_.image, region.rect);
            if (picture == nullptr) {
                ReportUnless(false, "Unable to find tpage region");
                refused.push_back(region.name);
            } else {
                // The cut region takes the list's end, as every replaced region does; the walk
                // starts again from the head.
                const TREGION uncut = region;
                Page().AddRegion(uncut.rect, uncut.name, picture.get());
                cut = true;
            }
            walking = true;
            break;
        }
    }
    // Cutting the page into its regions changes nothing the person made: the page is not
    // marked modified.
    Core::Colour unused;
    if (cut && FindUnusedColour(unused)) {
        ShowUnusedColour(unused);
        UpdateAllViews(nullptr);
    }
    return cut;
}

bool CTexturePageDoc::FindUnusedColour(Core::Colour& colour) const {
    if (output_.image == nullptr) return false;
    const std::vector<TREGION>& regions = Page().regions;
    std::vector<const PageRect*> across;  // the regions that cover some of the row
    for (int32_t y = page_size_.height - 1; y >= 0; --y) {
        across.clear();
        for (const TREGION& region : regions) {
            if (y >= region.rect.top && y < region.rect.bottom) across.push_back(&region.rect);
        }
        // A covered pixel lets the scan jump to the left of the region covering it.
        for (int64_t x = int64_t{page_size_.width} - 1; x >= 0;) {
            const auto cover = std::find_if(across.begin(), across.end(), [x](const PageRect* r) {
                return x >= r->left && x < r->right;
            });
            if (cover == across.end()) {
                colour =
                    output_.image->get_pixel(static_cast<uint32_t>(x), static_cast<uint32_t>(y));
                return true;
            }
            x = int64_t{(*cover)->left} - 1;
        }
    }
    return false;
}
