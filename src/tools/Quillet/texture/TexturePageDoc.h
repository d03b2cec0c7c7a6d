// The document of a texture page window: the editor's working copy of a page's .tga.
//
// A page is not edited as one picture. When it opens, its pixels are cut into one picture
// per region; the regions then move freely; and when the project is saved, the page is
// rebuilt from the unused colour and every region at its place. Names and rectangles live
// in the project's TPAGE, found by the document's path; the page's pixels live here and in
// the regions.
//
// Failure style: the project's boxes and soft checks; ImportRegion throws NOT_A_TGA_HEADER.
#pragma once

#include <string>
#include <vector>

#include "RegionTiler.h"
#include "TextureDialogData.h"
#include "TilingReport.h"
#include "framework/Document.h"
#include "model/PageOutput.h"
#include "model/qlt_types.h"
#include "model/region_pictures.h"

namespace Core {
class FileTransaction;
}

// A file given as a picture that load_tga refuses.
struct NOT_A_TGA_HEADER {
    std::string path;
};

// Rebuilds the page from its unused colour and `regions` in list order, cutting from the
// page any region still without a picture. The regions' pictures are clipped to the page.
// False when the page has no picture a file can hold.
bool RebuildPage(PageOutput& output, TPAGE& page);
// Stages the .tga of a rebuilt page in `transaction`, written a few rows at a time.
bool StagePage(Core::FileTransaction& transaction, const std::string& path,
               const PageOutput& output);

class CTexturePageDoc : public framework::Document {
public:
    static constexpr int32_t kWorkingMargin = kOutsideMargin;
    static constexpr const char* kNotATga = "This file does not contain a valid tga header";

    // The page's records live in the project; the window's document has nothing to store.
    void Serialize(framework::Archive& /*archive*/) override {}
    // The page is read by OpenPage once the window stands.
    bool OnOpenDocument(const std::string& /*path*/) override { return true; }
    // Saving a page saves the project, which writes the page with it.
    bool OnSaveDocument(const std::string& path) override;
    // Closing a page's window never asks: its changes are the project's, which asks when it
    // closes.
    bool SaveModified() override { return true; }
    // A page closed with changes that are not saved yet is kept by the project for its next
    // save, so the page on disk always agrees with the project file.
    void OnCloseDocument() override;

    // A new page of that size, written in `save_format`; its file is written at once so that
    // it exists.
    void CreatePage(PageSize size, Core::PixelFormat save_format, const std::string& path);
    // The page in the .tga at `path` (or the project's unsaved copy of it); false when
    // load_tga refuses the file, and the document stays empty.
    bool OpenPage(const std::string& path);
    // Rebuilds the page, for the project to stage with its file (StagePage of Output()).
    // False when the page has no picture a file can hold. The modified flag stays set until
    // the project's files are in place.
    bool SavePage();

    Core::Image* GetImage() const { return output_.image.get(); }
    // The page's background as the view paints it: the unused colour, page-sized.
    Core::Image* GetDisplayImage() const { return display_image_.get(); }
    PageSize GetPageSize() const { return page_size_; }
    // The page plus everything parked beside it, and the working margin.
    PageSize GetExtent() const { return extent_; }
    Core::Colour GetUnusedColour() const { return output_.unused_colour; }
    Core::PixelFormat GetSaveFormat() const { return output_.save_format; }
    // What a save rebuilds the page from.
    const PageOutput& Output() const { return output_; }

    // The project's record of this page; reported when missing.
    TPAGE& Page() const;
    // The same, null when missing: for painting, which must never open a box.
    const TPAGE* PageIfAny() const;
    // Whether no page of the project has a region of that name.
    bool IsNameFree(const std::string& name) const;
    // Adds the picture at `path` as a region parked right of the page. Throws
    // NOT_A_TGA_HEADER when the file is not a picture.
    void ImportRegion(const std::string& path, const std::string& name);
    // Adds or replaces a region with a copy of `picture`.
    void SetRegion(const PageRect& rect, const std::string& name, Core::Image* picture);
    void SetRegionPosition(const std::string& name, int32_t x, int32_t y);
    // With `check_use`, asks before removing a region that UI objects use; false when the
    // person kept it.
    bool DeleteRegion(const std::string& name, bool check_use);
    // Only the right and lower edges count.
    bool IsRegionInside(const PageRect& rect) const;
    // Trims a region that overlaps the page to it (true) and deletes one wholly outside
    // (false).
    bool ClipRegionToPage(const TREGION& region);
    // A new page size; the shared top-left part of the page is kept and regions stay put.
    void Resize(int32_t width, int32_t height);
    void SetUnusedColour(const Core::Colour& colour);
    // Fills the page (not its display) with the starting grey; regions not cut yet see it.
    void ClearSpace();
    // Asks for the unused colour.
    void SelectUnusedColour();
    // Tiles the regions by `order` (TileOrder) with `spacing` pixels right of and below each,
    // and tells what came of it.
    TilingReport Tile(int order, unsigned spacing);
    // The same, answering the fit ratio of the packing kept.
    float TileRegions(int order, unsigned spacing) { return Tile(order, spacing).fit_ratio; }

    // Cuts every region without a picture out of the page; when any was cut, the unused colour
    // becomes that of the last pixel that no region covers. Answers whether any was cut.
    bool CutRegions();
    // The colour of the last pixel (bottom row first, right to left) inside no region.
    bool FindUnusedColour(Core::Colour& colour) const;

private:
    void FinishPage(const std::string& path);
    void MakeDisplayImage();
    void UpdateExtents();
    // The unused colour of the page and its display, without marking the page modified.
    void ShowUnusedColour(const Core::Colour& colour);

    PageOutput output_;
    ImagePtr display_image_;
    PageSize page_size_;
    PageSize extent_;
};

// The open page windows with changes a save has yet to write, in the order they opened.
std::vector<CTexturePageDoc*> ChangedPageWindows();
