#include "core_bug_report.h"

#include <utility>

#include "core_report_files.h"

namespace Core::BugReport {

void init(const char* path, const char* build, bool overwrite) {
    Detail::ReportSettings& settings = Detail::report_settings();
    settings.overwrite = overwrite;
    settings.build_name = build != nullptr ? build : "development";
    settings.base_name = Detail::report_base_name(path, overwrite);
    if (settings.dump_type < 0) settings.dump_type = Detail::dump_type_from_environment();
    StackInfo::instance().prepare();
}

void add_callback(Callback callback) {
    Detail::report_settings().callbacks.push_back(std::move(callback));
}

void set_dump_type(int level) {
    Detail::report_settings().dump_type = level >= 0 ? level : Detail::dump_type_from_environment();
}

}  // namespace Core::BugReport
