// The project document's operations on texture pages, regions, fonts, movies and UI
// objects.
#include <algorithm>

#include "QuilletDoc.h"
#include "report.h"

namespace {

template <typename Records, typename Matches>
auto* FindIn(Records& records, Matches matches) {
    const auto found = std::find_if(records.begin(), records.end(), matches);
    return found == records.end() ? nullptr : &*found;
}

// The record, or a report and an empty record.
template <typename Record>
Record& FoundOrReported(Record* record, const char* report) {
    if (record != nullptr) return *record;
    ReportUnless(false, report);
    return EmptyRecord<Record>();
}

auto WithPath(const std::string& path) {
    return [&path](const auto& record) { return record.path == path; };
}

auto WithIdentifier(const std::string& identifier) {
    return [&identifier](const auto& record) { return record.identifier == identifier; };
}

}  // namespace

bool CQuilletDoc::TextureExists(const std::string& path) const {
    return std::any_of(records_.texture_pages.begin(), records_.texture_pages.end(),
                       WithPath(path));
}

const TPAGE* CQuilletDoc::TextureIfAny(const std::string& path) const {
    return FindIn(records_.texture_pages, WithPath(path));
}

TPAGE& CQuilletDoc::FindTexture(const std::string& path) {
    return FoundOrReported(FindIn(records_.texture_pages, WithPath(path)), "Texture not found");
}

TREGION& CQuilletDoc::RegionOfTexture(const std::string& path, const std::string& name) {
    return FindTexture(path).FindRegion(name);
}

bool CQuilletDoc::RegionImage(const std::string& path, const std::string& name,
                              Core::Image*& image) {
    TPAGE* page = FindIn(records_.texture_pages, WithPath(path));
    if (page == nullptr) return false;
    const auto region = std::find_if(page->regions.begin(), page->regions.end(),
                                     [&name](const TREGION& each) { return each.name == name; });
    if (region == page->regions.end() || region->image == nullptr) return false;
    image = region->image.get();
    return true;
}

bool CQuilletDoc::SetTextureFolder(const std::string& path, const std::string& folder) {
    TPAGE* page = FindIn(records_.texture_pages, WithPath(path));
    ReportUnless(page != nullptr, "Texture not found");
    if (page == nullptr) return false;
    page->folder = folder;
    ChangeMadeWithoutSnapshot();
    return true;
}

void CQuilletDoc::AddRegion(const std::string& path, const std::string& name, const PageRect& rect,
                            Core::Image* image) {
    TPAGE* page = FindIn(records_.texture_pages, WithPath(path));
    ReportUnless(page != nullptr, "Texture not found");
    if (page == nullptr) return;
    if (page->AddRegion(rect, name, image))
        ChangeMade();
    else
        SetModifiedFlag(true);  // a replaced region is a change too
}

void CQuilletDoc::MoveRegion(const std::string& path, const std::string& name, int32_t x,
                             int32_t y) {
    TPAGE* page = FindIn(records_.texture_pages, WithPath(path));
    ReportUnless(page != nullptr, "Texture not found");
    if (page == nullptr) return;
    page->MoveRegion(name, x, y);
    SetModifiedFlag(true);
    TakeSnapshot();
}

bool CQuilletDoc::RegionNameFree(const std::string& name) const {
    return std::none_of(
        records_.texture_pages.begin(), records_.texture_pages.end(), [&name](const TPAGE& page) {
            return std::any_of(page.regions.begin(), page.regions.end(),
                               [&name](const TREGION& region) { return region.name == name; });
        });
}

bool CQuilletDoc::AddFont(const std::string& identifier, const std::string& path,
                          int32_t lf_height) {
    if (FontExists(identifier)) return false;
    records_.font_pages.push_back({identifier, path, lf_height});
    ChangeMade();
    return true;
}

bool CQuilletDoc::FontExists(const std::string& identifier) const {
    return std::any_of(records_.font_pages.begin(), records_.font_pages.end(),
                       WithIdentifier(identifier));
}

FONT_PAGE& CQuilletDoc::FindFontByIdentifier(const std::string& identifier) {
    return FoundOrReported(FindIn(records_.font_pages, WithIdentifier(identifier)),
                           "Font not found");
}

FONT_PAGE& CQuilletDoc::FindFontByPath(const std::string& path) {
    return FoundOrReported(FindIn(records_.font_pages, WithPath(path)), "Font not found");
}

bool CQuilletDoc::AddFmv(const std::string& path) {
    if (FindIn(records_.fmv_pages, WithPath(path)) != nullptr) return false;
    records_.fmv_pages.emplace_back(path);
    ChangeMade();
    return true;
}

bool CQuilletDoc::FmvExists(const std::string& identifier) const {
    return std::any_of(records_.fmv_pages.begin(), records_.fmv_pages.end(),
                       WithIdentifier(identifier));
}

FMV_PAGE& CQuilletDoc::FindFmvByPath(const std::string& path) {
    return FoundOrReported(FindIn(records_.fmv_pages, WithPath(path)), "Fmv not found");
}

FMV_PAGE& CQuilletDoc::FindFmvByIdentifier(const std::string& identifier) {
    return FoundOrReported(FindIn(records_.fmv_pages, WithIdentifier(identifier)), "Fmv not found");
}

bool CQuilletDoc::SetFmvFolder(const std::string& identifier, const std::string& folder) {
    FMV_PAGE* movie = FindIn(records_.fmv_pages, WithIdentifier(identifier));
    ReportUnless(movie != nullptr, "Fmv not found");
    if (movie == nullptr) return false;
    movie->folder = folder;
    ChangeMadeWithoutSnapshot();
    return true;
}

namespace {

const UI_OBJECT* ObjectIn(const std::string& name,
                          std::initializer_list<const ProjectRecords*> lists) {
    for (const UI_OBJECT* empty : EmptyObjects()) {
        if (empty->Name() == name) return empty;
    }
    for (const ProjectRecords* records : lists) {
        for (const auto& object : records->ui_objects) {
            if (object->Name() == name) return object.get();
        }
    }
    return nullptr;
}

}  // namespace

const UI_OBJECT* LookUpObject(const std::string& name,
                              std::initializer_list<const ProjectRecords*> lists) {
    const UI_OBJECT* found = ObjectIn(name, lists);
    ReportUnless(found != nullptr, "Object not found");
    return found;
}

const UI_OBJECT* CQuilletDoc::ObjectNamed(const std::string& name) const {
    return LookUpObject(name, {&records_});
}

const UI_OBJECT& CQuilletDoc::FindObject(const std::string& name) const {
    static const UI_ART missing;  // unnamed, without regions: it measures as nothing
    const UI_OBJECT* found = ObjectNamed(name);
    return found != nullptr ? *found : missing;
}

const UI_OBJECT* CQuilletDoc::ObjectIfAny(const std::string& name) const {
    return ObjectIn(name, {&records_});
}

bool CQuilletDoc::ObjectExists(const std::string& name) const {
    return ObjectIfAny(name) != nullptr;
}

void CQuilletDoc::AddObject(std::unique_ptr<UI_OBJECT> object) {
    records_.ui_objects.push_back(std::move(object));
    ChangeMade();
}

PageRect LookUpRegionRect(const UI_REGION& region,
                          std::initializer_list<const ProjectRecords*> lists) {
    if (region.IsUnset()) return {};
    for (const ProjectRecords* records : lists) {
        for (const TPAGE& page : records->texture_pages) {
            if (page.path != region.page) continue;
            for (const TREGION& each : page.regions) {
                if (each.name == region.region) return each.rect;
            }
            ReportUnless(false, "TPage region not found");
            return {};
        }
    }
    for (const ProjectRecords* records : lists) {
        for (const FMV_PAGE& movie : records->fmv_pages) {
            if (movie.identifier == region.region) return movie.rect;
        }
    }
    ReportUnless(false, "Fmv not found");
    return {};
}
