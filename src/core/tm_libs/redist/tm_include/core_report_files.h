// The state behind Core::BugReport, and how its report files are named and opened.
//
// Failure style: open_report_file answers -1 when no file is to be written or none could be
// made; nothing throws once the names are made.
// Thread safety: none of its own; see core_bug_report.h.
#pragma once

#include <string>
#include <vector>

#include "core_bug_report.h"

namespace Core::Detail {

struct ReportSettings {
    ReportSettings();

    bool overwrite = false;
    int dump_type = -1;  // below 0: no report files at all
    std::string build_name = "development";
    std::string base_name;  // folder and file name, without number and extension
    int counter = 0;        // the last number a name in use moved on to, 1 to 100
    std::vector<BugReport::Callback> callbacks;
};
ReportSettings& report_settings();

// FOLDER/report-USER (with `overwrite`) or FOLDER/report-USER-PID-YY-MM_DD. A null or too long
// `path` means the temporary folder. The user is USERNAME, USER or LOGNAME, or "".
std::string report_base_name(const char* path, bool overwrite);
// The level in COREOPS, or 0.
int dump_type_from_environment();

// Opens a report file with `extension` (".dmp", ".txt") for writing and answers its
// descriptor, or -1. `number` goes in and out: below 1 (or with overwrite) the plain name is
// made, a new file unless overwrite; when that fails the counter moves on (100 is followed by
// 1) and names the file "-N". A number of 1 or more names that file. Files that exist under a
// numbered name are replaced. The number used comes out, so the .txt of a report carries
// the number of its .dmp.
int open_report_file(const char* extension, int& number);

}  // namespace Core::Detail
