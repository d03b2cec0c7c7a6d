// The records of a project. Records refer to one another by name or path, never by
// pointer, so lists may be re-sorted or reloaded freely.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The project's <layout> section: page size, piece files, common paths and layouts.
struct QLT_FILE {
    int32_t layout_width = 800;
    int32_t layout_height = 600;
    std::string piece_types_fname;  // absolute; empty while none is loaded
    std::string piece_texts_fname;  // absolute; empty while none is loaded
    std::vector<std::string> common_texture_paths;
    std::vector<std::string> common_fmv_paths;
};

// Everything a project file holds, as read from one file or snapshot.
struct ProjectRecords {
    QLT_FILE qlt_file;
};
