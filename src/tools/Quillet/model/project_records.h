// Everything a project file holds, as read from one file or snapshot.
#pragma once

#include <initializer_list>
#include <memory>
#include <vector>

#include "qlt_types.h"
#include "ui_objects.h"

struct ProjectRecords {
    std::vector<TPAGE> texture_pages;                    // sorted by path at each load
    std::vector<FONT_PAGE> font_pages;                   // sorted by identifier at each load
    std::vector<FMV_PAGE> fmv_pages;                     // sorted by path at each load
    std::vector<std::unique_ptr<UI_OBJECT>> ui_objects;  // in file order, new ones last
    QLT_FILE qlt_file;
};

// The rule of a slot's rectangle over lists of records searched in order: the region of a
// texture page with the slot's path, else the movie with the slot's identifier.
PageRect LookUpRegionRect(const UI_REGION& region,
                          std::initializer_list<const ProjectRecords*> lists);

// The object `name` over lists searched in order, the six empty objects first; reported
// ("Object not found") and null when missing.
const UI_OBJECT* LookUpObject(const std::string& name,
                              std::initializer_list<const ProjectRecords*> lists);
