#include "RecordIndex.h"

#include "report.h"

size_t RecordIndex::CountRecords() const {
    size_t count = 0;
    for (const ProjectRecords* records : page_lists_)
        count += records->texture_pages.size() + records->fmv_pages.size();
    for (const ProjectRecords* records : object_lists_)
        count += records->ui_objects.size();
    return count;
}

void RecordIndex::Refresh() const {
    const size_t count = CountRecords();
    if (count == counted_) return;
    counted_ = count;
    objects_.clear();
    pages_.clear();
    movies_.clear();
    objects_.reserve(count);
    for (const ProjectRecords* records : object_lists_) {
        for (const auto& object : records->ui_objects)
            objects_.emplace(object->Name(), object.get());
    }
    for (const ProjectRecords* records : page_lists_) {
        for (const TPAGE& page : records->texture_pages) {
            const auto [entry, added] = pages_.try_emplace(page.path);
            if (!added) continue;
            for (const TREGION& region : page.regions)
                entry->second.regions.emplace(region.name, region.rect);
        }
        for (const FMV_PAGE& movie : records->fmv_pages)
            movies_.emplace(movie.identifier, movie.rect);
    }
}

PageRect RecordIndex::RegionRect(const UI_REGION& region) const {
    if (region.IsUnset()) return {};
    Refresh();
    if (const auto page = pages_.find(region.page); page != pages_.end()) {
        const auto found = page->second.regions.find(region.region);
        if (found != page->second.regions.end()) return found->second;
        ReportUnless(false, "TPage region not found");
        return {};
    }
    if (const auto movie = movies_.find(region.region); movie != movies_.end())
        return movie->second;
    ReportUnless(false, "Fmv not found");
    return {};
}

const UI_OBJECT* RecordIndex::ObjectNamed(const std::string& name) const {
    for (const UI_OBJECT* empty : EmptyObjects()) {
        if (empty->Name() == name) return empty;
    }
    Refresh();
    const auto found = objects_.find(name);
    if (found != objects_.end()) return found->second;
    ReportUnless(false, "Object not found");
    return nullptr;
}
