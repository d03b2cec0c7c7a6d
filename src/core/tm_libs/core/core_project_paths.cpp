#include <boost/filesystem/operations.hpp>
#include <boost/format.hpp>

#include "core_exception.h"
#include "core_paths.h"
#include "core_projects.h"

namespace fs = boost::filesystem;

namespace Core {

void set_project_root(const fs::path& root) {
    Projects* projects = Projects::get();
    if (projects == nullptr) return;
    projects->clear();
    projects->add({"", root.string(), ""});
    projects->select(0);
}

fs::path find_project_meta(const fs::path& start) {
    fs::path directory = start;
    boost::system::error_code error;
    while (!directory.empty() && !fs::exists(directory / Projects::kMetaName, error))
        directory = directory.parent_path();
    if (directory.empty())
        throw Exception((boost::format("Could not find %s file") % Projects::kMetaName).str());
    return directory / Projects::kMetaName;
}

}  // namespace Core
