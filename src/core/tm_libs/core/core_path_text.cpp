#include <algorithm>
#include <boost/filesystem/operations.hpp>
#include <vector>

#include "core_path_match.h"
#include "core_paths.h"

namespace fs = boost::filesystem;

namespace Core {
namespace {

// A path in the '\' form taken apart: whether it starts at the root, and its non-empty
// components, so that doubled and trailing separators do not count.
struct Components {
    bool absolute = false;
    std::vector<std::string> names;
};

Components components_of(const std::string& path) {
    Components parts;
    parts.absolute = !path.empty() && path.front() == '\\';
    size_t start = 0;
    while (start <= path.size()) {
        const size_t end = std::min(path.find('\\', start), path.size());
        if (end > start) parts.names.push_back(path.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

// How many leading folders the two share, compared without regard to ASCII case.
size_t shared_folders(const std::vector<std::string>& a, const std::vector<std::string>& b) {
    const size_t limit = std::min(a.size(), b.size());
    size_t shared = 0;
    while (shared < limit && fold_path(a[shared]) == fold_path(b[shared]))
        ++shared;
    return shared;
}

// `path` taken against the working folder, as the system takes it; never throws.
fs::path in_working_folder(const fs::path& path) {
    return path.is_absolute() ? path : current_directory() / path;
}

}  // namespace

std::string backslashes(std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

std::string slashes(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

bool relative_to(const fs::path& file, const fs::path& directory, std::string& out) {
    out.clear();
    const Components target = components_of(backslashes(file.string()));
    const Components from = components_of(backslashes(directory.string()));
    if (target.names.empty() || target.absolute != from.absolute) return false;
    // The file's own name is no folder to share.
    const std::vector<std::string> target_folders(target.names.begin(), target.names.end() - 1);
    const size_t shared = shared_folders(target_folders, from.names);
    if (!target.absolute && shared == 0) return false;

    for (size_t climb = shared; climb < from.names.size(); ++climb)
        out += climb == shared ? ".." : "\\..";
    if (out.empty()) out = ".";
    for (size_t name = shared; name < target.names.size(); ++name)
        out += "\\" + target.names[name];
    return true;
}

fs::path rebase(const fs::path& file, const fs::path& directory, const fs::path& path) {
    if (file == directory) return path;
    std::string relative;
    relative_to(file, directory, relative);
    // The relative form uses '\'; as a native element it needs the native separator.
    return path / slashes(relative);
}

bool is_inside(const fs::path& path, const fs::path& directory) {
    boost::system::error_code error;
    if (!fs::exists(path, error)) return false;
    const std::string folder = fold_path(in_working_folder(path).parent_path().string());
    return folder.find(fold_path(in_working_folder(directory).string())) != std::string::npos;
}

}  // namespace Core
