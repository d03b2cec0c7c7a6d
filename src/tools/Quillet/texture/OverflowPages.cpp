#include "texture/OverflowPages.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "RegionTiler.h"
#include "TexturePageDoc.h"
#include "model/QuilletDoc.h"
#include "model/SaveGuard.h"
#include "model/page_rect.h"

namespace {

// The regions that a page of their own parks, tiled as the document tiles: positions are
// written back by name.
std::vector<TREGION> ParkedOnAPageOfTheirOwn(const std::vector<TREGION>& regions, PageSize size,
                                             int order, unsigned spacing) {
    TPAGE page;
    page.regions = regions;
    for (const TileRecord& record : TileRecords(page.regions, order, spacing, size).records)
        page.MoveRegion(record.name, record.rect.left, record.rect.top);
    std::vector<TREGION> parked;
    for (const TREGION& region : page.regions) {
        if (!LiesOnPage(region.rect, size)) parked.push_back(region);
    }
    return parked;
}

std::vector<std::string> NamesOf(const std::vector<TREGION>& regions) {
    std::vector<std::string> names;
    for (const TREGION& region : regions)
        names.push_back(region.name);
    return names;
}

const TREGION* RegionNamed(const TPAGE& page, const std::string& name) {
    const auto found = std::find_if(page.regions.begin(), page.regions.end(),
                                    [&name](const TREGION& region) { return region.name == name; });
    return found != page.regions.end() ? &*found : nullptr;
}

// Moves the regions `names` from `from` to `to` as regions move between pages, their slots
// with them. A region without a picture has no pixels to carry and stays.
size_t MoveRegions(CQuilletDoc& project, CTexturePageDoc& from, CTexturePageDoc& to,
                   const std::vector<std::string>& names) {
    size_t moved = 0;
    for (const std::string& name : names) {
        const TREGION* region = RegionNamed(from.Page(), name);
        if (region == nullptr || region->image == nullptr) continue;
        to.SetRegion(region->rect, name, region->image.get());
        from.DeleteRegion(name, false);
        project.RepointRegion(name, from.GetPathName(), to.GetPathName());
        ++moved;
    }
    return moved;
}

// STEM-NUMBER.EXT beside `path`.
std::string Numbered(const std::filesystem::path& path, size_t number) {
    const std::string name =
        path.stem().string() + "-" + std::to_string(number) + path.extension().string();
    return (path.parent_path() / name).string();
}

}  // namespace

std::string OverflowPagePath(const std::string& first, size_t index) {
    return index == 0 ? first : Numbered(first, index + 1);
}

std::vector<std::string> OverflowPagePaths(const std::string& first, size_t count) {
    std::vector<std::string> paths;
    for (size_t index = 0; index < count; ++index)
        paths.push_back(OverflowPagePath(first, index));
    return paths;
}

OverflowPlan PlanOverflow(const std::vector<TREGION>& regions, PageSize size, int order,
                          unsigned spacing) {
    OverflowPlan plan;
    std::vector<TREGION> moving;  // names and rectangles only: the pixels play no part
    for (const TREGION& region : regions) {
        if (LiesOnPage(region.rect, size)) continue;
        const TREGION alone(region.name, region.rect, nullptr);
        const auto same_name = [&region](const TREGION& other) {
            return other.name == region.name;
        };
        if (!ParkedOnAPageOfTheirOwn({alone}, size, order, spacing).empty())
            plan.oversized.push_back(region.name);
        else if (std::count_if(regions.begin(), regions.end(), same_name) > 1)
            plan.same_named.push_back(region.name);
        else
            moving.push_back(alone);
    }
    while (!moving.empty()) {
        plan.pages.push_back(NamesOf(moving));
        std::vector<TREGION> parked = ParkedOnAPageOfTheirOwn(moving, size, order, spacing);
        // Each region fits an empty page alone, so every page takes one at least; a page that
        // took none would repeat for ever.
        if (parked.size() == moving.size()) break;
        moving = std::move(parked);
    }
    return plan;
}

std::string OverflowRefusal(const CQuilletDoc& project, const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        if (project.TextureExists(path)) return path + " is already a texture page of the project";
        // Anything there, a link that leads nowhere included, is the person's.
        std::error_code error;
        if (std::filesystem::symlink_status(path, error).type() !=
            std::filesystem::file_type::not_found)
            return path + " already exists: choose another name for the new page";
    }
    return {};
}

std::string ProposedOverflowPath(const CQuilletDoc& project, const std::string& page,
                                 size_t count) {
    for (size_t number = 2;; ++number) {
        const std::string first = Numbered(page, number);
        if (OverflowRefusal(project, OverflowPagePaths(first, count)).empty()) return first;
    }
}

std::string MovedLine(const OverflowPage& page) {
    return "Moved " + Counted(page.moved, " region to ", " regions to ") +
           std::filesystem::path(page.path).filename().string();
}

std::vector<OverflowPage> MoveToOverflowPages(CTexturePageDoc& source, const OverflowPlan& plan,
                                              const std::vector<std::string>& paths, int order,
                                              unsigned spacing) {
    std::vector<OverflowPage> made;
    CQuilletDoc* project = GetProjectDoc();
    if (project == nullptr) return made;
    // Only regions with their pictures can move: a page not drawn yet is cut first.
    source.CutRegions();
    ++project->checkpoint_lock;
    CTexturePageDoc* from = &source;
    for (size_t index = 0; index < plan.pages.size() && index < paths.size(); ++index) {
        CTexturePageDoc* page =
            project->CreateNewTexture(paths[index], source.GetPageSize(), source.GetSaveFormat());
        if (page == nullptr) break;
        page->SetUnusedColour(source.GetUnusedColour());
        const size_t moved = MoveRegions(*project, *from, *page, plan.pages[index]);
        made.push_back({paths[index], moved, page->Tile(order, spacing)});
        from = page;
    }
    --project->checkpoint_lock;
    if (!made.empty()) project->TakeSnapshot();
    return made;
}
