#include "core_paths.h"

#include <boost/filesystem/operations.hpp>
#include <cstdlib>

#include "core_io.h"
#include "core_projects.h"

namespace fs = boost::filesystem;

namespace Core {
namespace {

std::string& tools_root_override() {
    static std::string folder;
    return folder;
}

std::string& application_data_name() {
    static std::string name;
    return name;
}

fs::path project_root() {
    const Projects* projects = Projects::get();
    return projects != nullptr ? fs::path(projects->current_root()) : fs::path();
}

fs::path tools_root() {
    return tools_root_override().empty() ? program_folder() : tools_root_override();
}

// Where the user's application data lives: $XDG_DATA_HOME, which only counts when it is
// absolute, else ~/.local/share. Empty without a home folder.
fs::path user_data_folder() {
    const char* data_home = std::getenv("XDG_DATA_HOME");
    if (data_home != nullptr && data_home[0] == '/') return data_home;
    const char* home = std::getenv("HOME");
    if (home != nullptr && home[0] != '\0') return fs::path(home) / ".local" / "share";
    return {};
}

fs::path application_data() {
    const fs::path folder = user_data_folder();
    if (folder.empty()) return {};
    const fs::path data = folder / application_data_name();
    ensure_directory(data);
    return data;
}

}  // namespace

fs::path path(PathKind kind, bool use_project) {
    switch (kind) {
        case PathKind::project_root:
            return use_project ? project_root() : fs::path();
        case PathKind::tools_root:
            return tools_root();
        case PathKind::utils:
            // Appended as text, so that an override without a final '/' gets one. The
            // program's own folder ends in '/' already; the "//" this leaves is read by
            // the system as one separator.
            return tools_root().string() + "/utils";
        case PathKind::tools:
            return path(PathKind::project_root, use_project) / "tools";
        case PathKind::application_data:
            return application_data();
        case PathKind::asset:
            return path(PathKind::project_root, use_project) / "asset";
        case PathKind::exports:
            return path(PathKind::project_root, use_project) / "export";
        case PathKind::data:
            return path(PathKind::project_root, use_project) / "data";
        case PathKind::temp:
            return path(PathKind::project_root, use_project) / "temp";
    }
    return {};
}

std::string program_folder() {
    const fs::path folder = module_path().parent_path();
    return folder.empty() ? std::string() : folder.string() + "/";
}

void set_tools_root(const std::string& folder) {
    tools_root_override() = folder;
}

void set_application_data_name(const std::string& name) {
    application_data_name() = name;
}

fs::path data_path(const fs::path& relative) {
    return path(PathKind::data) / relative;
}

fs::path resolve(const fs::path& relative, PathKind kind) {
    if (exists_in(relative, kind)) return path(kind) / relative;
    return path(kind, false) / relative;
}

bool exists_in(const fs::path& relative, PathKind kind) {
    IOManager* io = IOManager::get();
    return io != nullptr && io->exists(path(kind) / relative);
}

}  // namespace Core
