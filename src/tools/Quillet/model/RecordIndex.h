// Lookups of objects, regions and movies by name over lists of records, through hash
// indexes, for work that measures every piece of a project (reading and writing files).
// The first match in list order wins, exactly as a linear search would find it.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "project_records.h"

class RecordIndex : public RecordLookup {
public:
    // The lists are searched in this order. Records may be added to them while the index
    // lives (pages come whole, with their regions); nothing may be removed or renamed.
    RecordIndex(std::initializer_list<const ProjectRecords*> lists)
        : page_lists_(lists), object_lists_(lists) {}
    // Pages and movies are searched in `page_lists`, objects in `object_lists` alone.
    RecordIndex(std::initializer_list<const ProjectRecords*> page_lists,
                std::initializer_list<const ProjectRecords*> object_lists)
        : page_lists_(page_lists), object_lists_(object_lists) {}

    PageRect RegionRect(const UI_REGION& region) const override;
    const UI_OBJECT* ObjectNamed(const std::string& name) const override;

private:
    // Keys view the records' own names: any growth of a list rebuilds the index before
    // the next lookup, so no key outlives what it views.
    struct PageEntry {
        std::unordered_map<std::string_view, PageRect> regions;  // first of each name
    };
    // Rebuilt when a list has grown since the last build.
    void Refresh() const;
    size_t CountRecords() const;

    std::vector<const ProjectRecords*> page_lists_;
    std::vector<const ProjectRecords*> object_lists_;
    mutable size_t counted_ = static_cast<size_t>(-1);
    mutable std::unordered_map<std::string_view, const UI_OBJECT*> objects_;
    mutable std::unordered_map<std::string_view, PageEntry> pages_;
    mutable std::unordered_map<std::string_view, PageRect> movies_;
};
